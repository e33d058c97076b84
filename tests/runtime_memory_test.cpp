// Every allocation of every operation fails once: each gives failure 7, and nothing else happens.
#include <gtest/gtest.h>

#include <array>
#include <functional>

#include "quorl/registry/text/root_name.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/number_text.hpp"
#include "quorl/runtime/text_case.hpp"
#include "tests/support/component_arguments.hpp"
#include "tests/support/store_failing_allocation.hpp"
#include "tests/support/values.hpp"

namespace quorl {
namespace {

TEST(Memory, RunningOutOfItIsFailure7AndChangesNothing) {
  const LocaleScope neutral{Locale()};
  const String text(1000, u'x');
  const Variant longest = text;
  const Variant held = MakeObject<Holder>(longest);
  const Locale wordy{.true_word = text};
  const Array texts = Array::OfStrings(std::array{text, text});
  Array array = texts;
  const std::string bytes(1000, '7');
  const KeyPlace place{HKEY_CURRENT_USER, text};
  const String name = NameOf(place);
  const std::function<void()> cases[] = {
      [&] { ToString(longest); },
      [] { ToString(-1.2345678901234567e-7); },
      [] { ToString(Date(-1.25)); },
      [] { DottedNumber(0.123456789); },
      [] { FormatNumber(1e300, u"#,##0.00"); },
      [&] { ConvertTo(longest, VariantType::kString); },
      [&, joined = String()]() mutable { AppendText(joined, longest); },
      [&] { LowerCase(StringView(text)); },
      [&] { Utf8(text); },
      [&] { Utf16(bytes); },
      [&] { texts.Get({1}); },
      [&] { PlaceNamed(name); },
      [&] { NameOf(place); },
      [] { Array::WithBounds(VariantType::kString, 0, 9); },
      [&] { ToString(held); },
      [&] { LocaleScope{wordy}; },
      [] {
        try {
          Raise(FailureNumber::kTypeMismatch);
        } catch (const RaisedError& error) {
          if (error.Number() != 13) throw;
        }
      },
      [&] { array.Set({0}, 5); },
  };
  for (const auto& work : cases) {
    Failure failure = RuntimeFailure(7);
    for (std::int64_t most = 0; failure == RuntimeFailure(7); ++most) {
      ASSERT_LT(most, 100) << &work - cases;
      ASSERT_EQ(array, texts) << &work - cases;
      failure = FailureOf([&] {
        const FailingAllocation failing(most, true);
        work();
      });
    }
    EXPECT_EQ(failure, Failure{}) << &work - cases;
  }
  // Reading and comparing numbers needs no memory at all, however long the text.
  const Variant digits = String(5000, u'7') + u"E-4990";
  std::array<Double, 3> read{};
  {
    const FailingAllocation failing(0, true);
    read = {ToDouble(digits), ToDouble(ToCurrency(digits)), ToDouble(Currency::Highest())};
  }
  EXPECT_EQ(read, (std::array{7777777777.7777777, 7777777777.7778, 922337203685477.5807}));
}

// A call with one allocation after another failing, until none is left to fail.
void FailEachAllocation(const MemberRow& member, const std::function<CallResult()>& call) {
  bool is_met = true;
  for (std::int64_t place = 0; is_met; ++place) {
    ASSERT_LT(place, 2000) << Utf8(member.name);
    around_call = [&](const std::function<HRESULT()>& run) {
      const FailingAllocation failing(place, true);
      const struct Note {
        bool& is_met;
        ~Note() { is_met = FailingAllocation::Met(); }
      } note{is_met};
      return run();
    };
    CallResult result{{}, S_OK, {0, u"std::bad_alloc", u""}};
    try {
      result = call();
    } catch (const std::bad_alloc&) {
    }
    around_call = [](const std::function<HRESULT()>& run) { return run(); };
    if (!is_met) return;
    // The runtime's Number, or the store's or the host's code for it.
    const Int32 number = result.failure.number;
    const bool is_memory = number == 7 || number == kOutOfMemory || number == E_OUTOFMEMORY;
    // Another failure may lack the text for which there was no memory.
    EXPECT_TRUE(is_memory || (number != 0 && result.failure.description.empty()))
        << Utf8(member.name) << ' ' << place << ' ' << testing::PrintToString(result);
  }
}

TEST(Memory, EveryMemberFailsWithItInEveryWay) {
  const LocaleScope locale(*Locale::Named(u"fr-BE"));
  for (const Way way : {&CallInCpp, &CallBySlot, &CallByName}) {
    MemoryStore store;
    const ScopedStore guard(store);
    FakeHost host;
    host.target->With(u"Name", String(99, u'n'));
    const ClassRow& registry_row = *frame::FindClass(u"Registry");
    const auto registry =
        Reference<QuorlDispatch>::Adopt(registry_row.make(registry_row, frame::Holder::kHost));
    for (const ClassRow& row : frame::Catalogue()) {
      const auto object = Reference<QuorlDispatch>::Adopt(row.make(row, frame::Holder::kHost));
      if (row.name == u"RollBuffer") {
        for (const Int32 length : {99, 98}) {
          CallNamed(object.Get(), u"AddItem", 1, {},
                    {String(static_cast<std::size_t>(length), u'i')});
        }
      }
      if (row.name == u"Regional") {
        for (const int item : {0, 1, 2, 3}) {
          CallNamed(object.Get(), u"SetRegional", 1, {}, {item, String(99, u's')});
        }
      }
      for (const MemberRow& member : row.members) {
        std::vector<Variant> arguments;
        std::size_t turn = 19;
        const Pick pick = [&](std::size_t count) { return turn++ % count; };
        for (const frame::TypeRow& type : member.types.Span()) {
          const bool is_text =
              type.type == VariantType::kString || type.type == VariantType::kVariant;
          arguments.push_back(is_text ? Variant(u"deux mille trois cent quarante-cinq")
                                      : SomeArgument(type, pick, host, registry.Get()));
        }
        FailEachAllocation(member, [&] { return way(object.Get(), row, member, arguments); });
      }
    }
  }
}

void Free(BSTR text) { SysFreeString(text); }
void Free(char* text) { QuorlFreeUtf8(text); }
void Free(auto* object) { object->table->Release(object); }

// Calls a function without memory for its first, second, ... allocation until it needs no more: it
// puts out nothing before.
template <class Out, class Function, class... Arguments>
void FailEachAllocationOf(Function function, Arguments... arguments) {
  Out out;
  const auto owned = [&] {
    if constexpr (requires { out.name; }) return out.name;
    if constexpr (!requires { out.name; }) return out;
  };
  for (std::int64_t place = 0;; ++place) {
    std::memset(&out, 0xFF, sizeof(out));
    const HRESULT code = [&] {
      const FailingAllocation failing(place, true);
      return function(arguments..., &out);
    }();
    if (code == S_OK) break;
    EXPECT_TRUE(code == E_OUTOFMEMORY || NumberIn(code) == 7) << place << ' ' << code;
    ASSERT_EQ(owned(), nullptr) << place;
  }
  Free(owned());
  if constexpr (requires { out.default_value; }) VariantClear(&out.default_value);
}

TEST(Memory, FunctionsPutOutNothingWithoutIt) {
  const std::string bytes(99, 'x');
  const OwnedVariant text(Variant(Utf16(bytes)));
  FailEachAllocationOf<BSTR>(QuorlFromUtf8, bytes.c_str());
  const auto to_utf8 = [&](char** out) { return QuorlToUtf8(text.Get().value.bstr, out, nullptr); };
  FailEachAllocationOf<char*>(to_utf8);
  const ClassRow& row = *frame::FindClass(u"Strings");
  const auto object = Reference<QuorlDispatch>::Adopt(row.make(row, frame::Holder::kHost));
  Reference<QuorlTypeInfo> info;
  object.Get()->table->GetTypeInfo(object.Get(), 0, 0, info.Receive());
  const QuorlTypeInfoTable& type = *info.Get()->table;
  FailEachAllocationOf<QuorlArgument>(type.GetArgument, info.Get(), 7U, 1U);
  FailEachAllocationOf<QuorlInterface>(type.GetInterface, info.Get(), 0U);
  FailEachAllocationOf<QuorlLibraryInfo*>(type.GetLibrary, info.Get());
  QuorlLibraryInfo* library = nullptr;
  type.GetLibrary(info.Get(), &library);
  const QuorlLibraryInfoTable& known = *library->table;
  FailEachAllocationOf<QuorlLibraryAttributes>(known.GetLibraryAttributes, library);
  FailEachAllocationOf<QuorlTypeInfo*>(known.GetClass, library, 0U);
  FailEachAllocationOf<QuorlEnumeration>(known.GetEnumeration, library, 0U);
  FailEachAllocationOf<QuorlEnumerator>(known.GetEnumerator, library, 0U, 0U);
  Free(library);
}

}  // namespace
}  // namespace quorl
