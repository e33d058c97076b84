// The registry text format, and the host that works with it.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "quorl/registry/text/export.hpp"
#include "quorl/registry/text/import.hpp"
#include "quorl/registry/text/reader.hpp"
#include "quorl/registry/text/writer.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/text_case.hpp"
#include "quorl/runtime/utf.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "tests/support/raises.hpp"
#include "tests/support/random.hpp"
#include "tests/support/recording_store.hpp"
#include "tests/support/store_temporary_folder.hpp"

namespace quorl {

void PrintTo(const RegistryTextValue& value, std::ostream* out) {
  *out << '"' << value.name << '"' << (value.is_deletion ? " deleted" : " type ") << value.type
       << ' ' << testing::PrintToString(value.data);
}

void PrintTo(const RegistryTextKey& key, std::ostream* out) {
  *out << (key.is_deletion ? "-" : "") << key.root << ' ' << key.path << ' '
       << testing::PrintToString(key.values);
}

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

RegistryTextValue Value(std::string name, Int32 type, std::string data) {
  return {std::move(name), false, type, std::move(data)};
}

RegistryTextValue Deletion(std::string name) { return {std::move(name), true, 0, ""}; }

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
  const RegistryText expected{
      {HKEY_CURRENT_USER,
       "Software\\\xC9t\xE9",
       false,
       {Value("", 1, "sans nom\0"s), Value("Chemin", 1, "C:\\a\"b\"\0"s), Value("\x80", 1, "\0"s),
        Value("a\nb", 1, "two\r\nlines\0"s), Value("n\"", 4, "\1\0\0\0"s),
        Value("m", 4, "\xFE\xFF\xFF\xFF"), Value("b", 3, ""), Value("l", 3, std::string(25, 5)),
        Value("c", 3, "\0\x1F\xFF\x0A"s), Deletion("x")}},
      {HKEY_LOCAL_MACHINE, "A]b;c", true, {}},
      {HKEY_CLASSES_ROOT,
       "",
       false,
       {Value("w", 2, "A\x80\0"s), Value("z", 7, ""), Value("u", 1, "\xE9"), Value("q", 11, "\1\2"),
        Value("0", 0, "\0"s), Value("f", static_cast<Int32>(0xFFFF0012), "\1\2\3"),
        Value("4", 4, "\1"), Deletion("")}}};
  EXPECT_EQ(ReadRegistryText(file, u"f"), expected);
  EXPECT_EQ(ReadRegistryText("\xEF\xBB\xBF" + file, u"f"), expected);
  EXPECT_EQ(ReadRegistryText(AsUtf16(file), u"f"), expected);

  const std::string written =
      kHeader +
      "\r\n[HKEY_CURRENT_USER\\Software\\Été]\r\n"
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
      "\"4\"=hex(4):01\r\n@=-\r\n";
  EXPECT_EQ(WriteRegistryText(expected, RegistryTextEncoding::kUtf8), written);
  EXPECT_EQ(WriteRegistryText(expected), AsUtf16(written));
  EXPECT_RAISES(WriteRegistryText({{HKEY_CURRENT_USER, "a\nb", false, {}}}),
                FormatFailure(u"Une clé dont le nom contient une fin de ligne ne peut pas être "
                              u"écrite : HKEY_CURRENT_USER\\a\nb"));
}

TEST(RegistryTextReader, VersionFourIsInSingleBytes) {
  const RegistryText expected{
      {HKEY_USERS,
       "\xC9t\xE9",
       false,
       {Value("\x80", 1, "\xE9\0"s), Value("m", 7, "a\0\xE9\0\0"s), Value("b", 3, "\1")}}};
  EXPECT_EQ(ReadRegistryText("REGEDIT4\n\n[HKEY_USERS\\\xC9t\xE9]\n\"\x80\"=\"\xE9\"\n"
                             "\"m\"=hex(7):61,00,e9,00,00\n\"b\"=hex:01",
                             u"f"),
            expected);
}

void ExpectRefused(const std::string& file, Int32 line, StringView what) {
  EXPECT_RAISES(
      ReadRegistryText(file, u"dir/x.reg"),
      FormatFailure(u"dir/x.reg:" + FromAnsi(std::to_string(line)) + u": " + String(what)))
      << file;
}

