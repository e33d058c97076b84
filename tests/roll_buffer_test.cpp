// RollBuffer: every operation against a plain vector, and items that call back.

#include "quorl/buffer/roll_buffer.hpp"

#include <cstdio>  // the macro EOF

#include "tests/support/values.hpp"

namespace quorl {
namespace {

static_assert(EOF < 0, "the macro is in force after the header");
#undef EOF

// The buffer's failure with that description; none for "".
Failure Refusal(StringView description) {
  return description.empty() ? Failure{} : Failure{5000, u"RollBuffer", String(description)};
}

constexpr StringView kNotOnItem =
    u"Aucunne donnée n'est disponible car l'index se trouve en BOF ou EOF";

// A number, or a text of a length that suits the place of another or does not.
Variant ItemOf(Int32 number) {
  if (number % 3 == 0) return number;
  const Int32 length = number % 97 == 0 ? 300 : number % 20;
  return String(static_cast<std::size_t>(length), u'x') + Utf16(std::to_string(number));
}

// The obvious buffer: oldest first in a vector, the cursor beside it. One random operation at a
// time on it and on the real one, with the same outcome expected.
struct PlainBuffer {
  RollBuffer& real;
  Int32 size = 100;
  std::vector<Int32> items{};
  Int32 index = -1;

  Int32 Count() const { return static_cast<Int32>(items.size()); }
  bool Has(Int32 position) const { return position >= 0 && position < Count(); }
  Int32& At(Int32 position) { return items.at(static_cast<std::size_t>(position)); }

  // A move of the cursor, to that position if it is allowed.
  template <class Move>
  void Go(Move move, bool is_allowed, Int32 position, StringView refusal) {
    EXPECT_RAISES(move(), Refusal(is_allowed ? u"" : refusal));
    if (is_allowed) index = position;
  }

  void Step(std::uint64_t operation, Int32 number, Int32 item) {
    if (operation < 2) {
      const bool is_allowed = operation == 1 || number > 0;
      EXPECT_RAISES(operation == 1 ? real.Clear() : real.BufferSize(number),
                    Refusal(is_allowed ? u"" : u"La taille du buffer doit être supérieure à zéro"));
      if (!is_allowed) return;
      if (operation == 0) size = number;
      items.clear();
      index = -1;
    } else if (operation < 100) {
      real.AddItem(ItemOf(item));
      if (index == Count()) --index;
      items.resize(static_cast<std::size_t>(index + 1));
      items.push_back(item);
      if (Count() > size) items.erase(items.begin());
      index = Count() - 1;
    } else if (operation < 110) {
      EXPECT_RAISES(real.CurrentItem(ItemOf(item)), Refusal(Has(index) ? u"" : kNotOnItem));
      if (Has(index)) At(index) = item;
    } else if (operation < 120) {
      Go([&] { real.Index(number); }, Has(number), number,
         u"Tentative de positionnement de l'index en dehors des limites");
    } else if (operation < 130) {
      const bool first = operation < 123;
      Go([&] { first ? real.MoveFirst() : real.MoveLast(); }, Count() > 0, first ? 0 : Count() - 1,
         u"Tentative de positionnement de l'index alors que le buffer est vide");
    } else if (operation < 160) {
      Go([&] { real.MoveNext(); }, Count() > 0 && index < Count(), index + 1,
         u"Tentative de positionnement de l'index au dela du dernier d'élément");
    } else {
      Go([&] { real.MovePrevious(); }, index >= 0, index - 1,
         u"Tentative de positionnement de l'index en deça du premier élément");
    }
  }

  void ExpectSame(Int32 position) {
    EXPECT_EQ(real.BufferSize(), size);
    EXPECT_EQ(real.Count(), Count());
    EXPECT_EQ(real.Index(), index);
    EXPECT_EQ(real.BOF(), index == -1);
    EXPECT_EQ(real.OnFirst(), index == 0);
    EXPECT_EQ(real.OnLast(), index == Count() - 1);
    EXPECT_EQ(real.AtEOF(), index == Count() || items.empty());
    EXPECT_EQ(real.EOF(), real.AtEOF());
    Variant item;
    EXPECT_RAISES(
        item = real.Items(position),
        Refusal(Has(position) ? u"" : u"Tentative d'accès à un élément en dehors des limites"));
    EXPECT_EQ(item, Has(position) ? ItemOf(At(position)) : Variant());
    EXPECT_RAISES(item = real.CurrentItem(), Refusal(Has(index) ? u"" : kNotOnItem));
    EXPECT_EQ(item, Has(index) ? ItemOf(At(index)) : item);
  }
};

TEST(RollBuffer, AMillionOperationsAgreeWithAPlainVector) {
  Random random(81);
  RollBuffer buffer;
  PlainBuffer plain{buffer};
  for (Int32 i = 0; i < 1000000 && !HasFailure(); ++i) {
    SCOPED_TRACE(i);
    plain.Step(random.Bits() % 200, static_cast<Int32>(random.Whole(-2, 20)), i);
    plain.ExpectSame(static_cast<Int32>(random.Whole(-2, 29)));
  }
}

// A host's object that uses the buffer while the buffer drops it.
struct Caller : LateBound {
  explicit Caller(RollBuffer& used) : buffer(used) {}
  ~Caller() override { buffer.AddItem(u"late"); }
  RollBuffer& buffer;
};

TEST(RollBuffer, AnItemThatEndsMayCallBack) {
  RollBuffer buffer;
  buffer.BufferSize(2147483647);  // costs nothing
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

}  // namespace
}  // namespace quorl
