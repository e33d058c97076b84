// The published enumerations: names and values, in listing order.
#pragma once

#include <array>
#include <span>

#include "quorl/frame/internal/marshal.hpp"
#include "quorl/runtime/enumerations.hpp"

namespace quorl::frame {

struct EnumeratorRow {
  StringView name;
  Int32 value;
};

struct EnumerationRow {
  StringView name;
  std::span<const EnumeratorRow> members;
};

#define QUORL_ENUMERATION(Enumeration)                    \
  template <>                                             \
  struct EnumerationName<Enumeration> {                   \
    static constexpr StringView kName = u## #Enumeration; \
  };
QUORL_ENUMERATION(AlignentEnum)
QUORL_ENUMERATION(RegionalItemEnum)
QUORL_ENUMERATION(HKeyEnum)
QUORL_ENUMERATION(RegTypeEnum)
QUORL_ENUMERATION(RegModeEnum)
#undef QUORL_ENUMERATION

// An enumerator's name and value from the enumerator itself.
#define QUORL_ENUMERATOR(member) \
  EnumeratorRow { u## #member, member }

inline constexpr std::array kAlignentMembers{
    QUORL_ENUMERATOR(qlAlignLeft),
    QUORL_ENUMERATOR(qlAlignRight),
    QUORL_ENUMERATOR(qlAlignCenter),
    QUORL_ENUMERATOR(qlAlignGeneral),
};
inline constexpr std::array kHKeyMembers{
    QUORL_ENUMERATOR(HKEY_CLASSES_ROOT),     QUORL_ENUMERATOR(HKEY_CURRENT_USER),
    QUORL_ENUMERATOR(HKEY_LOCAL_MACHINE),    QUORL_ENUMERATOR(HKEY_USERS),
    QUORL_ENUMERATOR(HKEY_PERFORMANCE_DATA), QUORL_ENUMERATOR(HKEY_CURRENT_CONFIG),
    QUORL_ENUMERATOR(HKEY_DYN_DATA),
};
inline constexpr std::array kRegTypeMembers{
    QUORL_ENUMERATOR(REG_NONE),
    QUORL_ENUMERATOR(REG_SZ),
    QUORL_ENUMERATOR(REG_DWORD),
    QUORL_ENUMERATOR(REG_BINARY),
};
inline constexpr std::array kRegModeMembers{
    QUORL_ENUMERATOR(qlWinRegCurrentUser),
    QUORL_ENUMERATOR(qlWinRegLocalMachine),
};
inline constexpr std::array kRegionalItemMembers{
    QUORL_ENUMERATOR(riNumDecimalChar),
    QUORL_ENUMERATOR(riNumThousandChar),
    QUORL_ENUMERATOR(riMonDecimalChar),
    QUORL_ENUMERATOR(riMonThousandChar),
};

#undef QUORL_ENUMERATOR

inline constexpr std::array kEnumerations{
    EnumerationRow{EnumerationName<AlignentEnum>::kName, kAlignentMembers},
    EnumerationRow{EnumerationName<RegionalItemEnum>::kName, kRegionalItemMembers},
    EnumerationRow{EnumerationName<HKeyEnum>::kName, kHKeyMembers},
    EnumerationRow{EnumerationName<RegTypeEnum>::kName, kRegTypeMembers},
    EnumerationRow{EnumerationName<RegModeEnum>::kName, kRegModeMembers},
};

}  // namespace quorl::frame
