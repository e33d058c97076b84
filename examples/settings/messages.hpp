// Everything that `settings` says, in both its languages, but for the sentences of the library
// (failure.cpp).
#pragma once

#include "examples/command/message.hpp"

namespace settings::messages {

using command::Message;

// {0} is the name by which the program was called.
inline constexpr Message<1> kHelp{
    R"(usage: {0} COMMAND ARGUMENTS

Looks at the settings that programs keep in the registry, and repairs them.
  list KEY [--json]            a key and all below it, as a tree
  get KEY NAME                 one value
  set KEY NAME VALUE [TYPE]    writes a value; TYPE is sz, dword or binary
  delete KEY [NAME]            deletes a value, or a key with all below it
  copy KEY KEY                 copies a key with all below it
  export KEY FILE [--utf8]     writes a key with all below it to a file
  import FILE [--replace]      applies such a file as a whole or not at all
  diff FILE [FILE] [--json]    what the second file, or else the registry, has
                               otherwise than the first: - before, + after
  watch KEY [--json]           tells each change by any program, until Ctrl-C
  verify [FILE]... [--json]    reads every record and tells what is damaged
  repair [FILE]... [--yes]     says what it is to repair, asks, and does it

A KEY is a root and a path, 'HKCU\Software\Maison'; the roots are HKCR, HKCU,
HKLM, HKU, HKCC and their full names. '' is the NAME of the value without one.
A dword is decimal or 0x and hexadecimal, a binary is pairs of hex digits. The
FILE - is standard output or input. Files are in the registry text format,
UTF-16 unless --utf8 is given; those of verify and repair are the registry's
own or copies of them. With --replace, characters that the registry has no
place for become '?'; without it, they make the file a bad one. An import is
one durable change of each root, from HKCR to HKCC; only if the disk breaks or
the program is killed between two roots, the later ones are left: import again.
Without a terminal to ask on, repair changes nothing unless --yes is given.
--json writes an array for other programs, watch an object a line.

Exit status: 0 done; 1 refused, absent, damaged or different; 2 wrong command
line.
)",
    R"(utilisation : {0} COMMANDE ARGUMENTS

Montre et répare les réglages que les programmes gardent dans le registre.
  list CLÉ [--json]            une clé et tout ce qu'elle contient, en arbre
  get CLÉ NOM                  une valeur
  set CLÉ NOM VALEUR [TYPE]    écrit une valeur ; TYPE est sz, dword ou binary
  delete CLÉ [NOM]             supprime une valeur, ou une clé entière
  copy CLÉ CLÉ                 copie une clé entière
  export CLÉ FICHIER [--utf8]  écrit une clé entière dans un fichier
  import FICHIER [--replace]   applique un tel fichier en entier ou pas du tout
  diff FICHIER [FICHIER] [--json]
                               ce que le second fichier, ou sinon le registre,
                               a d'autre que le premier : - avant, + après
  watch CLÉ [--json]           dit chaque changement par un programme, jusqu'à
                               Ctrl-C
  verify [FICHIER]... [--json] lit tous les enregistrements et dit les dégâts
  repair [FICHIER]... [--yes]  dit ce qu'il faut réparer, demande, et le fait

Une CLÉ est une racine et un chemin, 'HKCU\Software\Maison' ; les racines sont
HKCR, HKCU, HKLM, HKU, HKCC et leurs noms entiers. '' est le NOM de la valeur
sans nom. Un dword est décimal ou 0x et hexadécimal, un binary des paires de
chiffres hexadécimaux. Le FICHIER - est la sortie ou l'entrée standard. Les
fichiers sont au format texte du registre, en UTF-16 sans --utf8 ; ceux de
verify et de repair sont ceux du registre ou leurs copies. Avec --replace, les
caractères qui n'existent pas dans le registre deviennent « ? » ; sans lui, le
fichier est refusé. Une importation est un seul changement durable de chaque
racine, de HKCR à HKCC ; si le disque se casse ou si le programme est tué entre
deux racines, les suivantes manquent : il faut importer de nouveau. Sans
terminal où demander, repair ne change rien si --yes n'est pas donné. --json
écrit un tableau pour d'autres programmes, watch un objet par ligne.

Code de retour : 0 fait ; 1 refusé, absent, endommagé ou différent ; 2 ligne de
commande fautive.
)"};

// What is wrong with a command line.
inline constexpr Message<2> kSeeHelp{"{0}; see {1} --help", "{0} ; voir {1} --help"};
inline constexpr Message<> kNoCommand{"which command?", "quelle commande ?"};
inline constexpr Message<1> kUnknownCommand{"there is no command '{0}'",
                                            "il n'y a pas de commande « {0} »"};
inline constexpr Message<1> kWrongArguments{"wrong arguments for '{0}'",
                                            "arguments fautifs pour « {0} »"};
inline constexpr Message<2> kUnknownOption{"'{0}' has no option '{1}'",
                                           "« {0} » n'a pas d'option « {1} »"};
inline constexpr Message<1> kNoRoot{"'{0}' does not begin with a root key such as HKCU",
                                    "« {0} » ne commence pas par une clé racine telle que HKCU"};
inline constexpr Message<1> kUnknownType{"the type is sz, dword or binary, not '{0}'",
                                         "le type est sz, dword ou binary, et non « {0} »"};
