// A host in one file: looks at the settings that programs keep in the registry, and repairs them.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "quorl/registry/registry.hpp"
#include "quorl/registry/text/export.hpp"
#include "quorl/registry/text/import.hpp"
#include "quorl/registry/text/reader.hpp"
#include "quorl/registry/text/root_name.hpp"
#include "quorl/registry/text/writer.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/utf.hpp"
#include "quorl/store/key_name.hpp"
#include "quorl/store/operations.hpp"
#include "quorl/store/persistent_store.hpp"

namespace {

using namespace quorl;

constexpr int kSuccess = 0;
constexpr int kFailure = 1;
constexpr int kWrongUse = 2;

constexpr std::string_view kHelp =
    R"(usage: settings COMMAND ARGUMENTS

Looks at the settings that programs keep in the registry, and repairs them.
  list KEY                     the values and subkeys of a key
  get KEY NAME                 one value
  set KEY NAME VALUE [TYPE]    writes a value; TYPE is sz, dword or binary
  delete KEY [NAME]            deletes a value, or a key with all below it
  copy KEY KEY                 copies a key with all below it
  export KEY FILE [--utf8]     writes a key with all below it to a file
  import FILE [--replace]      applies such a file as a whole or not at all
  verify                       reads every record and tells what is damaged

A KEY is a root and a path, 'HKCU\Software\Maison'; the roots are HKCR, HKCU,
HKLM, HKU, HKCC and their full names. '' is the NAME of the value without one.
A dword is decimal or 0x and hexadecimal, a binary is pairs of hex digits. The
FILE - is standard output or input; files are in the registry text format,
UTF-16 unless --utf8 is given. With --replace, characters that the registry has
no place for become '?'; without it, they make the file a bad one. An import is
one durable change of each root, from HKCR to HKCC; only if the disk breaks or
the program is killed between two roots, the later ones are left: import again.

Exit status: 0 done, 1 refused, absent or damaged, 2 wrong command line.
)";

// What the person asked for is not to be had: the message says why, the status is 1.
struct Refusal : std::runtime_error {
  using runtime_error::runtime_error;
};
// The command line makes no sense: status 2.
struct WrongUse : std::runtime_error {
  using runtime_error::runtime_error;
};

using Arguments = std::span<const std::string>;

KeyPlace PlaceOf(const std::string& text) {
  std::optional<KeyPlace> place = PlaceNamed(Utf16(text));
  if (!place) throw WrongUse("'" + text + "' does not begin with a root key such as HKCU");
  return *std::move(place);
}

// For what is to be written: a character that would be kept as "?" is refused.
String Storable(const std::string& text) {
  String wide = Utf16(text);
  if (FromAnsi(ToAnsi(wide)) != wide) {
    throw Refusal("'" + text + "' has a character that the registry cannot keep");
  }
  return wide;
}

std::string HexOf(std::string_view data) {
  std::string text;
  for (const char byte : data) {
    std::array<char, 2> digits{'0', '0'};
    const auto number = static_cast<unsigned char>(byte);
    std::to_chars(digits.begin() + (number < 16), digits.end(), number, 16);
    if (!text.empty()) text += ' ';
    text.append(digits.begin(), digits.end());
  }
  return text;
}

std::string TextOf(const RegistryTextValue& value) {
  const std::size_t end = value.data.ends_with('\0') ? value.data.size() - 1 : value.data.size();
  return Utf8(FromAnsi(std::string_view(value.data).substr(0, end)));
}

std::string NumberOf(const RegistryTextValue& value) {
  std::uint32_t number = 0;
  for (std::size_t i = 4; i-- > 0;)
    number = number << 8U | static_cast<unsigned char>(value.data[i]);
  return std::to_string(static_cast<Int32>(number));
}

bool IsNumber(const RegistryTextValue& value) {
  return value.type == REG_DWORD && value.data.size() == sizeof(Int32);
}

std::string ContentOf(const RegistryTextValue& value) {
  if (value.type == REG_SZ) return TextOf(value);
  return IsNumber(value) ? NumberOf(value) : HexOf(value.data);
}

std::string TypeOf(const RegistryTextValue& value) {
  if (value.type == REG_SZ) return "sz";
  if (value.type == REG_BINARY) return "binary";
  return IsNumber(value) ? "dword"
                         : "type " + std::to_string(static_cast<std::uint32_t>(value.type));
}

