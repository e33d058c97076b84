// What can be wrong with a file in the registry text format, one table for all of it: the fault and
// the French sentence that a failure's Description ends with. For the format see format.hpp.
#pragma once

#include <array>

#include "quorl/registry/text/format.hpp"
#include "quorl/runtime/raised_error.hpp"

namespace quorl {

enum class RegistryTextFault : std::uint8_t {
  kUnknownHeader,
  kHighByteFirst,
  kHalfCharacter,
  kIncomplete,
  kNoKey,
  kUnknownLine,
  kMeaninglessEnd,
  kUnclosedKey,
  kNoRootKey,
  kBadKeyName,
  kDeletedRoot,
  kValueWithoutKey,
  kValueOfDeletedKey,
  kBadValueName,
  kNoEqualsSign,
  kUnknownContent,
  kNoColon,
  kNoNumber,
  kBadType,
  kBadByte,
  kUnclosedText,
  kLoneBackslash,
  kHalfCharacterInText,
  kForeignCharacter,
};

/// One row of the table.
struct RegistryTextFaultRow {
  RegistryTextFault fault;
  StringView sentence;
};

inline constexpr auto kRegistryTextFaults = std::to_array<RegistryTextFaultRow>({
    {RegistryTextFault::kUnknownHeader,
     u"l'en-tête n'est ni celui de la version 5.00 ni celui de la version 4"},
    {RegistryTextFault::kHighByteFirst,
     u"le texte UTF-16 doit avoir l'octet de poids faible en premier"},
    {RegistryTextFault::kHalfCharacter, u"le fichier s'arrête au milieu d'un caractère"},
    {RegistryTextFault::kIncomplete,
     u"le fichier est incomplet : sa dernière ligne, \"; end\", manque"},
    {RegistryTextFault::kNoKey, u"le fichier ne contient aucune clé"},
    {RegistryTextFault::kUnknownLine,
     u"la ligne n'est ni une clé, ni une valeur, ni un commentaire"},
    {RegistryTextFault::kMeaninglessEnd, u"la fin de la ligne n'a pas de sens"},
    {RegistryTextFault::kUnclosedKey, u"la clé n'est pas fermée par un crochet"},
    {RegistryTextFault::kNoRootKey, u"la clé ne commence pas par une clé racine"},
    {RegistryTextFault::kBadKeyName,
     u"le nom de la clé est trop long ou contient un caractère nul"},
    {RegistryTextFault::kDeletedRoot, u"une clé racine ne peut pas être supprimée"},
    {RegistryTextFault::kValueWithoutKey, u"la valeur n'est sous aucune clé"},
    {RegistryTextFault::kValueOfDeletedKey, u"la valeur est sous une clé supprimée"},
    {RegistryTextFault::kBadValueName,
     u"le nom de la valeur est trop long ou contient un caractère nul"},
    {RegistryTextFault::kNoEqualsSign, u"le signe = manque après le nom de la valeur"},
    {RegistryTextFault::kUnknownContent,
     u"le contenu de la valeur n'est ni un texte, ni dword, ni hex"},
    {RegistryTextFault::kNoColon, u"le signe : manque après le type de la valeur"},
    {RegistryTextFault::kNoNumber, u"le nombre de la valeur manque"},
    {RegistryTextFault::kBadType, u"le type de la valeur n'est pas un nombre entre parenthèses"},
    {RegistryTextFault::kBadByte, u"un octet de la valeur manque ou n'est pas hexadécimal"},
    {RegistryTextFault::kUnclosedText, u"le texte n'est pas fermé par un guillemet"},
    {RegistryTextFault::kLoneBackslash,
     u"une barre oblique inverse n'est suivie ni d'une autre ni d'un guillemet"},
    {RegistryTextFault::kHalfCharacterInText, u"les octets du texte s'arrêtent dans un caractère"},
    {RegistryTextFault::kForeignCharacter,
     u"un caractère n'existe pas dans le registre (Windows-1252)"},
});

/// Whether each fault has its row, at its own number.
constexpr bool FaultsFollowTheirNumbers() {
  for (std::size_t i = 0; i < kRegistryTextFaults.size(); ++i) {
    if (kRegistryTextFaults[i].fault != static_cast<RegistryTextFault>(i)) return false;
  }
  return kRegistryTextFaults.back().fault == RegistryTextFault::kForeignCharacter;
}
static_assert(FaultsFollowTheirNumbers());

/// The failure of a file that is not wholly good, which also tells its parts to a program that puts
/// them in words of its own. Number 5000, Source "Quorl.RegistryText", Description "FILE:LINE: "
/// and the fault's sentence.
class RegistryTextError : public RaisedError {
 public:
  RegistryTextError(StringView file, Int32 line, RegistryTextFault fault);

  /// Counts from 1.
  Int32 Line() const noexcept { return line_; }
  RegistryTextFault Fault() const noexcept { return fault_; }

 private:
  Int32 line_;
  RegistryTextFault fault_;
};

}  // namespace quorl
