#include "quorl/runtime/raised_error.hpp"

#include <algorithm>
#include <array>
#include <functional>
#include <new>

#include "quorl/runtime/utf.hpp"

namespace quorl {

struct RaisedError::Record {
  Int32 number;
  String source;
  String description;
  std::string what;
};

namespace {

struct Sentence {
  FailureNumber number;
  StringView text;
};

constexpr std::array kSentences{
    Sentence{FailureNumber::kInvalidArgument, u"Argument ou appel de procédure incorrect."},
    Sentence{FailureNumber::kOverflow, u"Dépassement de capacité."},
    Sentence{FailureNumber::kOutOfMemory, u"Mémoire insuffisante."},
    Sentence{FailureNumber::kSubscriptOutOfRange, u"L'indice n'appartient pas à la sélection."},
    Sentence{FailureNumber::kDivisionByZero, u"Division par zéro."},
    Sentence{FailureNumber::kTypeMismatch, u"Incompatibilité de type."},
    Sentence{FailureNumber::kNoObject, u"Aucun objet n'est affecté à la référence."},
    Sentence{FailureNumber::kInvalidUseOfNull, u"Utilisation incorrecte de Null."},
    Sentence{FailureNumber::kObjectRequired, u"Un objet est requis."},
    Sentence{FailureNumber::kNoSuchMember, u"L'objet ne possède pas ce membre."},
};
static_assert(std::ranges::is_sorted(kSentences, std::less{}, &Sentence::number));

// Thrown without asking for memory when there is none left. Made by the first call, so that a
// failure in another source's initialiser finds it whole.
const RaisedError& OutOfMemory() {
  static const RaisedError made(static_cast<Int32>(FailureNumber::kOutOfMemory), kRuntimeSource,
                                DescriptionOf(FailureNumber::kOutOfMemory));
  return made;
}

// Calls it while there is memory.
[[maybe_unused]] const RaisedError& kMadeEarly = OutOfMemory();

}  // namespace

RaisedError::RaisedError(Int32 number, StringView source, StringView description) try
    : record_(std::make_shared<const Record>(
          Record{number, String(source), String(description),
                 Utf8(source) + " (" + std::to_string(number) + "): " + Utf8(description)})) {
} catch (const std::bad_alloc&) {
  throw RaisedError(OutOfMemory());
}

Int32 RaisedError::Number() const noexcept { return record_->number; }
const String& RaisedError::Source() const noexcept { return record_->source; }
const String& RaisedError::Description() const noexcept { return record_->description; }
const char* RaisedError::what() const noexcept { return record_->what.c_str(); }

StringView DescriptionOf(FailureNumber number) noexcept {
  const auto* found = std::ranges::lower_bound(kSentences, number, std::less{}, &Sentence::number);
  return found != kSentences.end() && found->number == number ? found->text : StringView{};
}

void Raise(FailureNumber number) {
  if (number == FailureNumber::kOutOfMemory) throw RaisedError(OutOfMemory());
  throw RaisedError(static_cast<Int32>(number), kRuntimeSource, DescriptionOf(number));
}

}  // namespace quorl
