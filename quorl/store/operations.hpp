// The twelve operations of the settings registry, under their system names, on the process's
// current store (store.hpp).
//
// Keys. A root key has a tree of keys below it; a path names a key by the names of its levels with
// backslashes between them: two in a row read as one, one at either end is dropped, and the empty
// path is the root itself. Names compare without case and keep the case they were made with. Names
// and text are single bytes, Windows-1252 (quorl/runtime/ansi.hpp). A key's name has at most 255
// bytes, a value's at most 16383, and neither holds a zero byte. Subkeys are listed in the order of
// their lower-cased names, values in the order in which they were made.
//
// Values. A value has a name, which may be empty, a 32-bit type, of which every one is kept, and
// bytes of any number up to 2147483647.
//
// Durability. In the persistent store a change is on the disk when the operation that makes it
// returns 0, and every process sees it at its next opening of a key. A key and what is below it is
// copied or deleted in one change: nobody ever sees half of it. For several changes that are
// committed as one, see `Store::Commit`.
//
// Handles. An open key is a number above 0 that no other key gets as long as it may be held. A root
// key stands for a handle that is always open with every right. `RegCloseKey` ends a handle. A
// handle may come from one thread and be used by another; two threads may use the store at once.
//
// Results. Every operation but `FormatMessageA` returns a code of status.hpp and throws nothing;
// after any code but 0, nothing has changed. Besides those named with each operation, all of them
// give 6 for a handle that is not open, 87 for an argument out of its contract (a missing out
// pointer, a negative size or index, a reserved argument that is not 0, a path with a zero byte,
// and where a key or value is to be made, a name too long or with a zero byte; where it is only
// looked for, there is none of that name), 1018 when the key was deleted after it was opened, 5
// when the key was not opened for that, and 8 when memory ran out. The persistent store adds 3, 4,
// 5, 33, 112, 161, 1009, 1016, 1017, 1150.
#pragma once

#include <memory>
#include <string_view>

#include "quorl/store/store.hpp"

