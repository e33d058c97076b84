#include <boost/circular_buffer.hpp>
#include <boost/uuid/uuid_generators.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <memory>

#include "bench/values/inputs.hpp"

namespace {

using namespace quorl;
using namespace quorl::bench;

const AtStart rows([] {
  const auto buffer = std::make_shared<boost::circular_buffer<String>>(kCapacity, Items()[0]);
  const std::string who = AtSize("circular_buffer", kCapacity);
  Measure(kAddItem, who, Items, [=](const String& item) {
    buffer->push_back(item);
    return buffer->size();
  });
  Measure(kWalk, who, Nothing, [=, at = std::size_t{0}](int) mutable {
    at = at + 1 == buffer->size() ? 0 : at + 1;
    return String((*buffer)[at]);
  });
  Measure(kNewGuid, "Boost", Nothing,
          [](int) { return to_string(boost::uuids::random_generator()()); });
});

}  // namespace
