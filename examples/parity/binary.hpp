// Values in their binary form, and what hosts need for a call by name: owners of VARIANTs, failure
// records and objects.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "examples/parity/log.hpp"

namespace parity {

/// A counted reference.
template <class Interface = QuorlDispatch>
class Counted {
 public:
  Counted() = default;
  static Counted Adopt(Interface* object) {
    Counted counted;
    counted.object_ = object;
    return counted;
  }
  static Counted Share(Interface* object) {
    if (object != nullptr) object->table->AddRef(object);
    return Adopt(object);
  }
  Counted(Counted&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Counted& operator=(Counted&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Counted() {
    if (object_ != nullptr) object_->table->Release(object_);
  }

  Interface* Get() const { return object_; }
  void** Receive() { return reinterpret_cast<void**>(&object_); }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  Interface* object_ = nullptr;
};

/// A value in binary form, with what it refers to. Throws std::bad_alloc.
class Passed {
 public:
  Passed() { VariantInit(&variant_); }
  explicit Passed(const Value& value);
  Passed(Passed&& other) noexcept
      : variant_(std::exchange(other.variant_, VARIANT{})), target_(std::move(other.target_)) {}
  Passed& operator=(Passed&&) = delete;
  ~Passed() { VariantClear(&variant_); }

  VARIANT* Address() { return &variant_; }
  const VARIANT& Get() const { return variant_; }
  /// What a reference refers to, without further references; itself if it is none.
  VARIANT* Target() { return target_ == nullptr ? &variant_ : target_->Target(); }
  VARIANT Detach() { return std::exchange(variant_, VARIANT{}); }

 private:
  VARIANT variant_;
  std::unique_ptr<Passed> target_;
};

/// The value that a VARIANT holds or refers to, whatever it is; an object by its pointer, lent.
Value ValueOf(const VARIANT& variant);

/// Puts a value where an argument by reference of the same type points to; anything else is left.
void WriteBack(const VARIANT& argument, const Value& value);

/// A text of the contract; throws std::bad_alloc.
BSTR NewText(const std::u16string& text);
std::u16string TextOf(BSTR text);
/// The same for a text that the caller owns and gives away.
std::u16string TakeText(BSTR text);

/// The Number that a code of a failed call stands for.
std::int32_t NumberOf(HRESULT code);

/// "#5", for a member or an argument of which no name is known.
Name Numbered(std::int32_t id);

/// The arguments of a call as the log has them: the positional ones first, in their order.
/// `name_of` gives the name of a named one.
std::vector<Argument> ArgumentsOf(const DISPPARAMS& parameters,
                                  const std::function<Name(std::int32_t)>& name_of);

/// The same in binary: named ones first, then the positional ones in reverse.
std::vector<std::size_t> BinaryOrder(const std::vector<Argument>& arguments);

/// A failure record, filled in where it is to be later, and freed.
class Record {
 public:
  Record() = default;
  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;
  ~Record();

  EXCEPINFO* Address() { return &info_; }
  void Complete();
  std::int32_t Number() const { return info_.scode != 0 ? NumberOf(info_.scode) : info_.code; }
  const EXCEPINFO& Get() const { return info_; }
  EXCEPINFO Detach() { return std::exchange(info_, EXCEPINFO{}); }

 private:
  EXCEPINFO info_{};
};

/// Fills a record with a failure of that Number.
void Fill(EXCEPINFO& info, std::int32_t number, const std::u16string& source,
          const std::u16string& description);

/// What a call by name ended with; `result` is null when none was asked for.
Outcome OutcomeOf(HRESULT code, const VARIANT* result, Record& record,
                  std::uint32_t wrong_argument);

}  // namespace parity
