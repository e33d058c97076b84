// Where the persistent store keeps its hives. A value; the environment is read when `Usual` is
// called.
#pragma once

#include <string>

#include "quorl/runtime/types.hpp"

namespace quorl {

/// A folder of hives. A path that does not begin with "/" is no place: every operation on its hives
/// then gives kWrongFolder, and kFolderNotFound for an empty one.
struct QUORL_API StoreFolders {
  std::string user;
  std::string machine;

  /// The platform's: "$XDG_DATA_HOME/quorl/registry", or "$HOME/.local/share/quorl/registry" when
  /// that is unset, empty, or relative while HOME is set, and "/var/lib/quorl/registry". The user's
  /// is empty when HOME is needed and unset. May throw std::bad_alloc.
  static StoreFolders Usual();
};

}  // namespace quorl
