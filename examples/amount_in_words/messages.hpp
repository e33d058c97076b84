// Everything that `amount_in_words` says, in both its languages.
#pragma once

#include "examples/command/message.hpp"

namespace messages {

using command::Message;

inline constexpr Message<1> kHelp{
    R"({0}: amounts in words, in French, English, Dutch and German
  {0}                  the invoices that come with the program
  {0} --file FILE      your invoices, - for standard input
  {0} [OPTION]... AMOUNT...
Options:
  --language FR|UK|NL|DE  the words in this language alone, else all four
  --currency CODE         EUR (when left out), CHF, GBP, USD, JPY or TND
  --unit, --units NAME    a unit of your own, one and several
  --subunit, --subunits   the same for its sub-unit
  --kind 0|1|2            gender of the names: FR un, une; DE eins, ein, eine
  --decimals 0..9         power of ten of the sub-unit (your own: else 2)
  --, -h                  nothing but amounts follows; this help
Amounts: a sign, digits, at most four decimals. Blanks and apostrophes group
thousands. Of "," and ".": where both stand, the last is the decimal mark and
the other groups; one that stands alone and once is the decimal mark (1,234 is
a little above 1); one that stands more than once groups. Groups have three
digits: "1 234,56", "1.234,56", "1'234.56" and 1234.56 are the same amount.
Files: a line an invoice with reference, date, amount, currency and language;
tabs, ";" or "," between, as a line "sep=;" or else the first one tells; quotes
around a field that needs them; UTF-8, UTF-16 with a mark or Windows-1252. A
first line without a digit in its amount and without a currency is a heading.
What cannot be written is told on standard error as file:line: message.
Exit status: 0; 1 when something could not be read; 2 for a wrong option.
)",
    R"({0} : montants en lettres, en français, anglais, néerlandais et
allemand
  {0}                  les factures livrées avec le programme
  {0} --file FICHIER   vos factures, - pour l'entrée standard
  {0} [OPTION]... MONTANT...
Options :
  --language FR|UK|NL|DE  dans cette langue seule, sinon dans les quatre
  --currency CODE         EUR (sans cette option), CHF, GBP, USD, JPY ou TND
  --unit, --units NOM     une unité à vous, une et plusieurs
  --subunit, --subunits   de même pour sa subdivision
  --kind 0|1|2            genre des noms : FR un, une ; DE eins, ein, eine
  --decimals 0..9         puissance de dix de la subdivision (la vôtre : 2)
  --, -h                  il ne suit que des montants ; cette aide
Montants : un signe, des chiffres, au plus quatre décimales. Les blancs et les
apostrophes groupent les milliers. De « , » et « . » : s'il y a les deux, le
dernier est la marque décimale et l'autre groupe ; un seul, présent une fois,
est la marque décimale (1,234 dépasse 1 de peu) ; présent plusieurs fois, il
groupe. Les groupes ont trois chiffres : « 1 234,56 », « 1.234,56 »,
« 1'234.56 » et 1234.56 sont le même montant.
Fichiers : une ligne par facture avec référence, date, montant, monnaie et
langue ; entre eux tabulations, « ; » ou « , », selon une ligne « sep=; » ou la
première ; des guillemets autour d'un champ qui en a besoin ; UTF-8, UTF-16 avec
marque ou Windows-1252. Une première ligne sans chiffre dans son montant et sans
monnaie est un titre. Ce qui ne peut pas être écrit est dit sur la sortie
d'erreur : fichier:ligne: message.
Code de retour : 0 ; 1 si quelque chose n'a pas pu être lu ; 2 option fautive.
)"};

// What is wrong with an amount.
inline constexpr Message<1> kNoAmount{"not an amount: \"{0}\"",
                                      "ce n'est pas un montant : « {0} »"};
inline constexpr Message<1> kTooManyDecimals{"more than four decimals: \"{0}\"",
                                             "plus de quatre décimales : « {0} »"};
inline constexpr Message<1> kOutOfRange{"amount out of range: \"{0}\"",
                                        "montant hors limites : « {0} »"};
inline constexpr Message<> kWholeOnly{
    "this currency has no sub-units, the amount has decimals",
    "cette monnaie n'a pas de subdivision, le montant a des décimales"};
inline constexpr Message<1> kUnknownLanguage{"unknown language \"{0}\"", "langue inconnue « {0} »"};
inline constexpr Message<1> kUnknownCurrency{"unknown currency \"{0}\"",
                                             "monnaie inconnue « {0} »"};
inline constexpr Message<2> kQuoted{"the library says, with number {0}: \"{1}\"",
                                    "la bibliothèque dit, avec le numéro {0} : « {1} »"};

// Files of invoices.
inline constexpr Message<1> kLineTooLong{"line longer than {0} bytes",
                                         "ligne de plus de {0} octets"};
inline constexpr Message<> kEndsInCharacter{"the file ends in the middle of a character",
                                            "le fichier s'arrête au milieu d'un caractère"};
inline constexpr Message<> kZeroByte{"a zero byte: this is no file of text",
                                     "un octet nul : ce n'est pas un fichier de texte"};
inline constexpr Message<> kHalfCharacter{"half a character", "la moitié d'un caractère"};
inline constexpr Message<> kNoUtf8{"a character that is no UTF-8",
                                   "un caractère qui n'est pas de l'UTF-8"};
inline constexpr Message<> kNeitherEncoding{"neither UTF-8 nor Windows-1252",
                                            "ni UTF-8 ni Windows-1252"};
inline constexpr Message<> kOpenQuote{"a quote has no end", "un guillemet n'est pas fermé"};
inline constexpr Message<1> kUnknownSeparator{"unknown separator \"{0}\"",
                                              "séparateur inconnu « {0} »"};
inline constexpr Message<2> kOtherFields{"{0} fields expected, {1} found",
                                         "{0} champs attendus, {1} trouvés"};
inline constexpr Message<> kReference{"Reference", "Référence"};
inline constexpr Message<> kDate{"Date", "Date"};
inline constexpr Message<> kAmount{"Amount", "Montant"};
inline constexpr Message<> kInWords{"In words", "En lettres"};
inline constexpr Message<1> kLines{"{0} lines", "{0} lignes"};

// What is wrong with a command line.
inline constexpr Message<1> kSeeHelp{"{0}; see --help", "{0} ; voir --help"};
inline constexpr Message<1> kUnknownOption{"unknown option \"{0}\"", "option inconnue « {0} »"};
inline constexpr Message<1> kValueMissing{"value missing after \"{0}\"",
                                          "il manque une valeur après « {0} »"};
inline constexpr Message<1> kTwice{"twice: \"{0}\"", "deux fois : « {0} »"};
inline constexpr Message<2> kWrongValue{"wrong value for {0}: \"{1}\"",
                                        "valeur fautive pour {0} : « {1} »"};
inline constexpr Message<2> kValueNoUtf8{"{0} is no UTF-8: \"{1}\"",
                                         "{0} n'est pas de l'UTF-8 : « {1} »"};
inline constexpr Message<> kAmountMissing{"an amount is missing", "il manque un montant"};
inline constexpr Message<> kFileHasAll{"a file has its own amounts, currencies and languages",
                                       "un fichier a ses propres montants, monnaies et langues"};

}  // namespace messages
