// The component under a program of this folder: its surroundings and its objects.
#pragma once

#include <string>

#include "examples/parity/binary.hpp"

namespace parity {

/// Settings kept in memory, or in a folder where `store` names one; the locale and the screen of
/// the header; the component registered in these settings. False when one of them is refused;
/// `refused` then has it.
bool SetUp(const Header& header, const std::string& component, const std::string& store,
           std::string& refused);

/// A new object of a class of the component, null if there is none.
Counted<> NewObject(const Name& class_name);

}  // namespace parity
