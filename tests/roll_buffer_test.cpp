// RollBuffer: every operation against a plain vector, the failures, and growth at its limits.

#include <sys/resource.h>

#include <cstdio>
#include <random>

#include "quorl/buffer/roll_buffer.hpp"

#include <gtest/gtest.h>

#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/utf.hpp"

namespace quorl {
namespace {

// The texts of the buffer's failures, "" where a call succeeds.
constexpr StringView kDone = u"";
constexpr StringView kE1 = u"La taille du buffer doit être supérieure à zéro";
constexpr StringView kE2 = u"Tentative de positionnement de l'index en dehors des limites";
constexpr StringView kE3 = u"Aucunne donnée n'est disponible car l'index se trouve en BOF ou EOF";
constexpr StringView kE4 = u"Tentative d'accès à un élément en dehors des limites";
constexpr StringView kE5 = u"Tentative de positionnement de l'index alors que le buffer est vide";
constexpr StringView kE6 = u"Tentative de positionnement de l'index au dela du dernier d'élément";
constexpr StringView kE7 = u"Tentative de positionnement de l'index en deça du premier élément";

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

// The obvious buffer: oldest first in a vector, cursor beside it. Each operation gives the text of
// its failure.
struct PlainBuffer {
  Int32 size = 100;
  std::vector<Int32> items;
  Int32 index = -1;

  Int32 Count() const { return static_cast<Int32>(items.size()); }
  bool Has(Int32 position) const { return position >= 0 && position < Count(); }

