// The five published enumerations. They stand together, below the classes that take them, so that
// the C header can lend a C++ host these very names instead of declaring them a second time.
#pragma once

#include "quorl/runtime/types.hpp"

namespace quorl {

/// How a host may align what it shows. No member of the library takes it; it is published for
/// hosts.
enum AlignentEnum : Int32 {
  qlAlignLeft = 0,
  qlAlignRight = 1,
  qlAlignCenter = 2,
  qlAlignGeneral = 3,
};

/// Which separator `Regional::SetRegional` sets. A host may pass any other Int32 too.
enum RegionalItemEnum : Int32 {
  riNumDecimalChar = 0,   ///< Decimal separator of numbers, "sDecimal".
  riNumThousandChar = 1,  ///< Thousand separator of numbers, "sThousand".
  riMonDecimalChar = 2,   ///< Decimal separator of amounts of money, "sMonDecimalSep".
  riMonThousandChar = 3,  ///< Thousand separator of amounts of money, "sMonThousandSep".
};

/// The root keys. A host may pass any other Int32 too; the store then answers with a code.
enum HKeyEnum : Int32 {
  HKEY_CLASSES_ROOT = -2147483647 - 1,  ///< 0x80000000: classes and types.
  HKEY_CURRENT_USER = -2147483647,      ///< 0x80000001: the settings of the user.
  HKEY_LOCAL_MACHINE = -2147483646,     ///< 0x80000002: the settings of the machine.
  HKEY_USERS = -2147483645,             ///< 0x80000003: the settings of all users.
  HKEY_PERFORMANCE_DATA = -2147483644,  ///< 0x80000004: in memory only.
  HKEY_CURRENT_CONFIG = -2147483643,    ///< 0x80000005: the current configuration.
  HKEY_DYN_DATA = -2147483642,          ///< 0x80000006: in memory only.
};

/// The types of a value. A host may pass any other Int32 too.
enum RegTypeEnum : Int32 {
  REG_NONE = 0,    ///< Of `Registry::SaveValue`: the type that goes with the value. Never written.
  REG_SZ = 1,      ///< Text, read back as a String.
  REG_DWORD = 4,   ///< A whole number of 32 bits, read back as an Int32.
  REG_BINARY = 3,  ///< Bytes, read back as an array of bytes.
};

/// Whose settings `Registry::InitApp` selects.
enum RegModeEnum : Int32 {
  qlWinRegCurrentUser = 0,   ///< The user's: HKEY_CURRENT_USER.
  qlWinRegLocalMachine = 1,  ///< The machine's: HKEY_LOCAL_MACHINE, as any number but 0.
};

}  // namespace quorl