// On one line and harmless for a terminal.
std::string Printable(const std::string& text) {
  std::string printable;
  for (const char unit : text) {
    if (static_cast<unsigned char>(unit) >= ' ' && unit != '\x7F') {
      printable += unit;
    } else {
      printable += "\\x" + HexOf({&unit, 1});
    }
  }
  return printable;
}

int List(Arguments arguments) {
  const KeyPlace place = PlaceOf(arguments[0]);
  for (const RegistryTextValue& value : ExportKey(place).values) {
    std::cout << '"' << Printable(Utf8(value.name)) << "\" " << TypeOf(value) << ": "
              << Printable(ContentOf(value)) << '\n';
  }
  Registry registry;
  registry.InitAbsolute(place.root, place.path);
  const Variant names = registry.GetSubKeys(u"");
  for (const Variant& name : names.If<Array>()->Elements().subspan(1)) {
    const String path = registry.KeyFullName(name);
    std::cout << Printable(Utf8(NameOf({place.root, path}))) << '\n';
  }
  return kSuccess;
}

int Get(Arguments arguments) {
  const KeyPlace place = PlaceOf(arguments[0]);
  const std::string name = ToAnsi(Utf16(arguments[1]));
  for (const RegistryTextValue& value : ExportKey(place).values) {
    if (CompareNames(ToAnsi(value.name), name) != 0) continue;
    std::cout << ContentOf(value) << '\n';
    return kSuccess;
  }
  throw Refusal("the key has no value '" + arguments[1] + "'");
}

Variant DwordFrom(const std::string& text) {
  const bool is_hex = text.starts_with("0x");
  const bool is_negative = text.starts_with('-');
  const char* const first = text.data() + (is_hex ? 2 : 0);
  const char* const last = text.data() + text.size();
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(first, last, number, is_hex ? 16 : 10);
  const bool is_whole = error == std::errc() && end == last && (!is_hex || first[0] != '-');
  if (!is_whole || number > UINT32_MAX || (is_negative && number < INT32_MIN)) {
    throw WrongUse("'" + text + "' is no number of 32 bits");
  }
  return static_cast<Int32>(static_cast<std::uint32_t>(number));
}

Variant BytesFrom(std::string text) {
  std::erase(text, ' ');
  std::vector<Byte> bytes(text.size() / 2);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char* const pair = text.data() + 2 * i;
    if (std::from_chars(pair, pair + 2, bytes[i], 16).ptr != pair + 2) bytes.clear();
  }
  if (bytes.empty() || text.size() % 2 != 0) {
    throw WrongUse("a binary is one or more pairs of hexadecimal digits");
  }
  return Array::OfBytes(std::move(bytes));
}

int Set(Arguments arguments) {
  const KeyPlace place = PlaceOf(arguments[0]);
  const std::string type = arguments.size() > 3 ? arguments[3] : "sz";
  if (type != "sz" && type != "dword" && type != "binary") {
    throw WrongUse("the type is sz, dword or binary, not '" + type + "'");
  }
  const Variant value = type == "dword"    ? DwordFrom(arguments[2])
                        : type == "binary" ? BytesFrom(arguments[2])
                                           : Variant(Storable(arguments[2]));
  const String name = Storable(arguments[1]);
  Storable(arguments[0]);
  Registry registry;
  registry.InitAbsolute(place.root, place.path);
  registry.SaveValue(u"", name, value);
  return kSuccess;
}

int Delete(Arguments arguments) {
  const KeyPlace place = PlaceOf(arguments[0]);
  Registry registry;
  registry.InitAbsolute(place.root, place.path);
  if (arguments.size() == 2) {
    registry.DeleteValue(u"", Utf16(arguments[1]));
    return kSuccess;
  }
  if (place.path.find_first_not_of(u'\\') == String::npos) {
    throw Refusal("a root key cannot be deleted");
  }
  if (!registry.KeyExists(u"")) throw Refusal("there is no key '" + arguments[0] + "'");
  registry.DeleteKey(u"");
  return kSuccess;
}

