// `Registry`: a host's access to the settings registry, the store of keys and values that outlives
// the host's runs.
//
// A root key has a tree of keys below it, a key has values. A key is named by its path: the names
// of its levels, separated by backslashes. A value has a name, a type and bytes. An instance holds
// a root, made of a root key (`HKey`) and a path below it (`RootKeyName`), and every `KeyName`
// counts from there; an empty one is the root itself. `KeyName` may hold several levels. Names
// compare without case. Text is kept as single bytes (Windows-1252): a character without a place
// there becomes "?".
//
//     Registry settings;
//     settings.InitApp(u"Maison", u"Caisse");         // HKEY_CURRENT_USER, Software\Maison\Caisse
//     settings.SaveValue(u"Ticket", u"Copies", 2);
//     settings.GetValue(u"Ticket", u"Copies", 1);     // 2
//     settings.GetValue(u"Ticket", u"Police", u"");   // u"", the default
//
// Lasting. A value that `SaveValue` has written is on the disk when the call returns; other
// processes see it at their next call. Nothing is cached, and no key stays open after a call, a
// failed one included. Each call sees the store as it is; a deletion or copy of a whole key is one
// change that nobody sees half done.
//
// Failures. A code of the store is raised as it is: Number is the code, Source "qlWinRegistry",
// Description "Erreur d'accès au registre windows dans la fonction ", the call with its arguments,
// two line feeds, and the store's French sentence for the code (store/status.hpp has them all; 2 is
// an absent key or value, 5 a denied access, 87 a name that no key or value can have, 112 a full
// disk). Every member that reaches the store can raise any of them but where it says otherwise.
// Failures of conversions come from the runtime under its own Source. An argument that has no text,
// such as an array of anything but bytes, is failure 13 before anything happens in the store. After
// a failure the store is as it was, unless the member says otherwise.
//
// Threads. An instance is used from one thread at a time; any number of instances, threads and
// processes work on the store at once.
#pragma once

#include "quorl/runtime/enumerations.hpp"
#include "quorl/runtime/types.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl {

class OpenKey;

class Registry {
 public:
  /// The root key, at first `HKEY_CURRENT_USER`. Nothing is checked and nothing touched in the
  /// store; the next call uses the new root.
  void HKey(HKeyEnum New_HKey) noexcept;
  HKeyEnum HKey() const noexcept;

  /// The path below the root key from which every `KeyName` counts, at first empty.
  void RootKeyName(StringView New_RootKeyName);
  String RootKeyName() const;

  /// Sets both parts of the root.
  void InitAbsolute(HKeyEnum New_HKey, StringView New_RootKeyName);

  /// Sets the root to a host's own settings: "Software\", `Compagny`, "\", `AppName`, of the user
  /// for a `Mode` of 0 and of the machine for any other. Makes no key.
  void InitApp(StringView Compagny, StringView AppName, RegModeEnum Mode = qlWinRegCurrentUser);

  /// The path of a key below `HKey`: `RootKeyName`, a backslash and the text of `KeyName`, or
  /// `RootKeyName` alone for an empty text, Empty and Null. Failure 13 for what has no text.
  String KeyFullName(const Variant& KeyName) const;

  /// Whether the key exists. A key that exists and cannot be opened raises the code.
  Boolean KeyExists(const Variant& KeyName);

  /// One value: a String for a text, without its terminator, which is the last byte whatever that
  /// is; an Int32 for a `REG_DWORD`; an array of bytes from 0 for a `REG_BINARY`; Null for any
  /// other type. A copy of `Default` when the key or the value is absent. Failure 9 for a
  /// `REG_BINARY` of no bytes, 234 for a `REG_DWORD` of more than four.
  Variant GetValue(StringView KeyName, StringView ValueName, const Variant& Default);

  /// Writes one value, and makes the key with every missing level first. Without `dataType` the
  /// type goes by the value: `REG_DWORD` for Byte, Int16, Int32 and Boolean, `REG_SZ` for a String,
  /// `REG_BINARY` for all others.
  ///
  /// `REG_SZ` writes the text that `Value` converts to, `REG_DWORD` the Int32 (True is -1),
  /// `REG_BINARY` the bytes of an array of bytes or the code units of a String, two bytes each with
  /// the low one first. Any other `dataType` writes nothing and is no failure.
  ///
  /// Failures: those of the conversion; for `REG_BINARY` 13 for any other content (a Double without
  /// `dataType`, for one) and 9 for no bytes. After each of these the key has been made.
  void SaveValue(StringView KeyName, StringView ValueName, const Variant& Value,
                 RegTypeEnum dataType = REG_NONE);

  /// All values of a key: an array (0 to values - 1, 0 to 2) with name, content and type number in
  /// the columns, in the order in which the values were made; Empty for a key without values. The
  /// content of a text is a String that ends at the first zero byte, that of a `REG_DWORD` an
  /// Int32, that of any other an array of bytes; the type number is 0 for a type that `RegTypeEnum`
  /// has not. Failure 2 for an absent key; 6 for a text of more than 32768 bytes; 9 for a
  /// `REG_DWORD` where no value of the key has four bytes.
  Variant GetAllValues(StringView KeyName);

  /// The names of a key and its subkeys: an array of String from 0, `KeyName` first, then each
  /// subkey as `KeyName`, a backslash and its own name, ready to be passed as a `KeyName` again. A
  /// key stands before its subkeys, these in the order of their names. `Levels` says how far down:
  /// 1 is the direct subkeys, 0 everything, below 0 `KeyName` alone. Failure 2 for an absent key.
  Variant GetSubKeys(StringView KeyName, Int32 Levels = 1);

  /// Deletes a key with all below it; the root itself for an empty `KeyName`. An absent key is no
  /// failure.
  void DeleteKey(StringView KeyName);

  /// Deletes one value. Failure 2 when the key or the value is absent.
  void DeleteValue(StringView KeyName, StringView ValueName);

  /// Copies values and subkeys of a key, all levels, into another below the same root, which is
  /// made first if need be. What is there already stays, values of the same name are replaced.
  /// Failure 2 when the source is absent; after a failure the destination has been made.
  void CopyKey(StringView SourceKeyName, StringView DestinationKeyName);

 private:
  struct Walk;

  OpenKey Open(const Variant& key_name, Int32 access) const;
  OpenKey OpenIfThere(const Variant& key_name, Int32 access) const;
  OpenKey Create(const Variant& key_name, Int32 access) const;
  Variant ReadValue(const OpenKey& key, StringView value_name, const Variant& otherwise) const;
  void WriteValue(const OpenKey& key, StringView value_name, Int32 type,
                  const Variant& value) const;
  void Enter(Walk& walk, String key_name);
  String NextSubKey(Walk& walk) const;
  void RequireDone(Int32 code) const;
  [[noreturn]] void RaiseRegError(Int32 code) const;

  HKeyEnum hkey_ = HKEY_CURRENT_USER;
  String root_key_name_;
  String call_text_;
};

}  // namespace quorl
