// An ordered list of elements that finds, inserts, removes and counts in logarithmic time, in
// whatever order the elements come. It is a search tree balanced by random priorities (a treap);
// the links lie in the elements, so that nothing here allocates or fails. It owns nothing.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace quorl::internal {

/// A random number, which decides how near to the top of its tree an element stands.
std::uint32_t DrawPriority() noexcept;

/// What an element holds for each tree that it is in.
template <class Element>
struct TreeLink {
  Element* before = nullptr;
  Element* after = nullptr;
  std::uint32_t priority = DrawPriority();
  std::uint32_t size = 1;  ///< Of the part of the tree that begins here.
};

/// `kLink` is the element's link for this tree, `IsLess` the order of two elements, none of which
/// are equal.
template <class Element, TreeLink<Element> Element::*kLink, class IsLess>
class CountedTree {
 public:
  std::size_t Size() const noexcept { return SizeOf(top_); }
  bool IsEmpty() const noexcept { return top_ == nullptr; }
  Element* Top() const noexcept { return top_; }

  void Insert(Element& element) noexcept {
    TreeLink<Element>& link = element.*kLink;
    Element** place = &top_;
    while (*place != nullptr && Link(*place).priority >= link.priority) {
      ++Link(*place).size;
      place = IsLess()(element, **place) ? &Link(*place).before : &Link(*place).after;
    }
    Split(*place, element, link.before, link.after);
    Recount(element);
    *place = &element;
  }

  void Remove(Element& element) noexcept {
    Element** place = &top_;
    while (*place != &element) {
      --Link(*place).size;
      place = IsLess()(element, **place) ? &Link(*place).before : &Link(*place).after;
    }
    *place = Joined((element.*kLink).before, (element.*kLink).after);
    element.*kLink = {.priority = (element.*kLink).priority};
  }

  /// The element at `place`, counted from 0; null after the last one.
  Element* At(std::size_t place) const noexcept {
    Element* each = top_;
    while (each != nullptr && place != SizeOf(Link(each).before)) {
      const std::size_t before = SizeOf(Link(each).before);
      each = place < before ? Link(each).before : Link(each).after;
      if (place > before) place -= before + 1;
    }
    return each;
  }

  /// The element that stands equal to what is looked for, by `order(const Element&)`, a
  /// std::strong_ordering of the element to that; null for none.
  template <class Order>
  Element* Find(Order order) const noexcept {
    Element* each = top_;
    while (each != nullptr) {
      const std::strong_ordering standing = order(std::as_const(*each));
      if (std::is_eq(standing)) return each;
      each = std::is_lt(standing) ? Link(each).after : Link(each).before;
    }
    return nullptr;
  }

  /// Calls `visit(Element&)` for each element in order. The tree is not deep whatever it holds.
  template <class Visit>
  void ForEach(Visit&& visit) const {
    ForEachFrom(top_, visit);
  }

  /// Forgets all elements, and gives each to `dispose(Element*)`, in order.
  template <class Dispose>
  void Clear(Dispose dispose) noexcept {
    while (top_ != nullptr) {
      // The part before the top goes above it, until there is none: linear, and no recursion.
      if (Element* before = Link(top_).before) {
        Link(top_).before = std::exchange(Link(before).after, top_);
        top_ = before;
      } else {
        dispose(std::exchange(top_, Link(top_).after));
      }
    }
  }

 private:
  static TreeLink<Element>& Link(Element* element) noexcept { return element->*kLink; }
  static std::uint32_t SizeOf(Element* element) noexcept {
    return element == nullptr ? 0 : Link(element).size;
  }
  static void Recount(Element& element) noexcept {
    TreeLink<Element>& link = element.*kLink;
    link.size = 1 + SizeOf(link.before) + SizeOf(link.after);
  }

  // Parts the tree that begins at `from` into what comes before and after `element`.
  static void Split(Element* from, const Element& element, Element*& before,
                    Element*& after) noexcept {
    if (from == nullptr) {
      before = after = nullptr;
      return;
    }
    if (IsLess()(element, *from)) {
      Split(Link(from).before, element, before, Link(from).before);
      after = from;
    } else {
      Split(Link(from).after, element, Link(from).after, after);
      before = from;
    }
    Recount(*from);
  }

  static Element* Joined(Element* before, Element* after) noexcept {
    if (before == nullptr) return after;
    if (after == nullptr) return before;
    if (Link(before).priority >= Link(after).priority) {
      Link(before).after = Joined(Link(before).after, after);
      Recount(*before);
      return before;
    }
    Link(after).before = Joined(before, Link(after).before);
    Recount(*after);
    return after;
  }

  template <class Visit>
  static void ForEachFrom(Element* from, Visit& visit) {
    if (from == nullptr) return;
    ForEachFrom(Link(from).before, visit);
    visit(*from);
    ForEachFrom(Link(from).after, visit);
  }

  Element* top_ = nullptr;
};

}  // namespace quorl::internal
