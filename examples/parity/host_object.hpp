// What the host's objects of this folder have in common: the slots of a dispatch object without
// type information, and the count of references.
#pragma once

#include <vector>

#include "examples/parity/log.hpp"

namespace parity {

class HostObject : public QuorlDispatch {
 public:
  HostObject();
  HostObject(const HostObject&) = delete;
  HostObject& operator=(const HostObject&) = delete;

  /// How many hold it; one at first, and it goes with the last.
  std::uint32_t References() const { return references_; }

 protected:
  virtual ~HostObject() = default;

  /// The identifier of the first name, in `id`. The other names are those of arguments.
  virtual HRESULT Find(const std::vector<Name>& names, std::int32_t& id) = 0;
  /// As in the contract; the parameters are there.
  virtual HRESULT Invoke(std::int32_t id, std::uint16_t flags, const DISPPARAMS& parameters,
                         VARIANT* result, EXCEPINFO* info, std::uint32_t* wrong_argument) = 0;

 private:
  struct Slots;

  std::uint32_t references_ = 1;
};

}  // namespace parity
