// The registry text format: reading, writing, import and export.

#include <algorithm>
#include <array>

#include "quorl/registry/text/export.hpp"
#include "quorl/registry/text/import.hpp"
#include "quorl/registry/text/reader.hpp"
#include "quorl/registry/text/writer.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/internal/utf16_bytes.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "quorl/store/persistent_store.hpp"
#include "tests/support/store_content.hpp"
#include "tests/support/store_simulated_files.hpp"
#include "tests/support/values.hpp"

namespace quorl {
namespace {

using namespace std::string_literals;

const std::string kHeader = "Windows Registry Editor Version 5.00\r\n";

std::string AsUtf16(const std::string& text) { return "\xFF\xFE" + internal::BytesOf(Utf16(text)); }

// The text with its apostrophes made quotes, which are easier to read in a literal.
std::string Quoted(std::string text) {
  std::ranges::replace(text, '\'', '"');
  return text;
}

Failure FormatFailure(const String& description) {
  return {5000, u"Quorl.RegistryText", description};
}

TEST(RegistryTextReader, EveryConstruct) {
  // clang-format off
  const std::string file = kHeader +
      "; a comment\r\n\r\n  [HKEY_CURRENT_USER\\Software\\Été]  \r\n@=\"sans nom\"\r\n"
      "\"Chemin\" = \"C:\\\\a\\\"b\\\"\" ; after a value\r\n\t\"€\"=\"\"\r\n\"a\nb\"=\"two\r\nlines\"\n"
      "\"n\\\"\"=dword:1\r\n\"m\"=DWORD:fffffFFE;x\r\n\"b\"=hex:\r\n"
      "\"l\"=hex:5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5\r\n"
      "\"c\"=hex:0,1f, FF ,\\\r\n  ; between\r\n  a\r\n\"x\"=-\r\n"
      "[-hkey_local_machine\\A]b;c]\r\n[HKCR]\r\n"
      "\"w\"=hex(2):41,00,ac,20,\\  ; here too\r\n  00,\\\r\n00\r\n\"z\"=hex(7):\r\n\"u\"=hex(1):e9,00\r\n"
      "\"q\"=hex(b):01,02\r\n\"0\"=hex(0):00\r\n\"f\"=hex(ffff0012):01,02,03\r\n\"4\"=hex(4):01\r\n@=-";
  const std::string written = kHeader +
      "; Complete only if the last line is \"; end\".\r\n\r\n[HKEY_CURRENT_USER\\Software\\Été]\r\n"
      "@=\"sans nom\"\r\n\"Chemin\"=\"C:\\\\a\\\"b\\\"\"\r\n\"€\"=\"\"\r\n"
      "\"a\nb\"=hex(1):74,00,77,00,6f,00,0d,00,0a,00,6c,00,69,00,6e,00,65,00,73,00,00,00\r\n"
      "\"n\\\"\"=dword:00000001\r\n\"m\"=dword:fffffffe\r\n\"b\"=hex:\r\n"
      "\"l\"=hex:05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,\\\r\n"
      "  05,05\r\n\"c\"=hex:00,1f,ff,0a\r\n\"x\"=-\r\n"
      "\r\n[-HKEY_LOCAL_MACHINE\\A]b;c]\r\n\r\n[HKEY_CLASSES_ROOT]\r\n"
      "\"w\"=hex(2):41,00,ac,20,00,00\r\n\"z\"=hex(7):\r\n\"u\"=hex(1):e9,00\r\n\"q\"=hex(b):01,02\r\n"
      "\"0\"=hex(0):00\r\n\"f\"=hex(ffff0012):01,02,03\r\n\"4\"=hex(4):01\r\n@=-\r\n\r\n; end\r\n";
  // clang-format on
  for (const std::string& bytes : {file, "\xEF\xBB\xBF" + file, AsUtf16(file), written}) {
    const RegistryText text = ReadRegistryText(bytes, u"f");
    EXPECT_EQ(WriteRegistryText(text, RegistryTextEncoding::kUtf8), written);
    EXPECT_EQ(WriteRegistryText(text), AsUtf16(written));
    // What is stored, where reading and writing might agree on a wrong form.
    EXPECT_EQ(text[0].place, (KeyPlace{HKEY_CURRENT_USER, u"Software\\Été"}));
    const RegistryTextValue number{u"m", false, 4, "\xFE\xFF\xFF\xFF"};
    EXPECT_TRUE(text[0].values[5] == number && text[0].values[9].is_deletion);
    EXPECT_EQ(text[0].values[2].data + text[0].values[8].data, "\0\0\x1F\xFF\x0A"s);
    EXPECT_TRUE(text[1].is_deletion && text[2].values[0].data == "A\x80\0"s);
  }
  // One that was cut off is refused, wherever; only the last line break may be missing.
  for (std::size_t size = 0; size <= written.size(); ++size) {
    const auto failure = FailureOf([&] { ReadRegistryText(written.substr(0, size), u"f"); });
    EXPECT_EQ(failure == Failure{}, size + 2 >= written.size()) << size;
  }
  EXPECT_RAISES(WriteRegistryText({{{HKEY_CURRENT_USER, u"a\nb"}, false, {}}}),
                FormatFailure(u"Une clé dont le nom contient une fin de ligne ne peut pas être "
                              u"écrite : HKEY_CURRENT_USER\\a\nb"));
}

TEST(RegistryTextReader, VersionFourIsInSingleBytesAndForeignCharactersMayBeReplaced) {
  const std::string four =
      "REGEDIT4\n\n[HKEY_USERS\\\xC9t\xE9]\n\"\x80\"=\"\xE9\"\n\"m\"=hex(7):61,00,e9,00,00\n";
  const RegistryTextKey key = ReadRegistryText(four, u"f").front();
  EXPECT_EQ(key.place, (KeyPlace{HKEY_USERS, u"Été"}));
  EXPECT_EQ(key.values[0], (RegistryTextValue{u"€", false, 1, "\xE9\0"s}));
  EXPECT_EQ(key.values[1], (RegistryTextValue{u"m", false, 7, "a\0\xE9\0\0"s}));

  const std::string foreign = kHeader + "[HKCU\\\u4E2D]\n\"\u4E2D\"=\"\U0001F600\"";
  const RegistryText replaced = ReadRegistryText(foreign, u"f", ForeignCharacters::kReplace);
  EXPECT_EQ(replaced.front().place.path, u"?");
  EXPECT_EQ(replaced.front().values[0], (RegistryTextValue{u"?", false, 1, "??\0"s}));
}

void ExpectRefused(const std::string& file, Int32 line, StringView what) {
  EXPECT_RAISES(
      ReadRegistryText(file, u"dir/x.reg"),
      FormatFailure(u"dir/x.reg:" + FromAnsi(std::to_string(line)) + u": " + String(what)))
      << file;
}

TEST(RegistryTextReader, BadFilesNameTheLine) {
  // Of each body after the header and the key, which take three lines, where it goes wrong.
  const struct {
    StringView what;
    std::vector<std::pair<Int32, std::string>> bodies;
  } cases[] = {
      // clang-format off
      {u"la ligne n'est ni une clé, ni une valeur, ni un commentaire", {{4, "nonsense"}}},
      {u"la clé n'est pas fermée par un crochet", {{4, "[HKEY_CURRENT_USER\\A] x"}}},
      {u"la clé ne commence pas par une clé racine", {{4, "[]"}, {4, "[ HKEY_USERS]"}}},
      {u"une clé racine ne peut pas être supprimée", {{4, "[-HKCU\\\\]"}}},
      {u"le nom de la clé est trop long ou contient un caractère nul",
       {{4, "[HKCU\\" + std::string(256, 'k') + "]"}, {4, "[HKCU\\a\0b]"s}}},
      {u"un caractère n'existe pas dans le registre (Windows-1252)", {{4, "[HKCU\\\u4E2D]"},
       {4, "'a'='\U0001F600'"}, {4, "'a'='\xFF'"}, {4, "'a'=hex(7):00,\\\n4e"}}},
      {u"la valeur est sous une clé supprimée", {{5, "[-HKCU\\A]\n'a'='b'"}}},
      {u"le signe = manque après le nom de la valeur", {{4, "'a'"}}},
      {u"le nom de la valeur est trop long ou contient un caractère nul",
       {{4, "'" + std::string(16384, 'v') + "'=''"}, {4, "'\n\0'=''"s}}},
      {u"le contenu de la valeur n'est ni un texte, ni dword, ni hex", {{4, "'a'=qword:1"}}},
      {u"la fin de la ligne n'a pas de sens", {{4, "'a'=--"}, {4, "'a'='b' c"},
       {5, "'a'='b\n'c'='d'"}, {4, "'a'=dword:123456789"}, {4, "'a'=hex:0g"},
       {6, "'a'=hex:00,\\\n  01,\\\n  0x"}}},
      {u"le texte n'est pas fermé par un guillemet", {{4, "'a'='b\nc\nd"}, {4, "'a'='\n\\"}}},
      {u"une barre oblique inverse n'est suivie ni d'une autre ni d'un guillemet",
       {{4, "'a'='C:\\temp'"}}},
      {u"le signe : manque après le type de la valeur", {{4, "'a'=dword"}}},
      {u"le nombre de la valeur manque", {{4, "'a'=dword:"}, {4, "'a'=dword:-1"}}},
      {u"le type de la valeur n'est pas un nombre entre parenthèses", {{4, "'a'=hex(g):00"}}},
      {u"un octet de la valeur manque ou n'est pas hexadécimal",
       {{4, "'a'=hex:00,"}, {5, "'a'=hex:00,\\\n'b'='c'"}, {4, "'a'=hex:00,\\"}}},
      {u"les octets du texte s'arrêtent dans un caractère", {{4, "'a'=hex(2):41"}}}};
  // clang-format on
  for (const auto& c : cases) {
    for (const auto& [line, body] : c.bodies) {
      const std::string file = kHeader + "\n[HKEY_CURRENT_USER\\A]\n" + Quoted(body);
      ExpectRefused(file, line, c.what);
      ExpectRefused(AsUtf16(file), line, c.what);
    }
  }

  for (const std::string& file : {""s, "\n" + kHeader, "Windows Registry Editor Version 6.00\n"s,
                                  "REGEDIT5\n"s, AsUtf16(kHeader).substr(2)})
    ExpectRefused(file, 1, u"l'en-tête n'est ni celui de la version 5.00 ni celui de la version 4");
  ExpectRefused(AsUtf16(kHeader) + "x", 1, u"le fichier s'arrête au milieu d'un caractère");
  const StringView order = u"le texte UTF-16 doit avoir l'octet de poids faible en premier";
  ExpectRefused("\xFE\xFF\0W"s, 1, order);
  ExpectRefused(kHeader + "; nothing", 2, u"le fichier ne contient aucune clé");
  ExpectRefused(kHeader + "\"a\"=\"b\"", 2, u"la valeur n'est sous aucune clé");
}

// Bytes replaced, cut out and doubled at random: the file reads as something or is refused.
TEST(RegistryTextReader, DamagedFilesAreReadOrRefused) {
  Random random(7);
  const std::string good = kHeader +
                           "[HKCU\\A\\B]\n@=\"a\\\\b\\\"\"\n\"x\"=dword:1f\n;c\n"
                           "\"h\"=hex(2):41,00,\\\n  00,00\n[-HKLM\\C]\n[HKCU]\n\"z\"=-\n";
  int refused = 0;
  for (int i = 0; i < 5000; ++i) {
    std::string file = i % 2 == 0 ? good : AsUtf16(good);
    for (std::int64_t change = random.Whole(1, 3); change > 0; --change) {
      const std::string piece = file.substr(random.Bits() % file.size(), random.Bits() % 8);
      file.replace(random.Bits() % file.size(), random.Bits() % 8,
                   random.Whole(0, 3) == 0 ? "\xFF" : piece);
    }
    const Failure failure = FailureOf([&] { ReadRegistryText(file, u"f"); });
    refused += failure.number != 0;
    EXPECT_TRUE(failure == Failure{} || failure.description.starts_with(u"f:")) << i;
  }
  EXPECT_TRUE(refused > 1000 && refused < 5000) << refused;
}

// Random names and values, of every byte that they may hold, in a tree of keys.
TEST(RegistryText, ExportedTreeIsImportedTheSame) {
  Random random(20240229);
  const auto bytes = [&](std::int64_t shortest, std::int64_t longest, std::int64_t least) {
    std::string text(static_cast<std::size_t>(random.Whole(shortest, longest)), '\0');
    for (char& byte : text) byte = static_cast<char>(random.Whole(least, 255));
    return text;
  };
  RegistryText tree{{{HKEY_CURRENT_USER, u"R"}, false, {}}};
  for (int i = 0; i < 10000; ++i) {
    if (random.Whole(0, 9) == 0) {
      const String parent = tree[random.Bits() % tree.size()].place.path;
      const String level = FromAnsi(bytes(0, 8, '\\' + 1));
      tree.push_back({{HKEY_CURRENT_USER, parent + u"\\k\1\t[" + level}, false, {}});
    }
    const Int32 type = std::array{0, 1, 1, 1, 2, 3, 4, 4, 5, 7, 11, -1}.at(random.Bits() % 12);
    std::string data = bytes(0, 60, 0);
    if (type == 4 && random.Whole(0, 3) > 0) data.resize(4, '\7');
    if (type == 1 && random.Whole(0, 3) > 0) data = bytes(1, 60, 1) + '\0';
    const String name = FromAnsi(bytes(random.Whole(0, 50) > 0, 20, 1));
    tree.back().values.push_back({name, false, type, data});
  }
  const auto imported = [](const RegistryText& text) {
    MemoryStore store;
    const ScopedStore guard(store);
    ImportRegistry(text);
    return ExportRegistry({HKEY_CURRENT_USER, u"\\R\\"});
  };
  const RegistryText exported = imported(tree);
  EXPECT_TRUE(exported.size() > 900 && exported.front().place.path == u"R");
  for (const auto encoding : {RegistryTextEncoding::kUtf16, RegistryTextEncoding::kUtf8}) {
    const RegistryText read = ReadRegistryText(WriteRegistryText(exported, encoding), u"f");
    EXPECT_TRUE(read == exported && imported(read) == exported);
  }
}

// A file whose body has / for a backslash, ' for a quote and | for a line end.
RegistryText Text(std::string body) {
  std::ranges::replace(body, '/', '\\');
  std::ranges::replace(body, '|', '\n');
  return body.empty() ? RegistryText() : ReadRegistryText(kHeader + Quoted(body), u"f");
}

constexpr HKeyEnum kRoots[] = {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE,
                               HKEY_CURRENT_CONFIG};

// What each of the roots holds.
std::vector<std::string> Contents() {
  std::vector<std::string> contents;
  for (const HKeyEnum root : kRoots) {
    contents.push_back(WriteRegistryText(ExportRegistry({root, u""}), RegistryTextEncoding::kUtf8));
  }
  return contents;
}

std::vector<std::string> ContentsAfter(const std::vector<RegistryText>& texts) {
  MemoryStore store;
  const ScopedStore guard(store);
  for (const RegistryText& text : texts) ImportRegistry(text);
  return Contents();
}

enum class Fault { kOnce, kFromThenOn, kKill, kRoom };

// Imports `change` with a fault at the `n`-th call, or with room for so much more; false when that
// does not matter any more. Whatever another process finds then is the old content or, as far as
// roots were reached, the new one; where room is short, the old one.
bool ImportWith(Fault fault, std::int64_t n, const SimulatedFiles& disk, const RegistryText& change,
                const std::vector<std::string>& before, const std::vector<std::string>& after) {
  SimulatedFiles files(disk);
  files.CutPowerAt(fault == Fault::kKill ? n : INT64_MAX);
  if (fault == Fault::kRoom) files.LimitRoom(static_cast<std::uint64_t>(40 * n));
  if (fault < Fault::kKill) files.Fail(n, ENOSPC, fault == Fault::kFromThenOn);
  PersistentStore store(SimulatedFolders(), files);
  const ScopedStore guard(store);
  const Failure failure = FailureOf([&] { ImportRegistry(change); });
  const bool matters = fault == Fault::kRoom
                           ? failure != Failure{}
                           : n < (fault == Fault::kKill ? files.Changes() : files.Calls());
  EXPECT_TRUE(failure == Failure{} || (matters && failure.source == u"qlWinRegistry"));
  SimulatedFiles left(files);
  PersistentStore other(SimulatedFolders(), left);
  const ScopedStore other_guard(other);
  const std::vector<std::string> found = Contents();
  EXPECT_TRUE(failure != Failure{} || found == after);
  bool may_be_new = fault != Fault::kRoom || failure == Failure{};
  for (std::size_t i = 0; i < found.size(); ++i) {
    EXPECT_TRUE(found[i] == before[i] || (may_be_new && found[i] == after[i])) << found[i];
    may_be_new = may_be_new && found[i] == after[i];
  }
  return matters;
}

// How many imports that was.
std::int64_t ImportWithEveryFault(const RegistryText& former, const RegistryText& change) {
  const std::vector<std::string> before = ContentsAfter({former});
  const std::vector<std::string> after = ContentsAfter({former, change});
  SimulatedFiles disk;
  PersistentStore store(SimulatedFolders(), disk);
  const ScopedStore guard(store);
  ImportRegistry(former);
  std::int64_t imports = 0;
  for (const Fault fault : {Fault::kOnce, Fault::kFromThenOn, Fault::kKill, Fault::kRoom}) {
    std::int64_t n = 0;
    while (ImportWith(fault, n, disk, change, before, after) && !testing::Test::HasFailure()) ++n;
    EXPECT_FALSE(testing::Test::HasFailure()) << "fault " << int(fault) << " at " << n;
    imports += n;
  }
  return imports;
}

TEST(RegistryImport, IsAppliedWholeOrLeavesTheFormerContent) {
  const struct {
    std::string before, change, after;
  } cases[] = {
      // clang-format off
      {"", "[HKCU/A/B]|'x'='1'", "[HKCU/A/B]|'x'='1'"},
      {"[HKCU/A]|'x'='0'|'y'='0'", "[HKCU/a]|'X'='1'|@='2'|[HKCU/C/D]",
       "[HKCU/A]|'x'='1'|'y'='0'|@='2'|[HKCU/C/D]"},
      {"[HKCU/A]|'x'='0'|'y'='0'", "[HKCU/A]|'X'=-|'z'=-|[HKCU/B]|'q'=-",
       "[HKCU/A]|'y'='0'|[HKCU/B]"},
      {"[HKCU/A/B]|'x'='0'|[HKCU/C]", "[-HKCU/a]|[-HKCU/absent/key]", "[HKCU/C]"},
      {"[HKCU/A/B]|'x'='0'", "[-HKCU/A]|[HKCU/A/B]|'y'='1'", "[HKCU/A/B]|'y'='1'"},
      {"[HKCU/A/B]|'x'='0'", "[HKCU/A/C]|'y'='1'|[-HKCU/A/C]", "[HKCU/A/B]|'x'='0'"},
      {"[HKCU/A]|'x'='0'", "[HKCU/A]|'x'='1'|'x'=-|'y'=-|'y'='1'", "[HKCU/A]|'y'='1'"},
      {"[HKCU/V]", "[-HKCU/V]|[HKCU/N]|'n'='1'|[-HKEY_DYN_DATA/Quorl]", "[HKCU/N]|'n'='1'"},
      {"[HKCU/A]|'x'='0'|[HKCU/D]|'o'='0'|[HKLM/A]|'x'='0'|[HKLM/B/C]|'v'='0'|[HKCC/A]",
       "[HKCU/A]|'x'='1'|'y'='1'|[HKLM/A]|'x'=-|'n'='1'|[-HKLM/B]|[HKLM/B/D/E]|'v'='1'|[HKCR]|@='1'|"
       "[HKCR/N/K]|[-HKCU/D]|[HKCU/D]|'n'='1'|[-HKCC/A]|[HKCC/B]",
       "[HKCR]|@='1'|[HKCR/N/K]|[HKCU/A]|'x'='1'|'y'='1'|[HKCU/D]|'n'='1'|[HKLM/A]|'n'='1'|"
       "[HKLM/B/D/E]|'v'='1'|[HKCC/B]"}};
  // clang-format on
  std::int64_t imports = 0;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.change);
    EXPECT_EQ(ContentsAfter({Text(c.before), Text(c.change)}), ContentsAfter({Text(c.after)}));
    for (const auto& former : cases) {  // in a long run each change over each content
      if (LongSweeps() || &former == &c)
        imports += ImportWithEveryFault(Text(former.before), Text(c.change));
    }
  }
  RecordProperty("imports", std::to_string(imports));
}

}  // namespace
}  // namespace quorl
