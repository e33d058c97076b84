// RollBuffer: every operation against a plain vector, the failures, and growth up to its limits.

#include "quorl/buffer/roll_buffer.hpp"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdio>

#include "tests/support/print.hpp"
#include "tests/support/raises.hpp"
#include "tests/support/random.hpp"

namespace quorl {
namespace {

// The buffer's failure with that description; none for "".
Failure Refusal(StringView description) {
  return description.empty() ? Failure{} : Failure{5000, u"RollBuffer", String(description)};
}

// The obvious buffer: oldest first in a vector, the cursor beside it. Operations give the text of
// their failure, "" without one.
struct PlainBuffer {
  Int32 size = 100;
  std::vector<Int32> items{};
  Int32 index = -1;

  Int32 Count() const { return static_cast<Int32>(items.size()); }
  bool Has(Int32 position) const { return position >= 0 && position < Count(); }
  Int32& At(Int32 position) { return items.at(static_cast<std::size_t>(position)); }

  void Add(Int32 item) {
    if (index == Count()) --index;
    items.resize(static_cast<std::size_t>(index + 1));
    items.push_back(item);
    if (Count() > size) items.erase(items.begin());
    index = Count() - 1;
  }
  StringView Resize(Int32 new_size) {
    if (new_size <= 0) return u"La taille du buffer doit être supérieure à zéro";
    *this = {.size = new_size};
    return u"";
  }
  StringView Go(bool is_allowed, Int32 position, StringView refusal) {
    if (is_allowed) index = position;
    return is_allowed ? u"" : refusal;
  }
  StringView Place(Int32 position) {
    return Go(Has(position), position,
              u"Tentative de positionnement de l'index en dehors des limites");
  }
  StringView GoTo(Int32 position) {
    return Go(Count() > 0, position,
              u"Tentative de positionnement de l'index alors que le buffer est vide");
  }
  StringView Next() {
    return Go(Count() > 0 && index < Count(), index + 1,
              u"Tentative de positionnement de l'index au dela du dernier d'élément");
  }
  StringView Previous() {
    return Go(index >= 0, index - 1,
              u"Tentative de positionnement de l'index en deça du premier élément");
  }
};

void ExpectSame(RollBuffer& buffer, PlainBuffer& plain, Int32 position) {
  EXPECT_EQ(buffer.BufferSize(), plain.size);
  EXPECT_EQ(buffer.Count(), plain.Count());
  EXPECT_EQ(buffer.Index(), plain.index);
  EXPECT_EQ(buffer.BOF(), plain.index == -1);
  EXPECT_EQ(buffer.OnFirst(), plain.index == 0);
  EXPECT_EQ(buffer.OnLast(), plain.index == plain.Count() - 1);
  EXPECT_EQ(buffer.AtEOF(), plain.index == plain.Count() || plain.items.empty());
  if (plain.Has(position)) {
    EXPECT_EQ(buffer.Items(position), Variant(plain.At(position)));
  } else {
    EXPECT_RAISES(buffer.Items(position),
                  Refusal(u"Tentative d'accès à un élément en dehors des limites"));
  }
  if (plain.Has(plain.index)) {
    EXPECT_EQ(buffer.CurrentItem(), Variant(plain.At(plain.index)));
  } else {
    const Failure refusal =
        Refusal(u"Aucunne donnée n'est disponible car l'index se trouve en BOF ou EOF");
    EXPECT_RAISES(buffer.CurrentItem(), refusal);
    EXPECT_RAISES(buffer.CurrentItem(position), refusal);
  }
}

// One random operation on both, with the same outcome expected.
void Step(RollBuffer& buffer, PlainBuffer& plain, std::uint64_t random, Int32 item) {
  const auto operation = random % 200;
  const Int32 number = static_cast<Int32>(random / 200 % 23) - 2;
  if (operation == 0) {
    EXPECT_RAISES(buffer.BufferSize(number), Refusal(plain.Resize(number)));
  } else if (operation == 1) {
    buffer.Clear();
    plain.Resize(plain.size);
  } else if (operation < 100) {
    buffer.AddItem(item);
    plain.Add(item);
  } else if (operation < 110) {
    EXPECT_RAISES(buffer.Index(number), Refusal(plain.Place(number)));
  } else if (operation < 120) {
    if (!plain.Has(plain.index)) return;
    buffer.CurrentItem(item);
    plain.At(plain.index) = item;
  } else if (operation < 123) {
    EXPECT_RAISES(buffer.MoveFirst(), Refusal(plain.GoTo(0)));
  } else if (operation < 130) {
    EXPECT_RAISES(buffer.MoveLast(), Refusal(plain.GoTo(plain.Count() - 1)));
  } else if (operation < 160) {
    EXPECT_RAISES(buffer.MoveNext(), Refusal(plain.Next()));
  } else {
    EXPECT_RAISES(buffer.MovePrevious(), Refusal(plain.Previous()));
  }
}

TEST(RollBuffer, AMillionOperationsAgreeWithAPlainVector) {
  Random random(81);
  RollBuffer buffer;
  PlainBuffer plain;
  for (Int32 i = 0; i < 1000000 && !HasFailure(); ++i) {
    SCOPED_TRACE(i);
    Step(buffer, plain, random.Bits(), i);
    ExpectSame(buffer, plain, static_cast<Int32>(random.Whole(-2, 29)));
  }
}

TEST(RollBuffer, ValuesAreCopiesAndObjectsReferences) {
  RollBuffer buffer;
  for (const Variant& value : {Variant(Null), Variant(Empty), Variant(MakeObject<LateBound>())}) {
    buffer.AddItem(value);
    EXPECT_EQ(buffer.CurrentItem(), value);
  }
  buffer.AddItem(u"before");
  Variant copy = buffer.CurrentItem();
  *copy.If<String>() = u"after";
  EXPECT_EQ(buffer.CurrentItem(), Variant(u"before"));
  static_assert(EOF < 0, "the macro is in force behind the header");
#undef EOF
  EXPECT_FALSE(buffer.EOF());
}

// A host's object that uses the buffer while the buffer drops it.
struct Caller : LateBound {
  explicit Caller(RollBuffer& used) : buffer(used) {}
  ~Caller() override { buffer.AddItem(u"late"); }
  RollBuffer& buffer;
};

TEST(RollBuffer, AnItemThatEndsMayCallBack) {
  RollBuffer buffer;
  buffer.BufferSize(2);
  buffer.AddItem(MakeObject<Caller>(buffer));
  buffer.AddItem(1);
  buffer.AddItem(2);  // drops the object, which adds its text
  EXPECT_EQ(buffer.Items(0), Variant(2));
  EXPECT_EQ(buffer.Items(1), Variant(u"late"));
  buffer.CurrentItem(MakeObject<Caller>(buffer));
  buffer.BufferSize(5);
  EXPECT_EQ(buffer.Count(), 1);
  EXPECT_EQ(buffer.CurrentItem(), Variant(u"late"));
}

TEST(RollBuffer, AHugeCapacityCostsNothingAndEndsInAFailure) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the sanitizer's own address space leaves no room for a limit";
#endif
  rlimit former{};
  getrlimit(RLIMIT_AS, &former);
  const rlimit tight{rlim_t{512} << 20, former.rlim_max};
  setrlimit(RLIMIT_AS, &tight);
  RollBuffer buffer;
  buffer.BufferSize(2147483647);
  Int32 added = 0;
  const Failure failure = FailureOf([&] {
    for (; added < 100000000; ++added) buffer.AddItem(added);
  });
  setrlimit(RLIMIT_AS, &former);
  EXPECT_EQ(failure, RuntimeFailure(7));
  EXPECT_EQ(buffer.Count(), added);
  EXPECT_EQ(buffer.Items(0), Variant(0));
  EXPECT_EQ(buffer.CurrentItem(), Variant(added - 1));
  buffer.AddItem(added);
  EXPECT_EQ(buffer.CurrentItem(), Variant(added));
}

}  // namespace
}  // namespace quorl
