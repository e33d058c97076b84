// The parity kit: what its log keeps, that recording changes nothing, and that a replay finds every
// difference.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "examples/parity/binary.hpp"
#include "examples/parity/log_text.hpp"
#include "examples/parity/read_log.hpp"
#include "examples/parity/recorder.h"
#include "tests/support/component_arguments.hpp"
#include "tests/support/program.hpp"
#include "tests/support/store_content.hpp"
#include "tests/support/store_temporary_folder.hpp"

namespace quorl {
namespace {

const std::string kProgram = "LC_ALL=C " QUORL_BINARY_DIR "/examples/parity/parity ";
// A short log that a recorder wrote, which docs/parity.md shows.
const std::string kSmall = QUORL_SOURCE_DIR "/examples/parity/small.log";
const std::string kStored = QUORL_SOURCE_DIR "/examples/parity/sample.log";

ProgramResult RunParity(const std::string& options, const std::string& log) {
  const TemporaryFolder folder;
  const std::string path = folder.Path() + "/log";
  std::ofstream(path, std::ios::binary) << log;
  return RunProgram(kProgram + options + " " + path + " 2>&1");
}

// What the reader says of a log; the whole log's number of calls if it has nothing to say.
std::string Reading(std::string_view log) {
  try {
    return std::to_string(parity::ReadLog(log).calls) + " calls";
  } catch (const parity::Unreadable& error) {
    return std::to_string(error.line) + ": " +
           std::string(error.what.In(command::Language::kEnglish));
  }
}

std::vector<std::string> Split(std::string_view text, char separator) {
  std::vector<std::string> cells(1);
  for (const char unit : text) {
    unit == separator ? void(cells.emplace_back()) : cells.back().push_back(unit);
  }
  return cells;
}

// Rows of cells; the first and the last line are empty, ^ is a line end within a cell.
std::vector<std::vector<std::string>> TableOf(std::string_view text) {
  std::vector<std::vector<std::string>> rows;
  for (std::string& row : Split(text.substr(1, text.size() - 2), '\n')) {
    std::ranges::replace(row, '^', '\n');
    rows.push_back(Split(row, '|'));
  }
  return rows;
}

// ---------------------------------------------------------------------------------------- values

TEST(ParityValues, AreKeptExactly) {
  for (
      const std::string& text : Split(
          R"(Empty|Null|Missing|Nothing|True|False|Boolean 1|Byte 255|Int16 -32768|Int32 2147483647|)"
          R"(Single 0.1|Double -0|Double 5e-324|Double inf|Double nan|Double 1.7976931348623157e+308|)"
          R"(Currency 922337203685477.5807|Currency -922337203685477.5808|Currency -0.0001|)"
          R"(Date -1.25|Error 80020005|Unknown 0063|Unknown 4003|""|"é😀 \"\\ \u0000\u000A\uD800x\uDC00"|)"
          R"(&Int16 46|&Variant &Int32 5|&"a"|&Byte[0..1] (1 2)|&Variant Null|Int32[0..-1] ()|)"
          R"(Boolean[0..1] (-1 1)|Error[1..1] (80020004)|String[-1..0,2..3] ("a" "" "c" "d")|)"
          R"(Currency[0..1] (0.5 -1)|Object[0..0] (Nothing)|)"
          R"(Variant[0..2] (Empty Variant[0..0] (Double 2.5) "x"))",
          '|')) {
    const parity::Value value = parity::ReadValue(text);
    EXPECT_EQ(parity::Written(value), text);
    EXPECT_EQ(parity::Written(parity::ValueOf(parity::Passed(value).Get())), text);
  }
}

TEST(ParityValues, EveryCodeUnitIsKept) {
  for (unsigned unit = 0; unit <= UINT16_MAX; ++unit) {
    const String text{static_cast<char16_t>(unit), u'x', static_cast<char16_t>(unit)};
    const parity::Value value = parity::ReadValue(parity::WrittenText(text));
    ASSERT_EQ(*value.If<String>(), text) << unit;
  }
}

// --------------------------------------------------------------------------------- hostile logs

TEST(ParityReader, TellsTheLineOfWhatMakesNoSense) {
  const std::string deep(70, '&');
  std::string nested;
  std::string calls = "host 2\n";
  for (int i = 0; i < 70; ++i) {
    nested += "Variant[0..0] (";
    calls += i % 2 == 0 ? "get 1 A\n" : "get 2 A\n";
  }
  // After the line of an object 1: what is said, and of what.
  auto rows = TableOf(R"(
3: there is no call that this could be the outcome of|gives Empty|refused 0
3: there is an object of this number already|object 1 Math|host 1|host 0
3: no object of this number was made before|call 7 A|call 1 A Object 9|release 2
4: no object of this number was made before|release 1^get 1 A
4: within a call stand calls of the host's objects, elsewhere those of the component's|get 1 A^get 1 B
4: this cannot stand within a call|get 1 A^object 2 Math|get 1 A^end 1|get 1 A^release 1
4: nothing follows the line 'end'|end 0^end 0
3: this belongs before the first call|locale fr-BE
3: no line begins with this word|sing 1 A|call+sing 1 A|+ 1 A
3: a name is expected here|call 1|call 1 #x|find 1 A (|call 1 é
3: a number is expected here, within the range of its type|call 99999999999 A|call 1 A Int16 32768|call 1 A Int16 1x|call 1 A Double 1e999|call 1 A Currency 1.00005|call 1 A Currency 922337203685477.5808|call 1 A Error -1|call 1 A Currency -|call 1 A Unknown 12345|end -1
3: a value is expected here|call 1 A Whatever 5|call 1 A &|call 1 A )
4: a value is expected here|get 1 A^refused 80020006 argument 1 2
3: this value cannot be passed by reference|call 1 A &Empty|call 1 A &&Int16 5|call 1 A &Unknown 63
3: this array is damaged: its elements are not those of its bounds|call 1 A Byte[0..2147483647] (1)|call 1 A Byte[0..9,0..99999999999] (1)|call 1 A Byte[2..0] ()|call 1 A Byte[0..0] (1|call 1 A Byte[0..1] 1
3: there is more on the line than belongs there|host 2 3
)");
  const std::string too_deep = ": values or calls are nested more than 64 deep";
  rows.push_back({"3" + too_deep, "call 1 A " + deep + "Int16 5", "call 1 A " + nested});
  rows.push_back({"68" + too_deep, calls});
  for (const auto& row : rows) {
    for (std::size_t i = 1; i < row.size(); ++i) {
      EXPECT_EQ(Reading("quorl-parity 1\nobject 1 Strings\n" + row[i] + '\n'), row[0]) << row[i];
    }
  }
  for (const std::string text : {"\"", "\"\xFF\"", "\"\xC0\x80\"", "\"\xED\xA0\x80\"", R"("\u12")",
                                 R"("\q")", "\"\x01\"", "\"\xF4\x90\x80\x80\"", "\"\xE2\x82"}) {
    EXPECT_THROW(parity::ReadValue(text), parity::Unreadable) << text;
  }
  for (const std::string other : {"", "quorl-parity 2\n", "MZ\x90"}) {
    EXPECT_EQ(Reading(other), "1: this is no parity log: its first line is not 'quorl-parity 1'");
  }
  const auto refused = RunParity("", "quorl-parity 1\n\nsing\n");
  EXPECT_EQ(refused.status, 2);
  EXPECT_TRUE(refused.output.ends_with("log: line 3: no line begins with this word\n"));
}

TEST(ParityReader, ReadsDamagedLogsOrRefusesThem) {
  const std::string whole = FileText(kStored);
  const std::string sound = whole.substr(whole.find("object 216"), 9000);
  for (unsigned seed = 0; seed < (LongSweeps() ? 100000u : 3000u); ++seed) {
    Random random(seed);
    std::string log = "quorl-parity 1\nobject 1 Registry\n" + sound;
    for (int changes = 0; changes < 4; ++changes) {
      const auto at =
          static_cast<std::size_t>(random.Whole(0, static_cast<std::int64_t>(log.size()) - 1));
      log[at] = seed % 2 == 0 ? log[random.Bits() % log.size()] : static_cast<char>(random.Bits());
    }
    EXPECT_NE(Reading(log.substr(0, random.Bits() % log.size())), "");
    EXPECT_NE(Reading(log), "");
  }
}

// ------------------------------------------------------------------------------------- recording

class Parity : public Component {
 protected:
  ParityRecorder* Open(const std::string& path) {
    ParityRecorder* recorder = nullptr;
    EXPECT_EQ(ParityOpen(path.c_str(), "locale fr-BE\ndiffers GUIDs.CreateGUID\n", &recorder),
              S_OK);
    return recorder;
  }
  static Reference<QuorlDispatch> Recorded(ParityRecorder* recorder, StringView name,
                                           QuorlDispatch* object) {
    QuorlDispatch* recorded = nullptr;
    EXPECT_EQ(ParityRecord(recorder, String(name).c_str(), object, &recorded), S_OK);
    return Reference<QuorlDispatch>::Adopt(recorded);
  }

