#include "examples/settings/failure.hpp"

#include <algorithm>
#include <array>

#include "examples/settings/messages.hpp"
#include "quorl/runtime/utf.hpp"
#include "quorl/store/status.hpp"

namespace settings {

using namespace quorl;
namespace {

// In French the library's own sentences serve; these are the same in English, row by row.
struct CodeRow {
  StoreStatus code;
  std::string_view english;
};

constexpr auto kCodes = std::to_array<CodeRow>({
    {kDone, "the operation ended normally"},
    {kAbsent, "the key or the value does not exist"},
    {kFolderNotFound, "the folder of the registry cannot be found"},
    {kTooManyFiles, "too many files are open"},
    {kAccessDenied, "access is denied"},
    {kWrongHandle, "the handle of the key is not valid"},
    {kOutOfMemory, "there is not enough memory"},
    {kLocked, "another program keeps the registry locked"},
    {kWrongArgument, "the name of the key or of the value is not valid"},
    {kDiskFull, "there is not enough room on the disk"},
    {kWrongFolder, "the path of the registry's folder is not valid"},
    {kBufferTooSmall, "the buffer is too small for the data"},
    {kEndOfList, "there is nothing more to list"},
    {kDamaged, "the registry's file is damaged and could not be quarantined"},
    {kInputOutputFailed, "the registry's file could not be read or written"},
    {kNotAHive, "the path does not name a registry file"},
    {kKeyDeleted, "the key was deleted meanwhile"},
    {kNewerFormat, "the registry's file was written by a newer version"},
});
static_assert(std::ranges::equal(kCodes, kStatusRows, {}, &CodeRow::code, &StatusRow::code));

struct FaultRow {
  RegistryTextFault fault;
  std::string_view english;
};

constexpr auto kFaults = std::to_array<FaultRow>({
    {RegistryTextFault::kUnknownHeader, "the header is neither that of version 5.00 nor of 4"},
    {RegistryTextFault::kHighByteFirst, "UTF-16 must have the low byte first"},
    {RegistryTextFault::kHalfCharacter, "the file ends in the middle of a character"},
    {RegistryTextFault::kIncomplete,
     R"(the file is incomplete: its last line, "; end", is missing)"},
    {RegistryTextFault::kNoKey, "the file has no key"},
    {RegistryTextFault::kUnknownLine, "the line is neither a key nor a value nor a comment"},
    {RegistryTextFault::kMeaninglessEnd, "the end of the line makes no sense"},
    {RegistryTextFault::kUnclosedKey, "the key has no closing bracket"},
    {RegistryTextFault::kNoRootKey, "the key does not begin with a root key"},
    {RegistryTextFault::kBadKeyName, "the key's name is too long or has a zero character"},
    {RegistryTextFault::kDeletedRoot, "a root key cannot be deleted"},
    {RegistryTextFault::kValueWithoutKey, "the value is below no key"},
    {RegistryTextFault::kValueOfDeletedKey, "the value is below a deleted key"},
    {RegistryTextFault::kBadValueName, "the value's name is too long or has a zero character"},
    {RegistryTextFault::kNoEqualsSign, "the sign = is missing after the value's name"},
    {RegistryTextFault::kUnknownContent, "the value is neither a text nor dword nor hex"},
    {RegistryTextFault::kNoColon, "the sign : is missing after the value's type"},
    {RegistryTextFault::kNoNumber, "the value's number is missing"},
    {RegistryTextFault::kBadType, "the value's type is no number in brackets"},
    {RegistryTextFault::kBadByte, "a byte of the value is missing or not hexadecimal"},
    {RegistryTextFault::kUnclosedText, "the text has no closing quote"},
    {RegistryTextFault::kLoneBackslash,
     "a backslash is followed neither by another nor by a quote"},
    {RegistryTextFault::kHalfCharacterInText, "the text's bytes end in the middle of a character"},
    {RegistryTextFault::kForeignCharacter,
     "the registry has no place for a character (Windows-1252)"},
});
static_assert(std::ranges::equal(kFaults, kRegistryTextFaults, {}, &FaultRow::fault,
                                 &RegistryTextFaultRow::fault));

bool IsFrench() { return command::PersonsLanguage() == command::Language::kFrench; }

bool IsOfStore(const RaisedError& error) { return error.Source() == u"qlWinRegistry"; }

}  // namespace

std::string SentenceOfCode(Int32 code) {
  const auto* const row = std::ranges::find(kCodes, code, &CodeRow::code);
  if (row == kCodes.end()) return messages::kUnknownCode(std::to_string(code));
  if (!IsFrench()) return std::string(row->english);
  const StringView sentence = SentenceOf(code);
  return Utf8(sentence.substr(0, sentence.find(u'\r')));
}

std::string SentenceOfFailure(const RaisedError& error) {
  if (IsOfStore(error)) return SentenceOfCode(error.Number());
  if (error.Number() == static_cast<Int32>(FailureNumber::kOutOfMemory)) {
    return SentenceOfCode(kOutOfMemory);
  }
  return messages::kQuoted(std::to_string(error.Number()), Utf8(error.Description()));
}

std::string SentenceOfFault(RegistryTextFault fault) {
  const auto index = static_cast<std::size_t>(fault);
  return IsFrench() ? Utf8(kRegistryTextFaults[index].sentence)
                    : std::string(kFaults[index].english);
}

void RefuseAbout(const std::string& subject, const RaisedError& error) {
  throw Refusal(messages::kAbout(subject, SentenceOfFailure(error)));
}

}  // namespace settings
