// Calls by name made of arbitrary bytes: identifiers, flags, counts, arguments of every kind,
// damage. What a pointer leads to is memory of the right size, as no callee can know better;
// everything else is as the bytes have it.
#pragma once

#include <deque>

#include "quorl/abi/internal/errors.hpp"
#include "tests/support/component_arguments.hpp"

namespace quorl {

/// Arguments that own what they lead to.
class FuzzArguments {
 public:
  FuzzArguments(const Pick& pick, const std::vector<QuorlDispatch*>& objects)
      : pick_(pick), objects_(objects) {}
  FuzzArguments(const FuzzArguments&) = delete;
  FuzzArguments& operator=(const FuzzArguments&) = delete;
  ~FuzzArguments() {
    for (auto& [array, sound] : arrays_) {
      *array = sound;
      SafeArrayDestroy(array);
    }
  }

  VARIANT Next() {
    const std::size_t kind = pick_(10);
    VARIANT& value = *kept_.emplace_back(SomeValue()).Address();
    if (kind < 5) return value;
    if (kind == 5) return Raw(static_cast<int>(pick_(256) << 8 | pick_(256)));
    if (kind == 6) return Raw(VT_BYREF | VT_VARIANT, pick_(16) == 0 ? nullptr : &value);
    if (kind == 7 && value.vt > VT_NULL) return Raw(VT_BYREF | value.vt, &value.value);
    return Array();
  }

 private:
  Variant SomeValue() {
    if (pick_(8) == 0) return abi::ObjectOf(objects_[pick_(objects_.size())]);
    return SampleValues()[pick_(SampleValues().size())];
  }

  VARIANT Array() {
    const QuorlBound bounds[] = {{2, 0}};
    SAFEARRAY* array = SafeArrayCreate(VT_I4, 1, bounds);
    arrays_.emplace_back(array, *array);
    const Damage& damage = kDamages[pick_(std::size(kDamages))];
    damage.work(*array);
    return Raw(VT_ARRAY | damage.vt, array);
  }

  const Pick& pick_;
  const std::vector<QuorlDispatch*>& objects_;
  std::deque<OwnedVariant> kept_;
  std::vector<std::pair<SAFEARRAY*, SAFEARRAY>> arrays_;
};

/// One call. What it gave must be one of the contract's codes.
inline void FuzzCall(const Pick& pick, const ClassRow& row, QuorlDispatch* object,
                     FuzzArguments& source) {
  VARIANT arguments[6];
  std::int32_t named[6];
  for (VARIANT& argument : arguments) argument = source.Next();
  for (std::int32_t& name : named) name = static_cast<std::int32_t>(pick(8)) - 3;
  const bool is_absurd = pick(16) == 0;
  const auto number = [&] { return static_cast<std::uint32_t>(pick(256) << 24 | pick(256)); };
  DISPPARAMS parameters{pick(32) == 0 ? nullptr : arguments, pick(32) == 0 ? nullptr : named,
                        is_absurd ? number() | 8 : 0, is_absurd ? number() : 0};
  auto id = static_cast<std::int32_t>(number());
  auto flags = static_cast<std::uint16_t>(pick(256));
  if (!row.members.empty() && pick(8) != 0) {
    const MemberRow& member = row.members[pick(row.members.size())];
    id = member.identifier;
    flags |= FlagOf(member.kind);
    if (!is_absurd) parameters.argument_count = static_cast<std::uint32_t>(member.arguments.count);
    if (pick(4) == 0) parameters.named_count = static_cast<std::uint32_t>(pick(4));
  }
  OwnedVariant result;
  EXCEPINFO info{};
  std::uint32_t wrong = 0;
  const HRESULT code = object->table->Invoke(
      object, id, nullptr, 0, flags, &parameters, pick(8) == 0 ? nullptr : result.Address(),
      pick(8) == 0 ? nullptr : &info, pick(8) == 0 ? nullptr : &wrong);
  EXPECT_TRUE(code == S_OK || code == E_POINTER ||
              (code >= DISP_E_MEMBERNOTFOUND && code <= DISP_E_PARAMNOTOPTIONAL))
      << std::hex << code;
  EXPECT_TRUE(code == S_OK || result.Get().vt == VT_EMPTY) << Utf8(row.name) << ' ' << id;
  abi::FreeRecord(info);
}

/// A host's life in calls: as many as the bytes suffice for, on objects of every class.
inline void FuzzInvoke(std::span<const std::uint8_t> bytes) {
  const Pick pick = [&](std::size_t count) -> std::size_t {
    if (bytes.empty()) return 0;
    const std::size_t chosen = bytes[0] % count;
    bytes = bytes.subspan(1);
    return chosen;
  };
  MemoryStore store;
  const ScopedStore guard(store);
  FakeHost host;
  {
    std::vector<Reference<QuorlDispatch>> owned;
    std::vector<QuorlDispatch*> objects{nullptr, &host};
    for (const ClassRow& row : frame::Catalogue()) {
      owned.push_back(Reference<QuorlDispatch>::Adopt(row.make(row, frame::Holder::kHost)));
      objects.push_back(owned.back().Get());
    }
    while (!bytes.empty()) {
      host.journal.clear();
      FuzzArguments arguments(pick, objects);
      const std::size_t place = pick(owned.size());
      FuzzCall(pick, frame::Catalogue()[place], owned[place].Get(), arguments);
    }
    // A buffer that holds itself, or two that hold each other, would live for ever.
    for (std::size_t i = 0; i < owned.size(); ++i) {
      if (frame::Catalogue()[i].name == u"RollBuffer") {
        CallNamed(owned[i].Get(), u"BufferSize", DISPATCH_PROPERTYPUT, {{QUORL_PUT_VALUE, 1}});
      }
    }
  }
  EXPECT_EQ(host.references, 1u);
  EXPECT_FALSE(frame::IsInUse());
}

}  // namespace quorl