  const TemporaryFolder folder_;
  const std::string path_ = folder_.Path() + "/log";
};

TEST_F(Parity, ARecorderWritesEachCall) {
  FakeHost host;
  host.target->With(u"ListCount", Int16{2});
  const Variant lent = abi::ObjectOf(&host);
  ParityRecorder* recorder = Open(path_);
  const auto strings = Recorded(recorder, u"Strings", library_.Make(u"Strings").Get());
  const auto buffer = Recorded(recorder, u"RollBuffer", library_.Make(u"RollBuffer").Get());
  std::int32_t ids[2];
  const char16_t* names[] = {u"Padl", u"PadChar"};
  EXPECT_EQ(strings.Get()->table->GetIDsOfNames(strings.Get(), nullptr, names, 2, 0, ids), S_OK);
  EXPECT_EQ(CallNamed(strings.Get(), u"Padl", 1, {{2, u"*"}}, {u"ab", 5}).value, Variant(u"***ab"));
  EXPECT_EQ(CallNamed(strings.Get(), u"Padl", 1, {}, {u"ab", 40000}).failure, RuntimeFailure(6));
  EXPECT_EQ(CallNamed(strings.Get(), u"Padl", 1, {}, {u"ab"}).code, DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(CallNamed(buffer.Get(), u"BufferSize", 4, {{QUORL_PUT_VALUE, 3}}).code, S_OK);
  EXPECT_EQ(CallNamed(buffer.Get(), u"BufferSize", 2, {}).value, Variant(3));
  const auto regional = Recorded(recorder, u"Regional", library_.Make(u"Regional").Get());
  std::vector<Variant> key{Int16{u'.'}};
  // By an identifier that was not asked for.
  InvokeWith(regional.Get(), IdOf(u"Regional", u"ConvertDecimalPoint"), 1, {}, key, true);
  EXPECT_EQ(key[0], Variant(Int16{u','}));
  const auto combo = Recorded(recorder, u"ComboBoxEx", library_.Make(u"ComboBoxEx").Get());
  EXPECT_EQ(CallNamed(combo.Get(), u"CmbSelectItemData", 1, {}, {lent, 0}).code, S_OK);
  const char16_t* unknown = u"Inconnu";
  EXPECT_EQ(strings.Get()->table->GetIDsOfNames(strings.Get(), nullptr, &unknown, 1, 0, ids),
            DISP_E_UNKNOWNNAME);
  // What the buffer keeps comes back as the very object that was given, of either side.
  EXPECT_EQ(CallNamed(buffer.Get(), u"AddItem", 1, {}, {lent}).code, S_OK);
  const Variant current = CallNamed(buffer.Get(), u"CurrentItem", 2, {}).value;
  EXPECT_EQ(abi::ForeignPointerOf(ToObject(current)), &host);
  EXPECT_EQ(CallNamed(buffer.Get(), u"AddItem", 1, {}, {abi::ObjectOf(strings.Get())}).code, S_OK);
  const auto guids = Recorded(recorder, u"GUIDs", library_.Make(u"GUIDs").Get());
  const Variant guid = CallNamed(guids.Get(), u"CreateGUID", 1, {}).value;
  ParityClose(recorder);
  std::string log = FileText(path_);
  log.replace(log.find("gives \"{"), 46, "gives \"{00000000-0000-4000-8000-000000000000}\"");
  EXPECT_EQ(log, FileText(kSmall));
  EXPECT_NE(FileText(QUORL_SOURCE_DIR "/docs/parity.md").find(log), std::string::npos);
}

// The host sees the same whether its objects are recorded or not; and what was recorded is found
// again.
TEST_F(Parity, RecordedObjectsDoAsTheyDidBefore) {
  ParityRecorder* recorder = Open(path_);
  MemoryStore stores[2];
  for (const ClassRow& row : frame::Catalogue()) {
    FakeHost hosts[2];
    {
      Reference<QuorlDispatch> objects[2];
      Reference<QuorlDispatch> registries[2];
      for (int i = 0; i < 2; ++i) {
        objects[i] = library_.Make(row, row.CurrentInterface());
        registries[i] = library_.Make(u"Registry");
      }
      objects[1] = Recorded(recorder, row.name, objects[1].Get());
      registries[1] = Recorded(recorder, u"Registry", registries[1].Get());
      Random random(row.members.size());
      for (int step = 0; step < 400 && !row.members.empty(); ++step) {
        const MemberRow& member = row.members[random.Bits() % row.members.size()];
        const std::uint64_t seed = random.Bits();
        CallResult results[2];
        for (int i = 0; i < 2; ++i) {
          const ScopedStore store(stores[i]);
          Random own(seed);
          const Pick pick = [&](std::size_t count) { return own.Bits() % count; };
          std::vector<Variant> arguments;
          for (const frame::TypeRow& type : member.types.Span()) {
            arguments.push_back(SomeArgument(type, pick, hosts[i], registries[i].Get()));
          }
          results[i] = CallByName(objects[i].Get(), row, member, arguments);
          if (member.name == u"CreateGUID") results[i].value = Empty;
        }
        ASSERT_EQ(results[0], results[1]) << Utf8(member.name);
      }
    }
    EXPECT_EQ(hosts[0].journal, hosts[1].journal);
    EXPECT_EQ(hosts[1].references, 1u);
    EXPECT_EQ(ContentOf(stores[0]), ContentOf(stores[1]));
  }
  ParityClose(recorder);
  for (const std::string way : {"", "--table "}) {
    const auto replayed = RunProgram(kProgram + way + path_ + " 2>&1");
    EXPECT_EQ(replayed.status, 0) << replayed.output;
  }
}

TEST_F(Parity, ALogThatCannotBeWrittenIsToldOnce) {
  testing::internal::CaptureStderr();
  ParityRecorder* recorder = Open("/dev/full");
  const auto strings = Recorded(recorder, u"Strings", library_.Make(u"Strings").Get());
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(CallNamed(strings.Get(), u"DigitsOf", 1, {}, {u"a1"}).value, Variant(u"1"));
  }
  ParityClose(recorder);
  EXPECT_EQ(CallNamed(strings.Get(), u"DigitsOf", 1, {}, {u"a1"}).value, Variant(u"1"));
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::ranges::count(told, '\n'), 1) << told;
  EXPECT_EQ(ParityOpen("/dev/null", "sing\n", &recorder), E_INVALIDARG);
  EXPECT_EQ(ParityOpen("/dev/null", "object 1 Math\n", &recorder), E_INVALIDARG);
}

