// The smallest late-bound object: a default member that holds a value.
#pragma once

#include <span>
#include <utility>

#include "quorl/runtime/object.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl {

class Holder : public LateBound {
 public:
  explicit Holder(Variant value) : value_(std::move(value)) {}
  Variant Get(StringView name, std::span<Variant> arguments) override {
    return name.empty() ? value_ : LateBound::Get(name, arguments);
  }

 private:
  Variant value_;
};

}  // namespace quorl
