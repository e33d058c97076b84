// Generated from docs/quorl.json by tools/generate.mjs; do not edit.

export const AlignentEnum = Object.freeze({
  qlAlignLeft: 0,
  qlAlignRight: 1,
  qlAlignCenter: 2,
  qlAlignGeneral: 3,
});
export const { qlAlignLeft, qlAlignRight, qlAlignCenter, qlAlignGeneral } = AlignentEnum;

export const RegionalItemEnum = Object.freeze({
  riNumDecimalChar: 0,
  riNumThousandChar: 1,
  riMonDecimalChar: 2,
  riMonThousandChar: 3,
});
export const { riNumDecimalChar, riNumThousandChar, riMonDecimalChar, riMonThousandChar } = RegionalItemEnum;

export const HKeyEnum = Object.freeze({
  HKEY_CLASSES_ROOT: -2147483648,
  HKEY_CURRENT_USER: -2147483647,
  HKEY_LOCAL_MACHINE: -2147483646,
  HKEY_USERS: -2147483645,
  HKEY_PERFORMANCE_DATA: -2147483644,
  HKEY_CURRENT_CONFIG: -2147483643,
  HKEY_DYN_DATA: -2147483642,
});
export const { HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_USERS, HKEY_PERFORMANCE_DATA, HKEY_CURRENT_CONFIG, HKEY_DYN_DATA } = HKeyEnum;

export const RegTypeEnum = Object.freeze({
  REG_NONE: 0,
  REG_SZ: 1,
  REG_DWORD: 4,
  REG_BINARY: 3,
});
export const { REG_NONE, REG_SZ, REG_DWORD, REG_BINARY } = RegTypeEnum;

export const RegModeEnum = Object.freeze({
  qlWinRegCurrentUser: 0,
  qlWinRegLocalMachine: 1,
});
export const { qlWinRegCurrentUser, qlWinRegLocalMachine } = RegModeEnum;
