// Two threads, each with objects of its own over one store and one locale: each gets what it gets
// alone, and the thread sanitizer sees no race (`cmake --workflow --preset threads`).
#include <latch>
#include <thread>

#include "quorl/quorl.hpp"
#include "quorl/store/persistent_store.hpp"
#include "tests/support/component.hpp"
#include "tests/support/store_temporary_folder.hpp"

namespace quorl {
namespace {

const std::function<String(Int32 thread)> kJobs[] = {
    [](Int32 thread) {
      Money money;
      money.Language = thread == 0 ? u"FR" : u"DE";
      return money.ToText(Currency::FromTenThousandths(123'456'780'000)) +
             Strings::ProperCase(Strings::Pluriel(u"EAU d'ÉRABLE")) +
             ToString(GUIDs::CreateGUID() == GUIDs::CreateGUID());
    },
    [](Int32 thread) {
      return DbLib::StrFieldValue(DbLib::StrNumToField(u"1234,50")) +
             DbLib::StrFieldValue(DbLib::StrDateToField(u"31/12/2024")) +
             FailureOf([&] { Math::RoundSup(1.5 + thread, -1); }).description;
    },
    [](Int32 thread) {
      static Registry of_both;
      Registry own;
      own.RootKeyName(u"Maison\\" + ToString(thread));
      own.SaveValue(u"Caisse", u"Nom", Strings::Padl(own.RootKeyName(), 2000));
      const Variant read = of_both.GetValue(own.KeyFullName(u"Caisse"), u"Nom", u"");
      own.DeleteKey(u"");
      return ToString(read) + FailureOf([&] { own.DeleteKey(u""); }).description;
    },
    [](Int32) {
      Regional().SetRegional(riNumDecimalChar, u",");
      return Regional().NumDecimalChar() + Regional().ThousandChar();
    },
    [](Int32 thread) {
      const ClassRow& row = *frame::FindClass(u"RollBuffer");
      const auto buffer = Reference<QuorlDispatch>::Adopt(row.make(row, frame::Holder::kHost));
      CallNamed(buffer.Get(), u"AddItem", DISPATCH_METHOD, {}, {thread});
      return ToString(CallNamed(buffer.Get(), u"CurrentItem", DISPATCH_PROPERTYGET, {}).value) +
             CallNamed(buffer.Get(), u"Items", DISPATCH_PROPERTYGET, {}, {1}).failure.description;
    },
};

String ResultsOf(Int32 thread) {
  String results;
  for (int round = 0; round < 20; ++round) {
    for (const auto& job : kJobs) results += job(thread);
  }
  return results;
}

TEST(Threads, GetWhatEachGetsAlone) {
  const TemporaryFolder folder;
  PersistentStore on_disk(folder.Folders());
  MemoryStore in_memory;
  for (Store* store : std::initializer_list<Store*>{&on_disk, &in_memory}) {
    const ScopedStore guard(*store);
    std::latch start(2);
    String together[2];
    const auto play = [&](Int32 thread) {
      start.arrive_and_wait();
      together[thread] = ResultsOf(thread);
    };
    std::thread other(play, 1);
    play(0);
    other.join();
    for (const Int32 thread : {0, 1}) EXPECT_EQ(together[thread], ResultsOf(thread));
  }
}

}  // namespace
}  // namespace quorl
