// RollBuffer: every operation against a plain vector, the failures, and growth up to its limits.

#include "quorl/buffer/roll_buffer.hpp"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdio>
#include <random>

#include "quorl/runtime/raised_error.hpp"

namespace quorl {
namespace {

// The failure of a call, "" without one.
template <class Work>
String FailureOf(Work work) {
  try {
    work();
  } catch (const RaisedError& error) {
    EXPECT_EQ(error.Number(), 5000);
    EXPECT_EQ(error.Source(), u"RollBuffer");
    return error.Description();
  }
  return {};
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
  StringView Place(Int32 position) {
    if (!Has(position)) return u"Tentative de positionnement de l'index en dehors des limites";
    index = position;
    return u"";
  }
  StringView GoTo(Int32 position) {
    if (Count() > 0) return Place(position);
    return u"Tentative de positionnement de l'index alors que le buffer est vide";
  }
  StringView Next() {
    if (items.empty() || index == Count())
      return u"Tentative de positionnement de l'index au dela du dernier d'élément";
    ++index;
    return u"";
  }
  StringView Previous() {
    if (index == -1) return u"Tentative de positionnement de l'index en deça du premier élément";
    --index;
    return u"";
  }
};

void ExpectSame(const RollBuffer& buffer, PlainBuffer& plain, Int32 position) {
  ASSERT_EQ(buffer.BufferSize(), plain.size);
  ASSERT_EQ(buffer.Count(), plain.Count());
  ASSERT_EQ(buffer.Index(), plain.index);
  ASSERT_EQ(buffer.BOF(), plain.index == -1);
  ASSERT_EQ(buffer.OnFirst(), plain.index == 0);
  ASSERT_EQ(buffer.OnLast(), plain.index == plain.Count() - 1);
  ASSERT_EQ(buffer.AtEOF(), plain.index == plain.Count() || plain.items.empty());
  if (plain.Has(position)) {
    ASSERT_EQ(buffer.Items(position), Variant(plain.At(position)));
  } else {
    ASSERT_EQ(FailureOf([&] { buffer.Items(position); }),
              u"Tentative d'accès à un élément en dehors des limites");
  }
  if (plain.Has(plain.index)) {
    ASSERT_EQ(buffer.CurrentItem(), Variant(plain.At(plain.index)));
  } else {
    ASSERT_EQ(FailureOf([&] { buffer.CurrentItem(); }),
              u"Aucunne donnée n'est disponible car l'index se trouve en BOF ou EOF");
  }
}

// One random operation on both, with the same outcome expected.
void Step(RollBuffer& buffer, PlainBuffer& plain, std::uint64_t random, Int32 item) {
  const auto operation = random % 200;
  const Int32 number = static_cast<Int32>(random / 200 % 23) - 2;
  if (operation == 0) {
    ASSERT_EQ(FailureOf([&] { buffer.BufferSize(number); }), plain.Resize(number));
  } else if (operation == 1) {
    buffer.Clear();
    plain.Resize(plain.size);
  } else if (operation < 100) {
    buffer.AddItem(item);
    plain.Add(item);
  } else if (operation < 110) {
    ASSERT_EQ(FailureOf([&] { buffer.Index(number); }), plain.Place(number));
  } else if (operation < 120) {
    const bool replaced = FailureOf([&] { buffer.CurrentItem(item); }).empty();
    ASSERT_EQ(replaced, plain.Has(plain.index));
    if (replaced) plain.At(plain.index) = item;
  } else if (operation < 123) {
    ASSERT_EQ(FailureOf([&] { buffer.MoveFirst(); }), plain.GoTo(0));
  } else if (operation < 130) {
    ASSERT_EQ(FailureOf([&] { buffer.MoveLast(); }), plain.GoTo(plain.Count() - 1));
  } else if (operation < 160) {
    ASSERT_EQ(FailureOf([&] { buffer.MoveNext(); }), plain.Next());
  } else {
    ASSERT_EQ(FailureOf([&] { buffer.MovePrevious(); }), plain.Previous());
  }
}

TEST(RollBuffer, AMillionOperationsAgreeWithAPlainVector) {
  std::mt19937_64 generator(81);
  RollBuffer buffer;
  PlainBuffer plain;
  for (Int32 i = 0; i < 1000000 && !HasFailure(); ++i) {
    const std::uint64_t random = generator();
    SCOPED_TRACE(i);
    Step(buffer, plain, random, i);
    ExpectSame(buffer, plain, static_cast<Int32>(random >> 32 & 31) - 2);
  }
}

TEST(RollBuffer, ValuesAreCopiesAndObjectsReferences) {
  RollBuffer buffer;
  for (const Variant& value : {Variant(Null), Variant(Empty), Variant(MakeObject<LateBound>())}) {
    buffer.AddItem(value);
    EXPECT_EQ(buffer.CurrentItem(), value);
  }
  Variant text = u"before";
  buffer.AddItem(text);
  *text.If<String>() = u"after";
  Variant copy = buffer.CurrentItem();
  *copy.If<String>() = u"after";
  EXPECT_EQ(buffer.CurrentItem(), Variant(u"before"));
}

// A host's object that uses the buffer while the buffer drops it.
class Caller : public LateBound {
 public:
  explicit Caller(RollBuffer& buffer) : buffer_(buffer) {}
  ~Caller() override { buffer_.AddItem(u"late"); }

 private:
  RollBuffer& buffer_;
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
  Int32 number = 0, added = 0;
  for (; number == 0 && added < 100000000; ++added) {
    try {
      buffer.AddItem(added);
    } catch (const RaisedError& error) {
      number = error.Number();
    }
  }
  setrlimit(RLIMIT_AS, &former);
  EXPECT_EQ(number, 7);
  EXPECT_EQ(buffer.Count(), added - 1);
  EXPECT_EQ(buffer.Items(0), Variant(0));
  EXPECT_EQ(buffer.CurrentItem(), Variant(added - 2));
  buffer.AddItem(added);
  EXPECT_EQ(buffer.CurrentItem(), Variant(added));
}

// The example of the header, and the member under the name that the macro hides.
TEST(RollBuffer, HeaderExample) {
  RollBuffer history;
  history.BufferSize(3);
  for (const char16_t* page : {u"a", u"b", u"c", u"d"}) history.AddItem(page);
  EXPECT_EQ(history.Items(0), Variant(u"b"));
  history.MovePrevious();
  history.AddItem(u"e");
  EXPECT_EQ(history.CurrentItem(), Variant(u"e"));
  static_assert(EOF < 0, "the macro is in force behind the header");
#undef EOF
  EXPECT_FALSE(history.EOF());
}

}  // namespace
}  // namespace quorl