inline constexpr Message<1> kNoNumber{"'{0}' is no number of 32 bits",
                                      "« {0} » n'est pas un nombre de 32 bits"};
inline constexpr Message<> kNoBytes{
    "a binary is one or more pairs of hexadecimal digits",
    "un binary est fait d'une ou plusieurs paires de chiffres hexadécimaux"};
inline constexpr Message<> kInputTwice{"standard input can be read only once",
                                       "l'entrée standard ne peut être lue qu'une fois"};

// What is refused.
inline constexpr Message<2> kAbout{"'{0}': {1}", "« {0} » : {1}"};
inline constexpr Message<1> kNoKey{"there is no key '{0}'", "la clé « {0} » n'existe pas"};
inline constexpr Message<2> kNoValue{"the key '{0}' has no value '{1}'",
                                     "la clé « {0} » n'a pas de valeur « {1} »"};
inline constexpr Message<> kRootNotDeleted{"a root key cannot be deleted",
                                           "une clé racine ne peut pas être supprimée"};
inline constexpr Message<1> kForeignCharacter{
    "'{0}' has a character that the registry cannot keep",
    "« {0} » contient un caractère qui n'existe pas dans le registre"};
inline constexpr Message<2> kNotRead{"'{0}' cannot be read: {1}",
                                     "« {0} » ne peut pas être lu : {1}"};
inline constexpr Message<2> kNotWritten{"'{0}' cannot be written: {1}",
                                        "« {0} » ne peut pas être écrit : {1}"};
inline constexpr Message<1> kNothingChanged{"{0} (nothing was changed)", "{0} (rien n'a changé)"};
inline constexpr Message<1> kUnknownCode{"the registry gives the code {0}",
                                         "le registre donne le code {0}"};
inline constexpr Message<2> kQuoted{"the library says, with number {0}: \"{1}\"",
                                    "la bibliothèque dit, avec le numéro {0} : « {1} »"};

// What was done.
inline constexpr Message<2> kApplied{"applied: {0} keys, {1} values",
                                     "appliqué : {0} clés, {1} valeurs"};
inline constexpr Message<1> kWatching{"watching '{0}'; Ctrl-C ends",
                                      "« {0} » est observé ; Ctrl-C termine"};
inline constexpr Message<1> kWatchingAbsent{
    "watching '{0}', which does not exist yet; Ctrl-C ends",
    "« {0} », qui n'existe pas encore, est observé ; Ctrl-C termine"};

// What verify and repair say of a file.
inline constexpr Message<2> kIntactFile{"{0}: {1} intact records, no damage",
                                        "{0} : {1} enregistrements intacts, aucun dégât"};
inline constexpr Message<3> kDamagedFile{"{0}: {1} intact records, {2}",
                                         "{0} : {1} enregistrements intacts, {2}"};
inline constexpr Message<> kDamaged{"DAMAGED", "ENDOMMAGÉ"};
inline constexpr Message<1> kForeignFile{"{0}: this is no file of the registry",
                                         "{0} : ce n'est pas un fichier du registre"};
inline constexpr Message<> kQuarantined{"quarantined: ", "mis de côté : "};
inline constexpr Message<3> kLoss{"at {0}, {1} bytes: {2}", "à {0}, {1} octets : {2}"};
inline constexpr Message<> kLostHeader{"the header is damaged, nothing is lost by that",
                                       "l'en-tête est endommagé, rien n'est perdu par là"};
inline constexpr Message<> kLostValue{"a value is lost", "une valeur est perdue"};
inline constexpr Message<> kLostKey{"a change of a key is lost",
                                    "un changement d'une clé est perdu"};
inline constexpr Message<> kLostChanges{"changes are lost", "des changements sont perdus"};
inline constexpr Message<> kStrayBytes{"bytes that are no record",
                                       "des octets qui ne sont pas un enregistrement"};
inline constexpr Message<1> kOfKey{", key {0}", ", clé {0}"};
inline constexpr Message<1> kOfValue{", value \"{0}\"", ", valeur « {0} »"};
inline constexpr Message<> kNoDamage{"no damage", "aucun dégât"};
inline constexpr Message<2> kPlan{
    "to do: {0} is kept under another name, and a new file with its {1} intact records takes its "
    "place",
    "à faire : {0} est gardé sous un autre nom, et un fichier neuf avec ses {1} enregistrements "
    "intacts prend sa place"};
inline constexpr Message<> kMayRepair{"Do it? [y/N]", "Le faire ? [o/N]"};
inline constexpr Message<> kNothingToRepair{"nothing to repair", "rien à réparer"};
inline constexpr Message<> kNoConsent{"nothing was changed; with --yes it is done without asking",
                                      "rien n'a changé ; avec --yes c'est fait sans demander"};
inline constexpr Message<2> kRepaired{"{0}: repaired; what it was is kept as {1}",
                                      "{0} : réparé ; ce qu'il était est gardé comme {1}"};
inline constexpr Message<2> kNotRepaired{"'{0}' could not be repaired: {1}",
                                         "« {0} » n'a pas pu être réparé : {1}"};
inline constexpr Message<1> kKeptAs{"the damaged file is quarantined as {0}",
                                    "le fichier endommagé est mis de côté comme {0}"};
inline constexpr Message<2> kGrows{"{0} grows because it cannot be written afresh: {1}",
                                   "{0} grandit parce qu'il ne peut pas être réécrit : {1}"};

}  // namespace settings::messages