int Copy(Arguments arguments) {
  const KeyPlace source = PlaceOf(arguments[0]);
  const KeyPlace target = PlaceOf(arguments[1]);
  Storable(arguments[1]);
  RegistryText text = ExportRegistry(source);
  const std::size_t common = text.front().place.path.size();
  for (RegistryTextKey& key : text) {
    key.place = {target.root, target.path + u'\\' + key.place.path.substr(common)};
  }
  ImportRegistry(text);
  return kSuccess;
}

[[noreturn]] void RefuseFile(const std::string& path, const char* what, int error) {
  throw Refusal("'" + path + "' cannot be " + what + ": " + std::strerror(error));
}

// 0 or an errno value, as below.
int WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) return errno;
    bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
  }
  return fsync(file) == 0 ? 0 : errno;
}

// Settings may be secrets: a new file is for its owner alone, a former one keeps its mode.
int KeepMode(int file, const std::string& path) {
  struct stat former {};
  if (lstat(path.c_str(), &former) != 0 || S_ISLNK(former.st_mode)) return 0;
  if (!S_ISREG(former.st_mode)) return EEXIST;
  return fchmod(file, former.st_mode & 0777) == 0 ? 0 : errno;
}

// Written beside the file and renamed, so that a former one is replaced as a whole or not at all.
// The name beside it is new and nobody can guess it: no link that stands there is followed.
void WriteFile(const std::string& path, const std::string& bytes) {
  std::string fresh = path + ".XXXXXX";
  const int file = mkostemp(fresh.data(), O_CLOEXEC | O_NOFOLLOW);
  if (file < 0) RefuseFile(path, "written", errno);
  int error = KeepMode(file, path);
  if (error == 0) error = WriteAll(file, bytes);
  if (close(file) != 0 && error == 0) error = errno;
  if (error == 0 && rename(fresh.c_str(), path.c_str()) != 0) error = errno;
  if (error == 0) return;
  unlink(fresh.c_str());
  RefuseFile(path, "written", error);
}

int Export(Arguments arguments) {
  const KeyPlace place = PlaceOf(arguments[0]);
  const bool is_utf8 = arguments.size() > 2;
  const std::string bytes = WriteRegistryText(
      ExportRegistry(place), is_utf8 ? RegistryTextEncoding::kUtf8 : RegistryTextEncoding::kUtf16);
  if (arguments[1] == "-") {
    std::cout << bytes;
  } else {
    WriteFile(arguments[1], bytes);
  }
  return kSuccess;
}

std::string ReadAll(std::FILE* file, const std::string& path) {
  std::string bytes;
  std::array<char, 65536> buffer;
  while (const std::size_t read = std::fread(buffer.data(), 1, buffer.size(), file)) {
    bytes.append(buffer.data(), read);
  }
  if (std::ferror(file) != 0) RefuseFile(path, "read", errno);
  return bytes;
}

std::string ReadFile(const std::string& path) {
  if (path == "-") return ReadAll(stdin, "standard input");
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rbe"),
                                                             std::fclose);
  if (file == nullptr) RefuseFile(path, "read", errno);
  return ReadAll(file.get(), path);
}

RegistryText Understood(const std::string& bytes, const std::string& path,
                        ForeignCharacters foreign) {
  try {
    return ReadRegistryText(bytes, Utf16(path), foreign);
  } catch (const RaisedError& error) {
    throw Refusal(Utf8(error.Description()) + " (nothing was changed)");
  }
}

int Import(Arguments arguments) {
  const auto foreign =
      arguments.size() > 1 ? ForeignCharacters::kReplace : ForeignCharacters::kRefuse;
  const RegistryText text = Understood(ReadFile(arguments[0]), arguments[0], foreign);
  ImportRegistry(text);
  std::size_t values = 0;
  for (const RegistryTextKey& key : text) values += key.values.size();
  std::cout << "applied: " << text.size() << " keys, " << values << " values\n";
  return kSuccess;
}

constexpr std::array kKindsOfLoss{
    "the header is damaged, nothing is lost by that",
    "a value is lost",
    "a change of a key is lost",
    "changes are lost",
    "bytes that are no record",
};

void Tell(std::ostream& out, const JournalLoss& loss) {
  out << "  at " << loss.offset << ", " << loss.bytes
      << " bytes: " << kKindsOfLoss[static_cast<std::size_t>(loss.kind)];
  if (loss.records > 1) out << " (" << loss.records << ')';
  if (!loss.key.empty()) out << ", key " << Printable(Utf8(FromAnsi(loss.key)));
  if (!loss.value.empty()) out << ", value \"" << Printable(Utf8(FromAnsi(loss.value))) << '"';
  out << '\n';
}

