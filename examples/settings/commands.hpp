// The commands of `settings`, each a function that returns the exit status. Refusal and WrongUse
// leave them; what the store refuses leaves them as one of these.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "quorl/registry/text/root_name.hpp"
#include "quorl/store/persistent_store.hpp"

namespace settings {

inline constexpr int kSuccess = 0;
inline constexpr int kFailure = 1;
inline constexpr int kWrongUse = 2;

/// What the person typed after the command.
struct Request {
  std::vector<std::string> arguments;
  std::vector<std::string> options;  ///< Those that begin with "--".
  quorl::PersistentStore& store;     ///< The process's current store.

  bool Has(std::string_view option) const {
    return std::ranges::find(options, option) != options.end();
  }
};

/// The key that a text such as 'HKCU\Software' names; WrongUse for one without a root key.
quorl::KeyPlace PlaceOf(const std::string& text);

int List(const Request& request);
int Get(const Request& request);
int Set(const Request& request);
int Delete(const Request& request);
int Copy(const Request& request);
int Export(const Request& request);
int Import(const Request& request);
int Diff(const Request& request);
int Watch(const Request& request);
int Verify(const Request& request);
int Repair(const Request& request);

/// Damage that the store found on its way and repaired as far as possible, on standard error.
void TellOfDamage(quorl::PersistentStore& store);

}  // namespace settings