TEST(RegistryTextReader, BadFilesNameTheLine) {
  // Of each body behind the header and the key, the line where it goes wrong: they take three.
  struct Case {
    StringView what;
    std::vector<std::pair<Int32, std::string>> bodies;
  };
  const Case cases[] = {
      {u"la ligne n'est ni une clé, ni une valeur, ni un commentaire", {{4, "nonsense"}}},
      {u"la clé n'est pas fermée par un crochet", {{4, "[HKEY_CURRENT_USER\\A] x"}}},
      {u"la clé ne commence pas par une clé racine", {{4, "[]"}, {4, "[ HKEY_USERS]"}}},
      {u"une clé racine ne peut pas être supprimée", {{4, "[-HKCU\\\\]"}}},
      {u"le nom de la clé est trop long ou contient un caractère nul",
       {{4, "[HKCU\\" + std::string(256, 'k') + "]"}, {4, "[HKCU\\a\0b]"s}}},
      {u"un caractère n'existe pas dans le registre (Windows-1252)",
       {{4, "[HKCU\\\u4E2D]"},
        {4, "'a'='\U0001F600'"},
        {4, "'a'='\xFF'"},
        {4, "'a'=hex(7):00,\\\n4e"}}},
      {u"la valeur est sous une clé supprimée", {{5, "[-HKCU\\A]\n'a'='b'"}}},
      {u"le signe = manque après le nom de la valeur", {{4, "'a'"}}},
      {u"le nom de la valeur est trop long ou contient un caractère nul",
       {{4, "'" + std::string(16384, 'v') + "'=''"}, {4, "'\n\0'=''"s}}},
      {u"le contenu de la valeur n'est ni un texte, ni dword, ni hex", {{4, "'a'=qword:1"}}},
      {u"la fin de la ligne n'a pas de sens",
       {{4, "'a'=--"},
        {4, "'a'='b' c"},
        {5, "'a'='b\n'c'='d'"},
        {4, "'a'=dword:123456789"},
        {4, "'a'=hex:0g"},
        {6, "'a'=hex:00,\\\n  01,\\\n  0x"}}},
      {u"le texte n'est pas fermé par un guillemet", {{4, "'a'='b\nc\nd"}, {4, "'a'='\n\\"}}},
      {u"une barre oblique inverse n'est suivie ni d'une autre ni d'un guillemet",
       {{4, "'a'='C:\\temp'"}}},
      {u"le signe : manque après le type de la valeur", {{4, "'a'=dword"}}},
      {u"le nombre de la valeur manque", {{4, "'a'=dword:"}, {4, "'a'=dword:-1"}}},
      {u"le type de la valeur n'est pas un nombre entre parenthèses", {{4, "'a'=hex(g):00"}}},
      {u"un octet de la valeur manque ou n'est pas hexadécimal",
       {{4, "'a'=hex:00,"}, {5, "'a'=hex:00,\\\n'b'='c'"}, {4, "'a'=hex:00,\\"}}},
      {u"les octets du texte s'arrêtent dans un caractère", {{4, "'a'=hex(2):41"}}},
  };
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
  ExpectRefused("\xFE\xFF\0W"s, 1,
                u"le texte UTF-16 doit avoir l'octet de poids faible en premier");
  ExpectRefused(kHeader + "\"a\"=\"b\"", 2, u"la valeur n'est sous aucune clé");
}

TEST(RegistryTextReader, ForeignCharactersMayBeReplaced) {
  const RegistryText expected{{HKEY_CURRENT_USER, "?", false, {Value("?", 1, "??\0"s)}}};
  EXPECT_EQ(ReadRegistryText(kHeader + "[HKCU\\\u4E2D]\n\"\u4E2D\"=\"\U0001F600\"", u"f",
                             ForeignCharacters::kReplace),
            expected);
}

