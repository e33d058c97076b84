#include "examples/command/system_error.hpp"

#include <algorithm>
#include <array>
#include <cerrno>

#include "examples/command/message.hpp"

namespace command {
namespace {

struct Row {
  int error;
  Message<> text;
};

constexpr auto kRows = std::to_array<Row>({
    {ENOENT, {"there is no such file or folder", "ce fichier ou ce dossier n'existe pas"}},
    {EACCES, {"permission denied", "la permission manque"}},
    {EPERM, {"not permitted", "ce n'est pas permis"}},
    {EISDIR, {"it is a folder", "c'est un dossier"}},
    {ENOTDIR, {"a part of the path is no folder", "une partie du chemin n'est pas un dossier"}},
    {EEXIST, {"something else stands there", "autre chose s'y trouve"}},
    {ENOSPC, {"the disk is full", "le disque est plein"}},
    {EDQUOT, {"the quota is used up", "le quota est épuisé"}},
    {EFBIG, {"the file is too large", "le fichier est trop grand"}},
    {EROFS, {"the disk is read-only", "le disque est en lecture seule"}},
    {EIO, {"the device fails", "le périphérique est en panne"}},
    {ENXIO, {"the device is absent", "le périphérique est absent"}},
    {ELOOP, {"symbolic links go in a circle", "les liens symboliques tournent en rond"}},
    {ENAMETOOLONG, {"the name is too long", "le nom est trop long"}},
    {EMFILE, {"too many files are open", "trop de fichiers sont ouverts"}},
    {ENFILE, {"too many files are open", "trop de fichiers sont ouverts"}},
    {ETXTBSY, {"it is a running program", "c'est un programme en cours d'exécution"}},
    {ENOMEM, {"there is not enough memory", "la mémoire disponible ne suffit pas"}},
});

constexpr Message<1> kOther{"system error {0}", "erreur du système {0}"};

}  // namespace

std::string SystemErrorText(int error) {
  const auto* const row = std::ranges::find(kRows, error, &Row::error);
  return row == kRows.end() ? kOther(std::to_string(error)) : row->text();
}

}  // namespace command
