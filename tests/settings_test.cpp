// The registry text format: reading, writing, import and export.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "quorl/registry/text/export.hpp"
#include "quorl/registry/text/import.hpp"
#include "quorl/registry/text/reader.hpp"
#include "quorl/registry/text/writer.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/utf.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "quorl/store/persistent_store.hpp"
#include "tests/support/raises.hpp"
#include "tests/support/random.hpp"
#include "tests/support/store_content.hpp"
#include "tests/support/store_simulated_files.hpp"

namespace quorl {

namespace {

using namespace std::string_literals;

const std::string kHeader = "Windows Registry Editor Version 5.00\r\n";

std::string AsUtf16(const std::string& text) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : Utf16(text)) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

// The text with its apostrophes made quotes, which are easier to read in a literal.
std::string Quoted(std::string text) {
  std::ranges::replace(text, '\'', '"');
  return text;
}

Failure FormatFailure(const String& description) {
  return {5000, u"Quorl.RegistryText", description};
}

TEST(RegistryTextReader, EveryConstruct) {
  const std::string file =
      kHeader +
      "; a comment\r\n\r\n"
      "  [HKEY_CURRENT_USER\\Software\\Été]  \r\n"
      "@=\"sans nom\"\r\n\"Chemin\" = \"C:\\\\a\\\"b\\\"\" ; behind a value\r\n\t\"€\"=\"\"\r\n"
      "\"a\nb\"=\"two\r\nlines\"\n"
      "\"n\\\"\"=dword:1\r\n\"m\"=DWORD:fffffFFE;x\r\n\"b\"=hex:\r\n"
      "\"l\"=hex:5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5,5\r\n"
      "\"c\"=hex:0,1f, FF ,\\\r\n  ; between\r\n  a\r\n\"x\"=-\r\n"
      "[-hkey_local_machine\\A]b;c]\r\n"
      "[HKCR]\r\n"
      "\"w\"=hex(2):41,00,ac,20,\\  ; here too\r\n  00,\\\r\n00\r\n"
      "\"z\"=hex(7):\r\n\"u\"=hex(1):e9,00\r\n\"q\"=hex(b):01,02\r\n\"0\"=hex(0):00\r\n"
      "\"f\"=hex(ffff0012):01,02,03\r\n\"4\"=hex(4):01\r\n@=-";
  const std::string written =
      kHeader +
      "; Complete only if the last line is \"; end\".\r\n\r\n[HKEY_CURRENT_USER\\Software\\Été]\r\n"
      "@=\"sans nom\"\r\n\"Chemin\"=\"C:\\\\a\\\"b\\\"\"\r\n\"€\"=\"\"\r\n"
      "\"a\nb\"=hex(1):74,00,77,00,6f,00,0d,00,0a,00,6c,00,69,00,6e,00,65,00,73,00,00,00\r\n"
      "\"n\\\"\"=dword:00000001\r\n\"m\"=dword:fffffffe\r\n\"b\"=hex:\r\n"
      "\"l\"=hex:05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,05,\\\r\n"
      "  05,05\r\n"
      "\"c\"=hex:00,1f,ff,0a\r\n\"x\"=-\r\n"
      "\r\n[-HKEY_LOCAL_MACHINE\\A]b;c]\r\n"
      "\r\n[HKEY_CLASSES_ROOT]\r\n"
      "\"w\"=hex(2):41,00,ac,20,00,00\r\n\"z\"=hex(7):\r\n\"u\"=hex(1):e9,00\r\n"
      "\"q\"=hex(b):01,02\r\n\"0\"=hex(0):00\r\n\"f\"=hex(ffff0012):01,02,03\r\n"
      "\"4\"=hex(4):01\r\n@=-\r\n\r\n; end\r\n";
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
  for (std::size_t size = 0; size < written.size() - 2; ++size) {
    EXPECT_NE(FailureOf([&] { ReadRegistryText(written.substr(0, size), u"f"); }), Failure{})
        << size;
  }
  EXPECT_EQ(ReadRegistryText(written.substr(0, written.size() - 2), u"f").size(), 3U);
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
  // Of each body after the header and the key, which take three lines, the line where it goes
  // wrong.
  struct Case {
    StringView what;
    std::vector<std::pair<Int32, std::string>> bodies;
  };
  const Case cases[] = {
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
  for (const Case& c : cases) {
    for (const auto& [line, body] : c.bodies) {
      const std::string file = kHeader + "\n[HKEY_CURRENT_USER\\A]\n" + Quoted(body);
      ExpectRefused(file, line, c.what);
      ExpectRefused(AsUtf16(file), line, c.what);
    }
  }

  const StringView header = u"l'en-tête n'est ni celui de la version 5.00 ni celui de la version 4";
  for (const std::string& file : {""s, "\n" + kHeader, "Windows Registry Editor Version 6.00\n"s,
                                  "REGEDIT5\n"s, AsUtf16(kHeader).substr(2)}) {
    ExpectRefused(file, 1, header);
  }
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

// A tree of random names and values, of every byte that they may hold.
RegistryText RandomTree(Random& random, int values) {
  const auto bytes = [&](std::int64_t shortest, std::int64_t longest, std::int64_t least) {
    std::string text(static_cast<std::size_t>(random.Whole(shortest, longest)), '\0');
    for (char& byte : text) byte = static_cast<char>(random.Whole(least, 255));
    return text;
  };
  RegistryText tree{{{HKEY_CURRENT_USER, u"R"}, false, {}}};
  for (int i = 0; i < values; ++i) {
    if (random.Whole(0, 9) == 0) {
      std::string level = bytes(1, 8, 1);
      std::erase_if(level, [](char unit) { return unit == '\\' || unit == '\r' || unit == '\n'; });
      const std::size_t parent = random.Bits() % tree.size();
      const String path = tree[parent].place.path + u"\\k" + FromAnsi(level);
      tree.push_back({{HKEY_CURRENT_USER, path}, false, {}});
    }
    constexpr Int32 kTypes[] = {0, 1, 1, 1, 2, 3, 4, 4, 5, 7, 11, -1};
    const Int32 type = kTypes[random.Bits() % std::size(kTypes)];
    std::string data = bytes(0, 60, 0);
    if (type == 4 && random.Whole(0, 3) > 0) data.resize(4, '\7');
    if (type == 1 && random.Whole(0, 3) > 0) data = bytes(1, 60, 1) + '\0';
    tree.back().values.push_back(
        {FromAnsi(bytes(random.Whole(0, 50) > 0, 20, 1)), false, type, data});
  }
  return tree;
}

TEST(RegistryText, ExportedTreeIsImportedTheSame) {
  Random random(20240229);
  const RegistryText tree = RandomTree(random, 10000);
  const auto imported = [](const RegistryText& text) {
    MemoryStore store;
    const ScopedStore guard(store);
    ImportRegistry(text);
    return ExportRegistry({HKEY_CURRENT_USER, u"\\R\\"});
  };
  const RegistryText exported = imported(tree);
  std::size_t values = 0;
  for (const RegistryTextKey& key : exported) values += key.values.size();
  EXPECT_GT(values, 9900U);
  for (const auto encoding : {RegistryTextEncoding::kUtf16, RegistryTextEncoding::kUtf8}) {
    const RegistryText read = ReadRegistryText(WriteRegistryText(exported, encoding), u"f");
    EXPECT_TRUE(read == exported);
    EXPECT_TRUE(imported(read) == exported);
  }
}

RegistryText Text(const std::string& body) {
  return body.empty() ? RegistryText() : ReadRegistryText(kHeader + Quoted(body), u"f");
}

// Imports that were made to fail or were killed.
std::int64_t imports = 0;

constexpr HKeyEnum kRoots[] = {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE};

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

// Imports `change` with a fault at the `n`-th call; false when there is no such call. Whatever
// another process finds then is the old content or, as far as roots were reached, the new one.
enum class Fault { kOnce, kFromThenOn, kKill };
bool ImportWith(Fault fault, std::int64_t n, const SimulatedFiles& disk, const RegistryText& change,
                const std::vector<std::string>& before, const std::vector<std::string>& after) {
  SimulatedFiles files(disk);
  files.CutPowerAt(fault == Fault::kKill ? n : INT64_MAX);
  if (fault != Fault::kKill) files.Fail(n, ENOSPC, fault == Fault::kFromThenOn);
  Failure failure;
  {
    PersistentStore store(SimulatedFolders(), files);
    const ScopedStore guard(store);
    failure = FailureOf([&] { ImportRegistry(change); });
  }
  const bool was_reached = n < (fault == Fault::kKill ? files.Changes() : files.Calls());
  EXPECT_TRUE(failure == Failure{} || failure.source == u"qlWinRegistry");
  EXPECT_TRUE(was_reached || failure == Failure{});
  SimulatedFiles left(files);
  PersistentStore store(SimulatedFolders(), left);
  const ScopedStore guard(store);
  const std::vector<std::string> found = Contents();
  EXPECT_TRUE(failure != Failure{} || found == after);
  bool may_be_new = true;
  for (std::size_t i = 0; i < found.size(); ++i) {
    EXPECT_TRUE(found[i] == before[i] || (may_be_new && found[i] == after[i])) << found[i];
    may_be_new = may_be_new && found[i] == after[i];
  }
  return was_reached;
}

void ImportWithEveryFault(const RegistryText& former, const RegistryText& change) {
  const std::vector<std::string> before = ContentsAfter({former});
  const std::vector<std::string> after = ContentsAfter({former, change});
  SimulatedFiles disk;
  PersistentStore store(SimulatedFolders(), disk);
  const ScopedStore guard(store);
  ImportRegistry(former);
  for (const Fault fault : {Fault::kOnce, Fault::kFromThenOn, Fault::kKill}) {
    std::int64_t n = 0;
    while (ImportWith(fault, n, disk, change, before, after) && !testing::Test::HasFailure()) ++n;
    EXPECT_FALSE(testing::Test::HasFailure()) << "fault " << int(fault) << " at " << n;
    imports += n;
  }
  // A disk with room for so much more takes all or nothing, over all roots.
  for (std::uint64_t room = 0, done = 0; done == 0; room += 40, ++imports) {
    SimulatedFiles files(disk);
    files.LimitRoom(room);
    PersistentStore full(SimulatedFolders(), files);
    const ScopedStore full_guard(full);
    const Failure failure = FailureOf([&] { ImportRegistry(change); });
    EXPECT_TRUE(failure == Failure{} || failure.number == kDiskFull) << room;
    EXPECT_EQ(Contents(), failure == Failure{} ? after : before) << room;
    done = failure == Failure{};
  }
}

TEST(RegistryImport, IsAppliedWholeOrLeavesTheFormerContent) {
  const struct {
    std::string before, change, after;
  } cases[] = {
      {"", "[HKCU\\A\\B]\n'x'='1'", "[HKCU\\A\\B]\n'x'='1'"},
      {"[HKCU\\A]\n'x'='0'\n'y'='0'", "[HKCU\\a]\n'X'='1'\n@='2'\n[HKCU\\C\\D]",
       "[HKCU\\A]\n'x'='1'\n'y'='0'\n@='2'\n[HKCU\\C\\D]"},
      {"[HKCU\\A]\n'x'='0'\n'y'='0'", "[HKCU\\A]\n'X'=-\n'z'=-\n[HKCU\\B]\n'q'=-",
       "[HKCU\\A]\n'y'='0'\n[HKCU\\B]"},
      {"[HKCU\\A\\B]\n'x'='0'\n[HKCU\\C]", "[-HKCU\\a]\n[-HKCU\\absent\\key]", "[HKCU\\C]"},
      {"[HKCU\\A\\B]\n'x'='0'", "[-HKCU\\A]\n[HKCU\\A\\B]\n'y'='1'", "[HKCU\\A\\B]\n'y'='1'"},
      {"[HKCU\\A\\B]\n'x'='0'", "[HKCU\\A\\C]\n'y'='1'\n[-HKCU\\A\\C]", "[HKCU\\A\\B]\n'x'='0'"},
      {"[HKCU\\A]\n'x'='0'", "[HKCU\\A]\n'x'='1'\n'x'=-\n'y'=-\n'y'='1'", "[HKCU\\A]\n'y'='1'"},
      {"[HKCU\\V]", "[-HKCU\\V]\n[HKCU\\N]\n'n'='1'\n[-HKEY_DYN_DATA\\Quorl]",
       "[HKCU\\N]\n'n'='1'"},
      {"[HKCU\\A]\n'x'='0'\n[HKCU\\D]\n'o'='0'\n[HKLM\\A]\n'x'='0'\n[HKLM\\B\\C]\n'v'='0'",
       "[HKCU\\A]\n'x'='1'\n'y'='1'\n[HKLM\\A]\n'x'=-\n'n'='1'\n[-HKLM\\B]\n[HKLM\\B\\D\\E]\n'v'="
       "'1'\n[HKCR]\n@='1'\n[HKCR\\N\\K]\n[-HKCU\\D]\n[HKCU\\D]\n'n'='1'",
       "[HKCR]\n@='1'\n[HKCR\\N\\K]\n[HKCU\\A]\n'x'='1'\n'y'='1'\n[HKCU\\D]\n'n'='1'\n[HKLM\\A]\n"
       "'n'='1'\n[HKLM\\B\\D\\E]\n'v'='1'"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.change);
    EXPECT_EQ(ContentsAfter({Text(c.before), Text(c.change)}), ContentsAfter({Text(c.after)}));
    ImportWithEveryFault(Text(c.before), Text(c.change));
  }
}

// Random imports into random content, over all roots.
TEST(RegistryImport, OfRandomTextsIsAppliedWholeOrNotAtAll) {
  Random random(31);
  const auto text = [&](bool deletes) {
    RegistryText sections;
    for (std::int64_t left = random.Whole(1, 12); left > 0; --left) {
      RegistryTextKey key{{kRoots[random.Whole(0, 2)], u"K"}, false, {}};
      for (std::int64_t levels = random.Whole(0, 3); levels > 0; --levels)
        key.place.path += random.Whole(0, 1) == 0 ? u"\\a" : u"\\b";
      key.is_deletion = deletes && random.Whole(0, 3) == 0;
      for (std::int64_t values = key.is_deletion ? 0 : random.Whole(0, 3); values > 0; --values) {
        const std::string data(static_cast<std::size_t>(random.Whole(0, 300)), 'd');
        key.values.push_back({random.Text(u"xyz", 1), deletes && random.Whole(0, 2) == 0, 3, data});
      }
      sections.push_back(std::move(key));
    }
    return sections;
  };
  const int rounds = LongSweeps() ? 200 : 4;
  for (int i = 0; i < rounds && !HasFailure(); ++i) {
    const RegistryText former = text(false);
    ImportWithEveryFault(former, text(true));
  }
  RecordProperty("imports", std::to_string(imports));
}

}  // namespace
}  // namespace quorl