// ------------------------------------------------------------------------------------- replaying

TEST(ParityReplay, TheStoredLogIsTheSameByNameThroughTheTableAndRecordedAnew) {
  const TemporaryFolder folder;
  const auto through_table = RunProgram(kProgram + "--table - < " + kStored);
  EXPECT_EQ(through_table.status, 0) << through_table.output;
  EXPECT_NE(through_table.output.find(", through the tables: 3"), std::string::npos)
      << through_table.output;
  // Recorded anew, and made anew by its program: new GUIDs apart.
  const std::string masked = "sed 's/^gives \"{.*4...-.*}\"$/GUID/' ";
  const std::string anew = folder.Path() + "/anew";
  const std::string replay = kProgram + "--store kept --record anew " + kStored;
  for (const std::string& make : {"cd " + folder.Path() + " && " + replay,
                                  QUORL_BINARY_DIR "/examples/parity/parity_sample " + anew}) {
    EXPECT_EQ(RunProgram(make).status, 0);
    EXPECT_EQ(RunProgram("cd " + folder.Path() + "; " + masked + kStored + " > a; " + masked +
                         anew + " | diff - a")
                  .output,
              "");
  }
}

TEST(ParityReplay, FindsEveryPlantedDifference) {
  const std::string whole = FileText(kSmall);
  EXPECT_EQ(RunParity("", whole).status, 0) << RunParity("", whole).output;
  // What stands in the log, what is planted in its place, where it is found.
  for (const auto& row : TableOf(R"(
"***ab"|"**ab"|line 7: call 1 Padl "ab" Int32 5 PadChar := "*"^  log: gives "**ab"^  now: gives "***ab"^
fails 6|fails 5|line 9:
Dépassement|Depassement|line 9:
"Quorl.Runtime"|"Quorl.Strings"|line 9:
fails 6 "Quorl.Runtime" "Dépassement de capacité."|gives ""|line 9:
8002000F|8002000E|line 11:
gives Int32 3|gives Int16 3|line 15:
gives Int32 3|gives -|
&Int16 44|&Int16 46|line 18:
Empty &Int16 44|Empty|line 18:
get 5 ListCount|get 5 Count|line 22:
ItemData Int16 0|ItemData Int16 1|line 24:
  put 5 ListIndex := Int16 0^  gives Empty^||line 26:
  gives Empty^gives Empty|  gives Empty^  get 5 Text^  gives ""^gives Empty|line 28:
gives Int16 2|gives Int16 0|line 24:
find 1 Inconnu|find 1 Padl|line 31:
gives Object 6|gives Object 1|line 36:
gives Object 6|gives Nothing|line 36:
gives Object 6^|gives Object 6^release 6^|line 37: release 6^  log: the component let it go^  now: the component keeps it^
object 7 GUIDs|object 7 Lost|line 39: object 7 Lost^  log: ^  now: no object of the class can be made^
gives "{|gives Null "{|line 41:
CreateGUID^gives "|GetNullGUID^gives "|line 41:
get 2 BufferSize^|get 2 Lost^|line 15:
get 2 BufferSize^|get 2 BufferSize^gives Int32 3^get 2 BufferSize^|line 44: end^
end 14^||line 41: end^  log: (the log stops here
end 14^|end 14|line 42: end^  log: (the log stops here
)")) {
    const auto& [there, planted, found] = std::tie(row[0], row[1], row[2]);
    std::string log = whole;
    const std::size_t at = log.find(there);
    ASSERT_NE(at, std::string::npos) << there;
    log.replace(at, there.size(), planted);
    for (const std::string way : {"", "--table"}) {
      const auto replayed = RunParity(way, log);
      EXPECT_EQ(replayed.status, found.empty() ? 0 : 1) << planted << replayed.output;
      EXPECT_NE(replayed.output.find(found), std::string::npos) << planted << replayed.output;
    }
  }
}

// Each seventh outcome of the stored log is made another.
TEST(ParityReplay, FindsPlantedDifferencesInAllClasses) {
  std::istringstream stored(FileText(kStored));
  std::string log;
  std::string planted;
  int outcomes = 0;
  int at = 0;
  for (std::string line; std::getline(stored, line); log += line + '\n') {
    ++at;
    const bool is_outcome = line.starts_with("gives") || line.starts_with("fails");
    if (!is_outcome || line.starts_with("gives -") || ++outcomes % 7 != 0) continue;
    line = line.starts_with("gives Empty") ? "gives Null" + line.substr(11) : "gives Empty";
    planted += "line " + std::to_string(at) + '\n';
  }
  EXPECT_GT(outcomes, 7 * 400);
  for (const std::string way : {"", "--table"}) {
    const TemporaryFolder folder;
    std::ofstream(folder.Path() + "/log", std::ios::binary) << log;
    EXPECT_EQ(
        RunProgram(kProgram + way + " " + folder.Path() + "/log | grep -o '^line [0-9]*'").output,
        planted);
  }
}

TEST(ParityReplay, SaysWhatIsWrongWithItsCommandLine) {
  EXPECT_EQ(RunProgram(kProgram + "--help | head -1").output, "usage: parity [OPTION]... LOG\n");
  for (const std::string wrong :
       {"", "a b", "--what a", "--record", "--table", "/nowhere/x", "/"}) {
    EXPECT_EQ(RunProgram(kProgram + wrong + " 2>&1").status, 2) << wrong;
  }
  EXPECT_EQ(RunProgram(kProgram + kStored + " > /dev/full 2>&1").status, 2);
  EXPECT_EQ(RunParity("--component /nowhere/x", FileText(kSmall)).status, 2);
  EXPECT_EQ(RunParity("", "quorl-parity 1\nlocale xx-YY\nend 0\n").status, 2);
}

}  // namespace
}  // namespace quorl