  void Add(Int32 item) {
    if (index == Count()) --index;
    items.resize(static_cast<std::size_t>(index + 1));
    items.push_back(item);
    if (Count() > size) items.erase(items.begin());
    index = Count() - 1;
  }
  StringView Resize(Int32 new_size) {
    if (new_size <= 0) return kE1;
    *this = PlainBuffer{new_size, {}, -1};
    return kDone;
  }
  StringView Place(Int32 position) {
    if (!Has(position)) return kE2;
    index = position;
    return kDone;
  }
  StringView Replace(Int32 item) {
    if (!Has(index)) return kE3;
    items[static_cast<std::size_t>(index)] = item;
    return kDone;
  }
  StringView GoTo(Int32 position) {
    if (items.empty()) return kE5;
    index = position;
    return kDone;
  }
  StringView Next() {
    if (items.empty() || index == Count()) return kE6;
    ++index;
    return kDone;
  }
  StringView Previous() {
    if (index == -1) return kE7;
    --index;
    return kDone;
  }
};

void ExpectSame(const RollBuffer& buffer, const PlainBuffer& plain, std::uint64_t random) {
  ASSERT_EQ(buffer.BufferSize(), plain.size);
  ASSERT_EQ(buffer.Count(), plain.Count());
  ASSERT_EQ(buffer.Index(), plain.index);
  ASSERT_EQ(buffer.BOF(), plain.index == -1);
  ASSERT_EQ(buffer.OnFirst(), plain.index == 0);
  ASSERT_EQ(buffer.OnLast(), plain.index == plain.Count() - 1);
  ASSERT_EQ(buffer.AtEOF(), plain.index == plain.Count() || plain.items.empty());
  const Int32 position = static_cast<Int32>(random % 24) - 2;
  if (plain.Has(position)) {
    ASSERT_EQ(buffer.Items(position), Variant(plain.items[static_cast<std::size_t>(position)]));
  } else {
    ASSERT_EQ(FailureOf([&] { buffer.Items(position); }), kE4);
  }
  if (plain.Has(plain.index)) {
    ASSERT_EQ(buffer.CurrentItem(), Variant(plain.items[static_cast<std::size_t>(plain.index)]));
  } else {
    ASSERT_EQ(FailureOf([&] { buffer.CurrentItem(); }), kE3);
  }
}

// One random operation on both; the same outcome is expected.
void Step(RollBuffer& buffer, PlainBuffer& plain, std::uint64_t random, Int32 item) {
  const Int32 number = static_cast<Int32>(random / 1000 % 25) - 2;
  const auto operation = random % 200;
  if (operation == 0) {
    const Int32 size = number > 20 ? -number : number;
    ASSERT_EQ(FailureOf([&] { buffer.BufferSize(size); }), plain.Resize(size));
  } else if (operation == 1) {
    buffer.Clear();
    plain = PlainBuffer{plain.size, {}, -1};
  } else if (operation < 100) {
    buffer.AddItem(item);
    plain.Add(item);
  } else if (operation < 110) {
    ASSERT_EQ(FailureOf([&] { buffer.Index(number); }), plain.Place(number));
  } else if (operation < 120) {
    ASSERT_EQ(FailureOf([&] { buffer.CurrentItem(item); }), plain.Replace(item));
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
  for (Int32 i = 0; i < 1000000; ++i) {
    const std::uint64_t random = generator();
    SCOPED_TRACE(testing::Message() << "step " << i << ", capacity " << plain.size);
    ASSERT_NO_FATAL_FAILURE(Step(buffer, plain, random, i));
    ASSERT_NO_FATAL_FAILURE(ExpectSame(buffer, plain, random >> 32));
  }
}

// The example of the header, and the member under the name that the macro hides.
TEST(RollBuffer, HeaderExample) {
  RollBuffer history;
  EXPECT_EQ(history.BufferSize(), 100);
  history.BufferSize(3);
  for (const char16_t* page : {u"a", u"b", u"c", u"d"}) history.AddItem(page);
  EXPECT_EQ(history.Items(0), Variant(u"b"));
  history.MovePrevious();
  history.AddItem(u"e");
  EXPECT_EQ(history.CurrentItem(), Variant(u"e"));
  history.MoveNext();
  static_assert(EOF < 0, "the macro is still the standard one");
#pragma push_macro("EOF")
#undef EOF
  EXPECT_TRUE(history.EOF());
#pragma pop_macro("EOF")
}

TEST(RollBuffer, ValuesAreCopiesAndObjectsReferences) {
  RollBuffer buffer;
  for (const Variant& value : {Variant(Null), Variant(Empty), Variant(Missing)}) {
    buffer.AddItem(value);
    EXPECT_EQ(buffer.CurrentItem(), value);
  }
  Variant text = u"before";
  buffer.AddItem(text);
  *text.If<String>() = u"after";
  Variant copy = buffer.CurrentItem();
  EXPECT_EQ(copy, Variant(u"before"));
  *copy.If<String>() = u"after";
  EXPECT_EQ(buffer.CurrentItem(), Variant(u"before"));
  const Object object = MakeObject<LateBound>();
  buffer.CurrentItem(object);
  EXPECT_EQ(buffer.CurrentItem(), Variant(object));
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

// Forbids the process more address space than it has now and `extra` bytes.
class AddressLimit {
 public:
  explicit AddressLimit(std::size_t extra) {
    getrlimit(RLIMIT_AS, &former_);
    std::size_t pages = 0;
    std::FILE* file = std::fopen("/proc/self/statm", "r");
    if (std::fscanf(file, "%zu", &pages) != 1) pages = 0;
    std::fclose(file);
    const rlimit limit{pages * 4096 + extra, former_.rlim_max};
    setrlimit(RLIMIT_AS, &limit);
  }
  ~AddressLimit() { setrlimit(RLIMIT_AS, &former_); }

 private:
  rlimit former_{};
};

TEST(RollBuffer, AHugeCapacityCostsNothingAndEndsInAFailure) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the sanitizer's own memory leaves no room for a limit";
#endif
  RollBuffer buffer;
  const AddressLimit limit(std::size_t{64} << 20);
  buffer.BufferSize(2147483647);
  Int32 number = 0;
  Int32 added = 0;
  while (number == 0 && added < 10000000) {
    try {
      buffer.AddItem(added);
      ++added;
    } catch (const RaisedError& error) {
      number = error.Number();
    }
  }
  EXPECT_EQ(number, 7);
  EXPECT_EQ(buffer.Count(), added);
  EXPECT_EQ(buffer.Index(), added - 1);
  EXPECT_EQ(buffer.Items(0), Variant(0));
  EXPECT_EQ(buffer.CurrentItem(), Variant(added - 1));
  // What needs no growth still works, and a text too large to copy changes nothing.
  const Variant large(String(std::size_t{8} << 20, u'x'));
  std::vector<Variant> kept;
  try {
    for (;;) kept.push_back(large);
  } catch (const std::bad_alloc&) {
  }
  EXPECT_THROW(buffer.CurrentItem(large), RaisedError);
  EXPECT_EQ(buffer.CurrentItem(), Variant(added - 1));
}

}  // namespace
}  // namespace quorl