// Bytes replaced, cut out and doubled at random: the file reads as something or is refused.
TEST(RegistryTextReader, DamagedFilesAreReadOrRefused) {
  Random random(7);
  const std::string good = kHeader +
                           "[HKCU\\A\\B]\n@=\"a\\\\b\\\"\"\n\"x\"=dword:1f\n;c\n"
                           "\"h\"=hex(2):41,00,\\\n  00,00\n[-HKLM\\C]\n[HKCU]\n\"z\"=-\n";
  int refused = 0;
  constexpr int kFiles = 5000;
  for (int i = 0; i < kFiles; ++i) {
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
  EXPECT_GT(refused, kFiles / 4);
  EXPECT_LT(refused, kFiles);
}

// A tree of random names and values, of every byte that they may hold.
RegistryText RandomTree(Random& random, int values) {
  const auto bytes = [&](std::int64_t shortest, std::int64_t longest, std::int64_t least) {
    std::string text(static_cast<std::size_t>(random.Whole(shortest, longest)), '\0');
    for (char& byte : text) byte = static_cast<char>(random.Whole(least, 255));
    return text;
  };
  RegistryText tree{{HKEY_CURRENT_USER, "R", false, {}}};
  for (int i = 0; i < values; ++i) {
    if (random.Whole(0, 9) == 0) {
      std::string level = bytes(1, 8, 1);
      std::erase_if(level, [](char unit) { return unit == '\\' || unit == '\r' || unit == '\n'; });
      const std::size_t parent = random.Bits() % tree.size();
      tree.push_back({HKEY_CURRENT_USER, tree[parent].path + "\\k" + level, false, {}});
    }
    constexpr Int32 kTypes[] = {0, 1, 1, 1, 2, 3, 4, 4, 5, 7, 11, -1};
    const Int32 type = kTypes[random.Bits() % std::size(kTypes)];
    std::string data = bytes(0, 60, 0);
    if (type == 4 && random.Whole(0, 3) > 0) data.resize(4, '\7');
    if (type == 1 && random.Whole(0, 3) > 0) data = bytes(1, 60, 1) + '\0';
    tree.back().values.push_back(Value(bytes(random.Whole(0, 50) > 0, 20, 1), type, data));
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
    return ExportRegistry(HKEY_CURRENT_USER, u"\\R\\");
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

// Everything in the store but what is in memory only, with the values of each key sorted and in
// lower case: neither the order of values nor the case of names is put back.
std::string Content() {
  std::string content;
  for (const HKeyEnum root : {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    RegistryText text = ExportRegistry(root, u"");
    for (RegistryTextKey& key : text) {
      for (RegistryTextValue& value : key.values)
        value.name = ToAnsi(LowerCase(FromAnsi(value.name)));
      key.path = ToAnsi(LowerCase(FromAnsi(key.path)));
      std::ranges::sort(key.values, {}, &RegistryTextValue::name);
    }
    content += WriteRegistryText(text, RegistryTextEncoding::kUtf8).substr(kHeader.size());
  }
  return content;
}

RegistryText Text(const std::string& body) {
  return ReadRegistryText(kHeader + Quoted(body), u"f");
}

struct ImportCase {
  std::string before;
  std::string change;
  std::string after;
  bool is_one_change = false;
};

const std::vector<ImportCase>& ImportCases() {
  static const std::vector<ImportCase> cases{
      {"", "[HKCU\\A\\B]\n'x'='1'", "[HKCU\\A\\B]\n'x'='1'", true},
      {"[HKCU\\A]\n'x'='0'\n'y'='0'", "[HKCU\\a]\n'X'='1'\n@='2'\n[HKCU\\C\\D]",
       "[HKCU\\A]\n'x'='1'\n'y'='0'\n@='2'\n[HKCU\\C\\D]", true},
      {"[HKCU\\A]\n'x'='0'\n'y'='0'", "[HKCU\\A]\n'X'=-\n'z'=-\n[HKCU\\B]\n'q'=-",
       "[HKCU\\A]\n'y'='0'\n[HKCU\\B]"},
      {"[HKCU\\A\\B]\n'x'='0'\n[HKCU\\C]", "[-HKCU\\a]\n[-HKCU\\absent\\key]", "[HKCU\\C]"},
      {"[HKCU\\A\\B]\n'x'='0'", "[-HKCU\\A]\n[HKCU\\A\\B]\n'y'='1'", "[HKCU\\A\\B]\n'y'='1'"},
      {"[HKCU\\A\\B]\n'x'='0'", "[HKCU\\A\\C]\n'y'='1'\n[-HKCU\\A\\C]", "[HKCU\\A\\B]\n'x'='0'"},
      {"[HKCU\\A]\n'x'='0'", "[HKCU\\A]\n'x'='1'\n'x'=-\n'y'=-\n'y'='1'", "[HKCU\\A]\n'y'='1'"},
      {"[HKCU\\A]\n'x'='0'\n[HKCU\\D]\n'o'='0'\n[HKLM\\A]\n'x'='0'\n[HKLM\\B\\C]\n'v'='0'",
       "[HKCU\\A]\n'x'='1'\n'y'='1'\n[HKLM\\A]\n'x'=-\n'n'='1'\n[-HKLM\\B]\n[HKLM\\B\\D\\E]\n'v'='"
       "1'\n[HKCR]\n@='1'\n[HKCR\\N\\K]\n[-HKCU\\D]\n[HKCU\\D]\n'n'='1'",
       "[HKCR]\n@='1'\n[HKCR\\N\\K]\n[HKCU\\A]\n'x'='1'\n'y'='1'\n[HKCU\\D]\n'n'='1'\n[HKLM\\A]\n'"
       "n'='1'\n[HKLM\\B\\D\\E]\n'v'='1'"},
  };
  return cases;
}

std::string ContentOf(const std::string& body) {
  MemoryStore store;
  const ScopedStore guard(store);
  ImportRegistry(Text(body));
  return Content();
}

// The n-th call of the store fails, for every n, once and from then on, up to the whole import.
TEST(RegistryImport, IsAppliedWholeOrLeavesTheFormerContent) {
  for (const ImportCase& c : ImportCases()) {
    const std::string before = ContentOf(c.before);
    const std::string after = ContentOf(c.after);
    for (const bool lasting : {false, true}) {
      bool is_done = false;
      for (std::size_t n = 0; !is_done; ++n) {
        MemoryStore memory;
        RecordingStore store(memory);
        const ScopedStore guard(store);
        ImportRegistry(Text(c.before));
        lasting ? store.FailFrom(n, kDiskFull) : store.FailAt(n, kDiskFull);
        const Failure failure = FailureOf([&] { ImportRegistry(Text(c.change)); });
        is_done = store.Calls().size() <= n;
        store.FailNever();
        const std::string where = c.change + "\nat " + std::to_string(n) + (lasting ? " on" : "");
        EXPECT_EQ(memory.OpenKeyCount(), 0) << where;
        const bool is_told = failure.description.find(u"n'a pas pu être remis") != String::npos;
        EXPECT_TRUE(lasting || !is_told) << where;
        EXPECT_TRUE(failure == Failure{} ||
                    (failure.number == kDiskFull && failure.source == u"qlWinRegistry"))
            << where;
        if (is_told && !c.is_one_change) continue;
        EXPECT_EQ(Content(), failure == Failure{} ? after : before) << where;
        if (!is_done) continue;
        EXPECT_EQ(failure, Failure{}) << where;
        EXPECT_EQ(ExportRegistry(HKEY_DYN_DATA, u"Quorl\\Import").size(), 1U) << where;
      }
    }
  }
}

const std::string kHost = QUORL_BINARY_DIR "/examples/settings";

// The host, run as a person does.
class SettingsTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::ifstream(kHost)) GTEST_SKIP() << kHost << " is not built";
  }

  struct Result {
    int status;
    std::string output;  // standard error included
  };

  Result Run(const std::string& arguments) {
    const std::string command =
        "XDG_DATA_HOME='" + folder_.Path() + "' '" + kHost + "' " + arguments + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return {-1, "no shell"};
    std::string output;
    for (int unit = 0; (unit = std::fgetc(pipe)) != EOF;) output += static_cast<char>(unit);
    const int ended = pclose(pipe);
    return {WIFEXITED(ended) ? WEXITSTATUS(ended) : -1, output};
  }
  void Expect(const std::string& arguments, int status, const std::string& output) {
    const Result result = Run(arguments);
    EXPECT_EQ(result.status, status) << arguments;
    EXPECT_EQ(result.output, output) << arguments;
  }
  std::string Path(const std::string& name) const { return folder_.Path() + '/' + name; }

  TemporaryFolder folder_;
};

TEST_F(SettingsTest, WritesReadsCopiesAndDeletes) {
  const std::string key = "'HKCU\\Software\\Maison'";
  Expect("set " + key + " Chemin 'C:\\Été €'", 0, "");
  Expect("set " + key + " '' 0xFFFFFFFE dword", 0, "");
  Expect("set " + key + " Min -2147483648 dword", 0, "");
  Expect("set " + key + "'\\Sous clé' b '00 fF7f' binary", 0, "");
  Expect("get " + key + " CHEMIN", 0, "C:\\Été €\n");
  Expect("get " + key + " ''", 0, "-2\n");
  Expect("list " + key, 0,
         "\"Chemin\" sz: C:\\Été €\n\"\" dword: -2\n\"Min\" dword: -2147483648\n"
         "HKEY_CURRENT_USER\\Software\\Maison\\Sous clé\n");
  Expect("copy " + key + " 'HKEY_CURRENT_USER\\Copie'", 0, "");
  Expect("delete " + key + " Min", 0, "");
  Expect("delete " + key, 0, "");
  Expect("get 'HKCU\\Copie\\Sous clé' b", 0, "00 ff 7f\n");
  Expect("get HKCU\\\\Copie Min", 0, "-2147483648\n");
  Expect("list HKCU", 0, "HKEY_CURRENT_USER\\Copie\nHKEY_CURRENT_USER\\Software\n");
}

TEST_F(SettingsTest, RefusesWithAReason) {
  Expect("set 'HKCU\\B' x 1 dword", 0, "");
  EXPECT_EQ(Run("--help").status, 0);
  Expect("get 'HKCU\\A' x", 1,
         "settings: Erreur d'accès au registre windows dans la fonction "
         "ExportKey(HKEY_CURRENT_USER\\A)\n\nLa clé ou la valeur demandée n'existe pas.\r\n\n");
  Expect("get 'HKCU\\B' y", 1, "settings: the key has no value 'y'\n");
  Expect("import " + Path("absent"), 1, "settings: '" + Path("absent") + "' cannot be read\n");
  Expect("show", 2, "settings: there is no command 'show'; see settings --help\n");
  for (const std::string failing : {"list 'HKCU\\A'", "delete 'HKCU\\A'", "delete HKCU",
                                    "set 'HKCU\\B' y 中", "export HKCU /no/file"}) {
    EXPECT_EQ(Run(failing).status, 1) << failing;
  }
  for (const std::string wrong : {"", "list", "export HKCU - --utf7", "list Software",
                                  "set HKCU x 1 word", "set HKCU x '00 1' binary"}) {
    EXPECT_EQ(Run(wrong).status, 2) << wrong;
  }
  for (const std::string number : {"x", "''", "0x", "1 2", "4294967296", "-2147483649", "0x-1"}) {
    EXPECT_EQ(Run("set HKCU x '" + number + "' dword").status, 2) << number;
  }
  for (const std::string bytes : {"", "0", "0g"}) {
    EXPECT_EQ(Run("set HKCU x '" + bytes + "' binary").status, 2) << bytes;
  }
  Expect("list HKCU", 0, "HKEY_CURRENT_USER\\B\n");
}

TEST_F(SettingsTest, CarriesSettingsInAFile) {
  Expect("set 'HKCU\\A' x '\"é\"'", 0, "");
  Expect("export 'HKCU\\A' - --utf8", 0,
         kHeader + "\r\n[HKEY_CURRENT_USER\\A]\r\n\"x\"=\"\\\"é\\\"\"\r\n");
  Expect("export HKCU " + Path("a.reg"), 0, "");
  Expect("delete 'HKCU\\A'", 0, "");
  Expect("import " + Path("a.reg"), 0, "applied: 2 keys, 1 values\n");
  Expect("get 'HKCU\\A' x", 0, "\"é\"\n");
  std::ofstream(Path("bad.reg")) << kHeader << "[HKCU\\New]\n\"x\"=\"1\"\n[-HKCU\\A]\n\"y\"=1\n";
  Expect("import " + Path("bad.reg"), 1,
         "settings: " + Path("bad.reg") +
             ":5: la valeur est sous une clé supprimée (nothing was changed)\n");
  Expect("list HKCU", 0, "HKEY_CURRENT_USER\\A\n");
  std::ofstream(Path("new.reg")) << kHeader << "[HKCU\\中]";
  EXPECT_EQ(Run("import " + Path("new.reg")).status, 1);
  Expect("import - --replace < " + Path("new.reg"), 0, "applied: 1 keys, 0 values\n");
}

TEST_F(SettingsTest, VerifyTellsWhatIsDamaged) {
  Expect("set 'HKCU\\A' lost '" + std::string(100, 'a') + "'", 0, "");
  Expect("set 'HKCU\\A' kept 1 dword", 0, "");
  EXPECT_EQ(Run("verify").status, 0);
  const std::string hive = Path("quorl/registry/HKEY_CURRENT_USER.journal");
  std::fstream file(hive, std::ios::in | std::ios::out | std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  file.seekp(static_cast<std::streamoff>(bytes.find("aaaa")));
  file << "bb" << std::flush;
  const Result damaged = Run("verify");
  EXPECT_EQ(damaged.status, 1);
  EXPECT_NE(damaged.output.find(hive + ": "), std::string::npos) << damaged.output;
  EXPECT_NE(damaged.output.find("key A, value \"lost\""), std::string::npos) << damaged.output;
  const Result repaired = Run("list 'HKCU\\A'");
  EXPECT_EQ(repaired.output.substr(0, 15), "\"kept\" dword: 1") << repaired.output;
  EXPECT_NE(repaired.output.find("kept as " + hive + ".damaged-1"), std::string::npos)
      << repaired.output;
  const Result after = Run("verify");
  EXPECT_EQ(after.status, 0) << after.output;
  EXPECT_NE(after.output.find("kept aside: " + hive + ".damaged-1"), std::string::npos)
      << after.output;
}

}  // namespace
}  // namespace quorl
