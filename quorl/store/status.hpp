// The codes that the store gives, one table for all of them: number and the French sentence
// that `FormatMessageA` (operations.hpp) puts in words. Constants; thread-compatible.
#pragma once

#include <array>

#include "quorl/runtime/types.hpp"

namespace quorl {

/// The result of a store operation. Operations return it as a plain `Int32`.
enum StoreStatus : Int32 {
  kDone = 0,                  ///< The operation did what was asked.
  kAbsent = 2,                ///< The key or the value does not exist.
  kFolderNotFound = 3,        ///< The store's folder cannot be reached, or there is none (no HOME).
  kTooManyFiles = 4,          ///< The process or the system has no descriptor left.
  kAccessDenied = 5,          ///< The key was not opened for this, or the file may not be touched.
  kWrongHandle = 6,           ///< The handle was never given out, or is closed.
  kOutOfMemory = 8,           ///< An allocation failed; nothing has changed.
  kLocked = 33,               ///< Another process kept the hive locked too long.
  kWrongArgument = 87,        ///< An argument is out of its contract.
  kDiskFull = 112,            ///< The disk or the user's quota is full; nothing has changed.
  kWrongFolder = 161,         ///< The store's folder is given by a relative or impossible path.
  kBufferTooSmall = 234,      ///< The buffer is too small; the size needed has been given.
  kEndOfList = 259,           ///< The index is after the last subkey or value.
  kDamaged = 1009,            ///< The hive is damaged, and no name is left to quarantine it.
  kInputOutputFailed = 1016,  ///< Reading or writing the hive failed.
  kNotAHive = 1017,           ///< The hive's path names a pipe, a folder, a device or the like.
  kKeyDeleted = 1018,         ///< The key was deleted after it was opened.
  kNewerFormat = 1150,        ///< The hive was written by a newer format; it is left untouched.
};

/// One row of the table.
struct StatusRow {
  StoreStatus code;
  StringView sentence;  ///< French, ended by CR LF.
};

inline constexpr std::array<StatusRow, 18> kStatusRows{{
    {kDone, u"L'opération s'est terminée normalement.\r\n"},
    {kAbsent, u"La clé ou la valeur demandée n'existe pas.\r\n"},
    {kFolderNotFound, u"Le dossier du registre est introuvable.\r\n"},
    {kTooManyFiles, u"Trop de fichiers sont ouverts.\r\n"},
    {kAccessDenied, u"L'accès est refusé.\r\n"},
    {kWrongHandle, u"L'identificateur de la clé n'est pas valide.\r\n"},
    {kOutOfMemory, u"La mémoire disponible ne suffit pas.\r\n"},
    {kLocked, u"Un autre programme garde le registre verrouillé.\r\n"},
    {kWrongArgument, u"Un des arguments n'est pas valide.\r\n"},
    {kDiskFull, u"Il n'y a plus assez de place sur le disque.\r\n"},
    {kWrongFolder, u"Le chemin du dossier du registre n'est pas valide.\r\n"},
    {kBufferTooSmall, u"Le tampon est trop petit pour les données.\r\n"},
    {kEndOfList, u"Il n'y a plus d'élément à énumérer.\r\n"},
    {kDamaged, u"Le fichier du registre est endommagé et n'a pas pu être mis de côté.\r\n"},
    {kInputOutputFailed, u"La lecture ou l'écriture du fichier du registre a échoué.\r\n"},
    {kNotAHive, u"Le chemin indiqué n'est pas celui d'un fichier du registre.\r\n"},
    {kKeyDeleted, u"La clé a été supprimée entre-temps.\r\n"},
    {kNewerFormat, u"Le fichier du registre a été écrit par une version plus récente.\r\n"},
}};

/// Whether the rows stand in ascending order, so that each code is there once.
constexpr bool StatusRowsAscend() {
  for (std::size_t i = 1; i < kStatusRows.size(); ++i) {
    if (kStatusRows[i - 1].code >= kStatusRows[i].code) return false;
  }
  return true;
}
static_assert(StatusRowsAscend());

/// The French sentence of `code`, ended by CR LF; empty when the store has no such code.
QUORL_API StringView SentenceOf(Int32 code) noexcept;

/// The store's code for a failed system call: `error` is an errno value, as a positive number.
QUORL_API StoreStatus StatusOf(int error) noexcept;

}  // namespace quorl