namespace quorl {

/// Opens a key that exists. `options` is 0. Gives 2 when the path is absent; `*key` is then 0.
///     KeyHandle key = 0;
///     RegOpenKeyExA(kCurrentUser, "Software\\Maison\\Caisse", 0, kReadValues, &key);
QUORL_API Int32 RegOpenKeyExA(KeyHandle root, std::string_view path, Int32 options, Int32 access,
                              KeyHandle* key) noexcept;

/// Opens a key and makes every level of it that is missing, in one change. `reserved` and `options`
/// are 0; the key's class and `security` are ignored. `disposition`, unless null, gets 1
/// when the key is new and 2 when it was there.
QUORL_API Int32 RegCreateKeyExA(KeyHandle root, std::string_view path, Int32 reserved,
                                std::string_view key_class, Int32 options, Int32 access,
                                const SecurityRecord* security, KeyHandle* key,
                                Int32* disposition) noexcept;

/// Reads one value, opened for `kReadValues`. `type` may be null. With `data` null, `*size` gets
/// the number of bytes; otherwise `*size` is the capacity, and the bytes and their number are
/// given. Gives 2 when the value is absent, 234 with the number needed (and the type) when the
/// capacity is too small. `reserved` is null.
QUORL_API Int32 RegQueryValueExA(KeyHandle key, std::string_view name, const Int32* reserved,
                                 Int32* type, void* data, Int32* size) noexcept;

/// Makes or replaces a value, opened for `kSetValues`. `reserved` is 0; `data` may be null when
/// `size` is 0. A value that is replaced keeps its name's case and its place among the values.
QUORL_API Int32 RegSetValueExA(KeyHandle key, std::string_view name, Int32 reserved, Int32 type,
                               const void* data, Int32 size) noexcept;

/// Removes a value, opened for `kSetValues`. Gives 2 when it is absent.
QUORL_API Int32 RegDeleteValueA(KeyHandle key, std::string_view name) noexcept;

/// The value at `index`, from 0, of a key opened for `kReadValues`. `*name_size` is the capacity of
/// `name`, terminator counted, and gets the name's length without it. `type` may be null; `data`
/// and `*data_size` are as for `RegQueryValueExA`, and both may be null. Gives 259 after the last
/// value, and 234 when a buffer is too small: each size is then what is needed, the name's with
/// terminator.
QUORL_API Int32 RegEnumValueA(KeyHandle key, Int32 index, char* name, Int32* name_size,
                              const Int32* reserved, Int32* type, void* data,
                              Int32* data_size) noexcept;

/// The subkey at `index`, from 0, of a key opened for `kListSubkeys`; name and codes as above. The
/// class is the empty text: `key_class`, unless null, gets a terminator and `*class_size` 0.
/// `time`, unless null, gets zeros.
QUORL_API Int32 RegEnumKeyExA(KeyHandle key, Int32 index, char* name, Int32* name_size,
                              const Int32* reserved, char* key_class, Int32* class_size,
                              FileTime* time) noexcept;

/// Counts and longest lengths of a key opened for `kReadValues`, in bytes and without terminators.
/// Every out pointer may be null. `key_class` is not written, whatever its capacity; `*class_size`
/// and `*longest_class` get 0.
QUORL_API Int32 RegQueryInfoKeyA(KeyHandle key, const char* key_class, Int32* class_size,
                                 const Int32* reserved, Int32* subkeys, Int32* longest_subkey,
                                 Int32* longest_class, Int32* values, Int32* longest_value_name,
                                 Int32* longest_data, Int32* security_size,
                                 FileTime* time) noexcept;

/// Ends a handle. A root key may be closed too: that does nothing.
QUORL_API Int32 RegCloseKey(KeyHandle key) noexcept;

/// Copies the values and subkeys of a key, all levels, into `destination`, opened for `kSetValues`
/// and `kCreateSubkeys`. What is there already stays, values of the same name are replaced.
/// `reserved` is 0. Gives 2 when the source is absent. A key copied onto itself stays as it is; one
/// copied into its own tree is copied as it was before.
QUORL_API Int32 SHCopyKeyA(KeyHandle root, std::string_view source, KeyHandle destination,
                           Int32 reserved) noexcept;

/// Deletes a key with all below it. Gives 2 when it is absent. Of a root key, which always exists,
/// everything below it and its values are deleted.
QUORL_API Int32 SHDeleteKeyA(KeyHandle root, std::string_view path) noexcept;

/// Puts `code` in words: a French sentence ended by CR LF and a terminator, into `buffer` of
/// `capacity` bytes. `flags` is 4096. Returns the sentence's length without terminator, and 0 when
/// the store has no such code or the buffer is too small. `source`, `language` and `arguments`
/// are ignored.
QUORL_API Int32 FormatMessageA(Int32 flags, const void* source, Int32 code, Int32 language,
                               char* buffer, Int32 capacity, const void* arguments) noexcept;

/// The store that the operations act on: the one that a host chose, else the persistent store in
/// the user's and the machine's usual folders, made at the first use. May throw std::bad_alloc.
QUORL_API Store& CurrentStore();

/// Chooses the store of the process. False, with nothing changed, when a store is in use already.
QUORL_API bool ChooseStore(std::unique_ptr<Store> store) noexcept;

/// Puts another store in the current one's place as long as the guard lives, for the whole process:
///     MemoryStore store;
///     const ScopedStore guard(store);
class QUORL_API ScopedStore {
 public:
  /// `store` is lent and must outlive the guard.
  explicit ScopedStore(Store& store) noexcept;
  ScopedStore(const ScopedStore&) = delete;
  ScopedStore& operator=(const ScopedStore&) = delete;
  ~ScopedStore();

 private:
  Store* former_;
};

}  // namespace quorl