// In the store's words, without their line end.
std::string Sentence(Int32 code) {
  const StringView sentence = SentenceOf(code);
  return Utf8(sentence.substr(0, sentence.find(u'\r')));
}

void Tell(std::ostream& out, const JournalReport& report) {
  out << report.path << ": ";
  if (report.status != kDone) {
    out << Sentence(report.status) << '\n';
    return;
  }
  out << report.records << " intact records, " << (report.Damaged() ? "DAMAGED" : "no damage")
      << '\n';
  for (const JournalLoss& loss : report.losses) Tell(out, loss);
  if (report.rewriting != kDone) {
    out << "  it grows because it cannot be written afresh: " << Sentence(report.rewriting) << '\n';
  }
  if (report.kept_as.empty()) return;
  out << "  the damaged file is quarantined as " << report.kept_as << '\n';
}

bool Verify(const PersistentStore& store, StoreRoot root) {
  const JournalReport report = store.Verify(root);
  const bool is_there = report.status != kAbsent;
  if (is_there) Tell(std::cout, report);
  for (const JournalReport& kept : store.VerifyQuarantined(root)) {
    std::cout << "quarantined: ";
    Tell(std::cout, kept);
  }
  return !is_there || (report.status == kDone && !report.Damaged());
}

PersistentStore* persistent_store = nullptr;

int VerifyAll(Arguments) {
  bool all_good = true;
  for (const StoreRoot root : {kClassesRoot, kCurrentUser, kLocalMachine, kUsers, kCurrentConfig}) {
    all_good = Verify(*persistent_store, root) && all_good;
  }
  if (all_good) std::cout << "no damage\n";
  return all_good ? kSuccess : kFailure;
}

struct Command {
  std::string_view name;
  std::size_t least;
  std::size_t most;
  std::string_view option;  ///< The last argument, which may be left out, where it is fixed.
  int (*run)(Arguments);
};

constexpr std::array<Command, 8> kCommands{{
    {"list", 1, 1, "", List},
    {"get", 2, 2, "", Get},
    {"set", 3, 4, "", Set},
    {"delete", 1, 2, "", Delete},
    {"copy", 2, 2, "", Copy},
    {"export", 2, 3, "--utf8", Export},
    {"import", 1, 2, "--replace", Import},
    {"verify", 0, 0, "", VerifyAll},
}};

int Run(Arguments arguments) {
  if (arguments.empty()) throw WrongUse("which command?");
  if (arguments[0] == "--help" || arguments[0] == "-h") {
    std::cout << kHelp;
    return kSuccess;
  }
  const auto* const command = std::ranges::find(kCommands, arguments[0], &Command::name);
  if (command == kCommands.end()) throw WrongUse("there is no command '" + arguments[0] + "'");
  const Arguments rest = arguments.subspan(1);
  const bool has_option = rest.size() == command->most && !command->option.empty();
  if (rest.size() < command->least || rest.size() > command->most ||
      (has_option && rest.back() != command->option)) {
    throw WrongUse("wrong arguments for '" + arguments[0] + "'");
  }
  return command->run(rest);
}

int Fail(int status, std::string_view what) {
  std::cerr << "settings: " << what << '\n';
  return status;
}

int RunReported(Arguments arguments) {
  try {
    const int status = Run(arguments);
    if (!std::cout.flush()) return Fail(kFailure, "the output could not be written");
    return status;
  } catch (const WrongUse& error) {
    return Fail(kWrongUse, error.what() + std::string("; see settings --help"));
  } catch (const RaisedError& error) {
    return Fail(kFailure, Utf8(error.Description()));
  } catch (const std::exception& error) {
    return Fail(kFailure, error.what());
  }
}

}  // namespace

int main(int count, char** values) {
  auto store = std::make_unique<PersistentStore>(StoreFolders::Usual());
  persistent_store = store.get();
  ChooseStore(std::move(store));
  const std::vector<std::string> arguments(values + std::min(count, 1), values + count);
  const int status = RunReported(arguments);
  // Damage that the command found was repaired as far as possible; the person is to know.
  for (const JournalReport& report : persistent_store->TakeReports()) Tell(std::cerr, report);
  return status;
}
