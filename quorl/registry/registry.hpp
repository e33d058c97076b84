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
// Durability. What `SaveValue` has written is on the disk when the call returns, and other
// processes see it at their next call. Nothing is cached, and no key stays open after a call, a
// failed one included. Each call sees the store as it is; the deletion or copy of a whole key is
// one change, which nobody sees half done. Each `SaveValue` waits for the disk; a C++ host that has
// many values to save makes them one change, which waits once, with `Store::Commit`
// (store/store.hpp).
//
// Failures. A code of the store is raised as it is: Number is the code, Source "qlWinRegistry",
// Description "Erreur d'accès au registre windows dans la fonction ", the call with its arguments,
// two line feeds, and the store's French sentence for the code (store/status.hpp lists all codes;
// 2 is an absent key or value, 5 a denied access, 6 an `HKey` that is no root key, 87 a zero byte
// in a path or a new name that no key or value can have, 112 a full disk). Every member below
// `KeyFullName` can raise any of them unless it says otherwise.
//
// Failures of conversions come from the runtime, under its own Source. A Variant that has no text
// (`Missing`, an array of anything but bytes, an object without a default member) is failure 13
// before anything happens in the store, and so is failure 6 for NaN, infinities and a date outside
// the calendar; a failure of an object's default member passes through. Every member that takes a
// text can raise 7 where memory does not suffice. After a failure the store is as it was, unless
// the member says otherwise.
//
// Threads. Members that are const, `SaveValue`, `DeleteKey`, `DeleteValue` and `CopyKey` leave the
// instance as it is: any number of threads may call them on one instance at once. A thread that
// sets the root (`HKey`, `RootKeyName`, `InitAbsolute`, `InitApp`) needs the instance to itself.
// Any number of instances, threads and processes work on the store at once.
#pragma once

#include "quorl/runtime/enumerations.hpp"
#include "quorl/runtime/types.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl {

class Registry {
 public:
  /// The root key, at first `HKEY_CURRENT_USER`. Nothing is checked and nothing touched in the
  /// store; the next call uses the new root.
  void HKey(HKeyEnum New_HKey) noexcept;
  HKeyEnum HKey() const noexcept;

  /// The path below the root key from which every `KeyName` counts, at first empty. Failure 7.
  void RootKeyName(StringView New_RootKeyName);
  String RootKeyName() const;

  /// Sets both parts of the root. Failure 7.
  void InitAbsolute(HKeyEnum New_HKey, StringView New_RootKeyName);

  /// Sets the root to a host's own settings: "Software\", `Compagny`, "\", `AppName`, of the user
  /// for a `Mode` of 0 and of the machine for any other. Makes no key. Failure 7.
  void InitApp(StringView Compagny, StringView AppName, RegModeEnum Mode = qlWinRegCurrentUser);

  /// The path of a key below `HKey`: `RootKeyName`, a backslash and the text of `KeyName`, or
  /// `RootKeyName` alone for an empty text, Empty and Null. Failures 13 and 6 for what has no text,
  /// 13 here for an array of bytes too, and 7; nothing of the store's.
  String KeyFullName(const Variant& KeyName) const;

  /// Whether the key exists. A key that exists and cannot be opened raises the code. Failures of
  /// `KeyFullName` too.
  Boolean KeyExists(const Variant& KeyName) const;

  /// One value: a String for a text, without its terminator, which is the last byte whatever that
  /// is; an Int32 for a `REG_DWORD`; an array of bytes from 0 for a `REG_BINARY`; Null for any
  /// other type. A copy of `Default` when the key or the value is absent. Failure 9 for a
  /// `REG_BINARY` of no bytes, 234 for a `REG_DWORD` of more than four, 13 or 6 for a `Default`
  /// that has no text, wherever the value stands.
  Variant GetValue(StringView KeyName, StringView ValueName, const Variant& Default) const;

  /// Writes one value, and makes the key with every missing level first. Without `dataType` the
  /// type goes by the value: `REG_DWORD` for Byte, Int16, Int32 and Boolean, `REG_SZ` for a String,
  /// `REG_BINARY` for all others.
  ///
  /// `REG_SZ` writes the text that `Value` converts to, `REG_DWORD` the Int32 (True is -1),
  /// `REG_BINARY` the bytes of an array of bytes or the code units of a String, two bytes each with
  /// the low one first. Any other `dataType` writes nothing and is no failure.
  ///
  /// Failures, after each of which the key has been made: for `REG_SZ` 94 for Null and 13 for an
  /// array; for `REG_DWORD` 94 for Null, 13 for a text that is no number and for an array, 6 beyond
  /// an Int32; for `REG_BINARY` 13 for anything but bytes and String (Null, or a Double without
  /// `dataType`, for one) and 9 for no bytes and for bytes of two dimensions; 6 for a content of
  /// more than 2147483647 bytes. Failure 13 or 6 for a `Value` that has no text comes first, and
  /// makes no key.
  void SaveValue(StringView KeyName, StringView ValueName, const Variant& Value,
                 RegTypeEnum dataType = REG_NONE);

  /// All values of a key: an array (0 to values - 1, 0 to 2) with name, content and type number in
  /// the columns, in the order in which the values were made; Empty for a key without values. The
  /// content of a text is a String that ends at the first zero byte, that of a `REG_DWORD` an
  /// Int32, that of any other type an array of bytes; the type number is 0 for a type that
  /// `RegTypeEnum` does not list. Failure 2 for an absent key; 6 for a text of more than 32768
  /// bytes; 9 for a `REG_DWORD` where no value of the key has three bytes.
  Variant GetAllValues(StringView KeyName) const;

  /// The names of a key and its subkeys: an array of String from 0, `KeyName` first, then each
  /// subkey as `KeyName`, a backslash and its own name, ready to be passed as a `KeyName` again. A
  /// key stands before its subkeys, these in the order of their names. `Levels` says how far down:
  /// 1 is the direct subkeys, 0 everything, below 0 `KeyName` alone. Failure 2 for an absent key;
  /// a failure names the call "doGetSubKeys" with the key that was entered last.
  Variant GetSubKeys(StringView KeyName, Int32 Levels = 1) const;

  /// Deletes a key with all below it; the root itself for an empty `KeyName`. An absent key is no
  /// failure.
  void DeleteKey(StringView KeyName);

  /// Deletes one value. Failure 2 when the key or the value is absent.
  void DeleteValue(StringView KeyName, StringView ValueName);

  /// Copies values and subkeys of a key, all levels, into another below the same root, which is
  /// made first if need be, as a change of its own. What is there already stays, values of the same
  /// name are replaced. Failure 2 when the source is absent; after a failure the destination has
  /// been made.
  void CopyKey(StringView SourceKeyName, StringView DestinationKeyName);

 private:
  HKeyEnum hkey_ = HKEY_CURRENT_USER;
  String root_key_name_;
};

}  // namespace quorl
