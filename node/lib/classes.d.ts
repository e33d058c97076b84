// Generated from docs/quorl.json by tools/generate.mjs; do not edit.

import type { Argument, ByRef, Currency, DateTime, Named, QuorlObject, Value } from "../index.js";

export declare const AlignentEnum: Readonly<{
  qlAlignLeft: 0;
  qlAlignRight: 1;
  qlAlignCenter: 2;
  qlAlignGeneral: 3;
}>;
export type AlignentEnum = (typeof AlignentEnum)[keyof typeof AlignentEnum];
export declare const qlAlignLeft: 0;
export declare const qlAlignRight: 1;
export declare const qlAlignCenter: 2;
export declare const qlAlignGeneral: 3;

export declare const RegionalItemEnum: Readonly<{
  riNumDecimalChar: 0;
  riNumThousandChar: 1;
  riMonDecimalChar: 2;
  riMonThousandChar: 3;
}>;
export type RegionalItemEnum = (typeof RegionalItemEnum)[keyof typeof RegionalItemEnum];
export declare const riNumDecimalChar: 0;
export declare const riNumThousandChar: 1;
export declare const riMonDecimalChar: 2;
export declare const riMonThousandChar: 3;

export declare const HKeyEnum: Readonly<{
  HKEY_CLASSES_ROOT: -2147483648;
  HKEY_CURRENT_USER: -2147483647;
  HKEY_LOCAL_MACHINE: -2147483646;
  HKEY_USERS: -2147483645;
  HKEY_PERFORMANCE_DATA: -2147483644;
  HKEY_CURRENT_CONFIG: -2147483643;
  HKEY_DYN_DATA: -2147483642;
}>;
export type HKeyEnum = (typeof HKeyEnum)[keyof typeof HKeyEnum];
export declare const HKEY_CLASSES_ROOT: -2147483648;
export declare const HKEY_CURRENT_USER: -2147483647;
export declare const HKEY_LOCAL_MACHINE: -2147483646;
export declare const HKEY_USERS: -2147483645;
export declare const HKEY_PERFORMANCE_DATA: -2147483644;
export declare const HKEY_CURRENT_CONFIG: -2147483643;
export declare const HKEY_DYN_DATA: -2147483642;

export declare const RegTypeEnum: Readonly<{
  REG_NONE: 0;
  REG_SZ: 1;
  REG_DWORD: 4;
  REG_BINARY: 3;
}>;
export type RegTypeEnum = (typeof RegTypeEnum)[keyof typeof RegTypeEnum];
export declare const REG_NONE: 0;
export declare const REG_SZ: 1;
export declare const REG_DWORD: 4;
export declare const REG_BINARY: 3;

export declare const RegModeEnum: Readonly<{
  qlWinRegCurrentUser: 0;
  qlWinRegLocalMachine: 1;
}>;
export type RegModeEnum = (typeof RegModeEnum)[keyof typeof RegModeEnum];
export declare const qlWinRegCurrentUser: 0;
export declare const qlWinRegLocalMachine: 1;

export interface Math extends QuorlObject {
  /**
   * @param Nombredecimales 1 when left out
   */
  StdRound(Nombre: Argument, Nombredecimales?: number): Value;
  StdRound(named: Named<{ Nombre: Argument; Nombredecimales?: number }>): Value;
  StdRound(Nombre: Argument, named: Named<{ Nombredecimales?: number }>): Value;
  /**
   * @param Nombredecimales 1 when left out
   */
  FixRound(Nombre: number, Nombredecimales?: number): number;
  FixRound(named: Named<{ Nombre: number; Nombredecimales?: number }>): number;
  FixRound(Nombre: number, named: Named<{ Nombredecimales?: number }>): number;
  /**
   * Retourne la valeur arrondie supérieure au nombre de décimales spécifié.
   * @param Nombredecimales 0 when left out
   */
  RoundSup(Nombre: number, Nombredecimales?: number): number;
  RoundSup(named: Named<{ Nombre: number; Nombredecimales?: number }>): number;
  RoundSup(Nombre: number, named: Named<{ Nombredecimales?: number }>): number;
  /**
   * @param Nombredecimales 0 when left out
   */
  RoundInf(Nombre: number, Nombredecimales?: number): number;
  RoundInf(named: Named<{ Nombre: number; Nombredecimales?: number }>): number;
  RoundInf(Nombre: number, named: Named<{ Nombredecimales?: number }>): number;
  /**
   * Renvoie la valeur minimim de Expression1 et Expression2
   */
  Min(Expression1: Argument, Expression2: Argument): Value;
  Min(named: Named<{ Expression1: Argument; Expression2: Argument }>): Value;
  Min(Expression1: Argument, named: Named<{ Expression2: Argument }>): Value;
  /**
   * Renvoie la valeur maximum de Expression1 et Expression2
   */
  Max(Expression1: Argument, Expression2: Argument): Value;
  Max(named: Named<{ Expression1: Argument; Expression2: Argument }>): Value;
  Max(Expression1: Argument, named: Named<{ Expression2: Argument }>): Value;
  IsNullOrZero(Value: Argument, Default: Argument): Value;
  IsNullOrZero(named: Named<{ Value: Argument; Default: Argument }>): Value;
  IsNullOrZero(Value: Argument, named: Named<{ Default: Argument }>): Value;
  ZeroAsNull(Value: Argument): Value;
  ZeroAsNull(named: Named<{ Value: Argument }>): Value;
  ZeroOrOneAsNull(Value: Argument): Value;
  ZeroOrOneAsNull(named: Named<{ Value: Argument }>): Value;
  NullOrZeroAsOne(Value: Argument): Value;
  NullOrZeroAsOne(named: Named<{ Value: Argument }>): Value;
  /**
   * @param Nombredecimales 1 when left out
   */
  StdTruncate(Nombre: Argument, Nombredecimales?: number): Value;
  StdTruncate(named: Named<{ Nombre: Argument; Nombredecimales?: number }>): Value;
  StdTruncate(Nombre: Argument, named: Named<{ Nombredecimales?: number }>): Value;
  Round2019(Nombre: Argument): Value;
  Round2019(named: Named<{ Nombre: Argument }>): Value;
}

export interface Dates extends QuorlObject {
  /**
   * Retourne vrai si le string passé en argument est vide ou s'il représente une date valide.
   */
  IsDateOrEmpty(Text: string): boolean;
  IsDateOrEmpty(named: Named<{ Text: string }>): boolean;
}

export interface Strings extends QuorlObject {
  IsEmptyString(Text: string): boolean;
  IsEmptyString(named: Named<{ Text: string }>): boolean;
  IfIsNull(Value: Argument, ReplaceValue: Argument): Value;
  IfIsNull(named: Named<{ Value: Argument; ReplaceValue: Argument }>): Value;
  IfIsNull(Value: Argument, named: Named<{ ReplaceValue: Argument }>): Value;
  /**
   * @param PadChar " " when left out
   */
  Padl(Text: string, Length: number, PadChar?: string): string;
  Padl(named: Named<{ Text: string; Length: number; PadChar?: string }>): string;
  Padl(Text: string, named: Named<{ Length: number; PadChar?: string }>): string;
  Padl(Text: string, Length: number, named: Named<{ PadChar?: string }>): string;
  /**
   * @param PadChar " " when left out
   */
  Padr(Text: string, Length: number, PadChar?: string): string;
  Padr(named: Named<{ Text: string; Length: number; PadChar?: string }>): string;
  Padr(Text: string, named: Named<{ Length: number; PadChar?: string }>): string;
  Padr(Text: string, Length: number, named: Named<{ PadChar?: string }>): string;
  Pluriel(Text: string): string;
  Pluriel(named: Named<{ Text: string }>): string;
  ProperCase(Text: string): string;
  ProperCase(named: Named<{ Text: string }>): string;
  NbrTokens(Text: string, Separator: string): string;
  NbrTokens(named: Named<{ Text: string; Separator: string }>): string;
  NbrTokens(Text: string, named: Named<{ Separator: string }>): string;
  /**
   * @param Separator " " when left out
   * @param Index 1 when left out
   */
  GetToken(Text: string, Separator?: string, Index?: number): string;
  GetToken(named: Named<{ Text: string; Separator?: string; Index?: number }>): string;
  GetToken(Text: string, named: Named<{ Separator?: string; Index?: number }>): string;
  GetToken(Text: string, Separator: string, named: Named<{ Index?: number }>): string;
  StrCount(Text: string, SubString: string): number;
  StrCount(named: Named<{ Text: string; SubString: string }>): number;
  StrCount(Text: string, named: Named<{ SubString: string }>): number;
  StrTran(Text: string, OldSubString: string, NewSubString: string): string;
  StrTran(named: Named<{ Text: string; OldSubString: string; NewSubString: string }>): string;
  StrTran(Text: string, named: Named<{ OldSubString: string; NewSubString: string }>): string;
  StrTran(Text: string, OldSubString: string, named: Named<{ NewSubString: string }>): string;
  AphpaNumericOf(Text: string): string;
  AphpaNumericOf(named: Named<{ Text: string }>): string;
  DigitsOf(Text: string): string;
  DigitsOf(named: Named<{ Text: string }>): string;
  WinVal(Text: string): number;
  WinVal(named: Named<{ Text: string }>): number;
  AlphpaNumericOf(Text: string): string;
  AlphpaNumericOf(named: Named<{ Text: string }>): string;
  AlphpabeticOf(Text: string): string;
  AlphpabeticOf(named: Named<{ Text: string }>): string;
  /**
   * @param Char " " when left out
   */
  RTrimEx(Text: string, Char?: string): string;
  RTrimEx(named: Named<{ Text: string; Char?: string }>): string;
  RTrimEx(Text: string, named: Named<{ Char?: string }>): string;
  /**
   * @param Char " " when left out
   */
  LTrimEx(Text: string, Char?: string): string;
  LTrimEx(named: Named<{ Text: string; Char?: string }>): string;
  LTrimEx(Text: string, named: Named<{ Char?: string }>): string;
  IsVoyelle(Text: string): boolean;
  IsVoyelle(named: Named<{ Text: string }>): boolean;
  /**
   * @param nStart 1 when left out
   * @param nCount 0 when left out
   */
  IndexOf(cText: string, cSubString: string, nStart?: number, nCount?: number): number;
  IndexOf(named: Named<{ cText: string; cSubString: string; nStart?: number; nCount?: number }>): number;
  IndexOf(cText: string, named: Named<{ cSubString: string; nStart?: number; nCount?: number }>): number;
  IndexOf(cText: string, cSubString: string, named: Named<{ nStart?: number; nCount?: number }>): number;
  IndexOf(cText: string, cSubString: string, nStart: number, named: Named<{ nCount?: number }>): number;
  /**
   * @param nStart 1 when left out
   * @param nCount 0 when left out
   */
  Contains(cText: string, cSubString: string, nStart?: number, nCount?: number): boolean;
  Contains(named: Named<{ cText: string; cSubString: string; nStart?: number; nCount?: number }>): boolean;
  Contains(cText: string, named: Named<{ cSubString: string; nStart?: number; nCount?: number }>): boolean;
  Contains(cText: string, cSubString: string, named: Named<{ nStart?: number; nCount?: number }>): boolean;
  Contains(cText: string, cSubString: string, nStart: number, named: Named<{ nCount?: number }>): boolean;
  /**
   * @param nStart 1 when left out
   * @param nCount 0 when left out
   */
  IndexOfAny(cText: string, cAnyOf: string, nStart?: number, nCount?: number): number;
  IndexOfAny(named: Named<{ cText: string; cAnyOf: string; nStart?: number; nCount?: number }>): number;
  IndexOfAny(cText: string, named: Named<{ cAnyOf: string; nStart?: number; nCount?: number }>): number;
  IndexOfAny(cText: string, cAnyOf: string, named: Named<{ nStart?: number; nCount?: number }>): number;
  IndexOfAny(cText: string, cAnyOf: string, nStart: number, named: Named<{ nCount?: number }>): number;
  /**
   * @param nStart 1 when left out
   * @param nCount 0 when left out
   */
  ContainsAny(cText: string, cAnyOf: string, nStart?: number, nCount?: number): boolean;
  ContainsAny(named: Named<{ cText: string; cAnyOf: string; nStart?: number; nCount?: number }>): boolean;
  ContainsAny(cText: string, named: Named<{ cAnyOf: string; nStart?: number; nCount?: number }>): boolean;
  ContainsAny(cText: string, cAnyOf: string, named: Named<{ nStart?: number; nCount?: number }>): boolean;
  ContainsAny(cText: string, cAnyOf: string, nStart: number, named: Named<{ nCount?: number }>): boolean;
  IsDigits(Text: string): boolean;
  IsDigits(named: Named<{ Text: string }>): boolean;
  TruncateMiddle(Text: string, Length: number, DotsPosition?: number): string;
  TruncateMiddle(named: Named<{ Text: string; Length: number; DotsPosition?: number }>): string;
  TruncateMiddle(Text: string, named: Named<{ Length: number; DotsPosition?: number }>): string;
  TruncateMiddle(Text: string, Length: number, named: Named<{ DotsPosition?: number }>): string;
}

export interface DbLib extends QuorlObject {
  FieldPos(FieldName: string, Fields: Argument): number;
  FieldPos(named: Named<{ FieldName: string; Fields: Argument }>): number;
  FieldPos(FieldName: string, named: Named<{ Fields: Argument }>): number;
  StrFieldValue(FieldValue: Argument): string;
  StrFieldValue(named: Named<{ FieldValue: Argument }>): string;
  GuidFieldValue(GUID: Argument): string;
  GuidFieldValue(named: Named<{ GUID: Argument }>): string;
  NumFieldValue(FieldValue: Argument): Value;
  NumFieldValue(named: Named<{ FieldValue: Argument }>): Value;
  DateFieldValue(FieldValue: Argument): DateTime;
  DateFieldValue(named: Named<{ FieldValue: Argument }>): DateTime;
  StrDateFieldValue(FieldValue: Argument): string;
  StrDateFieldValue(named: Named<{ FieldValue: Argument }>): string;
  BoolFieldValue(FieldValue: Argument): boolean;
  BoolFieldValue(named: Named<{ FieldValue: Argument }>): boolean;
  TriStateFieldValue(FieldValue: Argument): number;
  TriStateFieldValue(named: Named<{ FieldValue: Argument }>): number;
  StrToField(Text: string): Value;
  StrToField(named: Named<{ Text: string }>): Value;
  StrGuidToField(Text: string): Value;
  StrGuidToField(named: Named<{ Text: string }>): Value;
  StrNumToField(Text: string): Value;
  StrNumToField(named: Named<{ Text: string }>): Value;
  StrDateToField(Text: string): Value;
  StrDateToField(named: Named<{ Text: string }>): Value;
  TriStateToBoolField(NumValue: number): Value;
  TriStateToBoolField(named: Named<{ NumValue: number }>): Value;
  DotStrFieldValue(FieldValue: Argument): string;
  DotStrFieldValue(named: Named<{ FieldValue: Argument }>): string;
  DotStrNumToField(Text: string): Value;
  DotStrNumToField(named: Named<{ Text: string }>): Value;
  DuplicateQuotte(Text: string): string;
  DuplicateQuotte(named: Named<{ Text: string }>): string;
  SpaceIfEmptyOrNull(xVar: Argument): string;
  SpaceIfEmptyOrNull(named: Named<{ xVar: Argument }>): string;
}

export interface RollBuffer extends QuorlObject {
  BufferSize: number;
  readonly Count: number;
  Index: number;
  get CurrentItem(): Value;
  set CurrentItem(value: Argument);
  Items(Index: number): Value;
  Items(named: Named<{ Index: number }>): Value;
  readonly BOF: boolean;
  readonly OnFirst: boolean;
  readonly OnLast: boolean;
  readonly EOF: boolean;
  Clear(): void;
  AddItem(Item: Argument): void;
  AddItem(named: Named<{ Item: Argument }>): void;
  MoveFirst(): void;
  MoveLast(): void;
  MoveNext(): void;
  MovePrevious(): void;
}

export interface ComboBoxEx extends QuorlObject {
  /**
   * @param Length 0 when left out
   */
  CmbSelectMatchString(Combo: object | null, Text: string, Length?: number): void;
  CmbSelectMatchString(named: Named<{ Combo: object | null; Text: string; Length?: number }>): void;
  CmbSelectMatchString(Combo: object | null, named: Named<{ Text: string; Length?: number }>): void;
  CmbSelectMatchString(Combo: object | null, Text: string, named: Named<{ Length?: number }>): void;
  /**
   * @param Index 1 when left out
   */
  CmbSelectMatchToken(Combo: object | null, Text: string, Index?: number): void;
  CmbSelectMatchToken(named: Named<{ Combo: object | null; Text: string; Index?: number }>): void;
  CmbSelectMatchToken(Combo: object | null, named: Named<{ Text: string; Index?: number }>): void;
  CmbSelectMatchToken(Combo: object | null, Text: string, named: Named<{ Index?: number }>): void;
  /**
   * @param Start 1 when left out
   * @param Length 0 when left out
   */
  CmbSelectMatchSubString(Combo: object | null, Text: string, Start?: number, Length?: number): void;
  CmbSelectMatchSubString(named: Named<{ Combo: object | null; Text: string; Start?: number; Length?: number }>): void;
  CmbSelectMatchSubString(Combo: object | null, named: Named<{ Text: string; Start?: number; Length?: number }>): void;
  CmbSelectMatchSubString(Combo: object | null, Text: string, named: Named<{ Start?: number; Length?: number }>): void;
  CmbSelectMatchSubString(Combo: object | null, Text: string, Start: number, named: Named<{ Length?: number }>): void;
  CmbSelectItemData(Combo: object | null, ItemData: number): void;
  CmbSelectItemData(named: Named<{ Combo: object | null; ItemData: number }>): void;
  CmbSelectItemData(Combo: object | null, named: Named<{ ItemData: number }>): void;
  CmbCurrentItemData(Combo: object | null, DefValue: number): number;
  CmbCurrentItemData(named: Named<{ Combo: object | null; DefValue: number }>): number;
  CmbCurrentItemData(Combo: object | null, named: Named<{ DefValue: number }>): number;
}

export interface Forms extends QuorlObject {
  /**
   * @param Width 0 when left out
   * @param Height 0 when left out
   */
  InitFormSettings(Frm: object | null, Container?: object | null, Width?: number, Height?: number): void;
  InitFormSettings(named: Named<{ Frm: object | null; Container?: object | null; Width?: number; Height?: number }>): void;
  InitFormSettings(Frm: object | null, named: Named<{ Container?: object | null; Width?: number; Height?: number }>): void;
  InitFormSettings(Frm: object | null, Container: object | null, named: Named<{ Width?: number; Height?: number }>): void;
  InitFormSettings(Frm: object | null, Container: object | null, Width: number, named: Named<{ Height?: number }>): void;
  SaveFormSettings(Reg: Registry | null, Frm: object | null, FrmName?: Argument): void;
  SaveFormSettings(named: Named<{ Reg: Registry | null; Frm: object | null; FrmName?: Argument }>): void;
  SaveFormSettings(Reg: Registry | null, named: Named<{ Frm: object | null; FrmName?: Argument }>): void;
  SaveFormSettings(Reg: Registry | null, Frm: object | null, named: Named<{ FrmName?: Argument }>): void;
  GetFormSettings(Reg: Registry | null, Frm: object | null, FrmName?: Argument): void;
  GetFormSettings(named: Named<{ Reg: Registry | null; Frm: object | null; FrmName?: Argument }>): void;
  GetFormSettings(Reg: Registry | null, named: Named<{ Frm: object | null; FrmName?: Argument }>): void;
  GetFormSettings(Reg: Registry | null, Frm: object | null, named: Named<{ FrmName?: Argument }>): void;
}

export interface Global extends QuorlObject {
}

export interface Regional extends QuorlObject {
  readonly DecimalChar: string;
  readonly ThousandChar: string;
  GetRegional(): void;
  ConvertDecimalPoint(KeyAscii: ByRef<number>): void;
  ConvertDecimalPoint(named: Named<{ KeyAscii: ByRef<number> }>): void;
  readonly NumDecimalChar: string;
  readonly NumThousandChar: string;
  readonly MonDecimalChar: string;
  readonly MonThousandChar: string;
  CheckRegional(): boolean;
  SetRegional(regionalItem: RegionalItemEnum, Value: string): void;
  SetRegional(named: Named<{ regionalItem: RegionalItemEnum; Value: string }>): void;
  SetRegional(regionalItem: RegionalItemEnum, named: Named<{ Value: string }>): void;
}

export interface GUIDs extends QuorlObject {
  CreateGUID(): string;
  GetNullGUID(): string;
  GetZeroGUID(): string;
  GetNumGUID(Number: number): string;
  GetNumGUID(named: Named<{ Number: number }>): string;
}

export interface Registry extends QuorlObject {
  HKey: HKeyEnum;
  RootKeyName: string;
  InitAbsolute(New_HKey: HKeyEnum, New_RootKeyName: string): void;
  InitAbsolute(named: Named<{ New_HKey: HKeyEnum; New_RootKeyName: string }>): void;
  InitAbsolute(New_HKey: HKeyEnum, named: Named<{ New_RootKeyName: string }>): void;
  /**
   * @param Mode 0 when left out
   */
  InitApp(Compagny: string, AppName: string, Mode?: RegModeEnum): void;
  InitApp(named: Named<{ Compagny: string; AppName: string; Mode?: RegModeEnum }>): void;
  InitApp(Compagny: string, named: Named<{ AppName: string; Mode?: RegModeEnum }>): void;
  InitApp(Compagny: string, AppName: string, named: Named<{ Mode?: RegModeEnum }>): void;
  KeyFullName(KeyName: Argument): string;
  KeyFullName(named: Named<{ KeyName: Argument }>): string;
  KeyExists(KeyName: Argument): boolean;
  KeyExists(named: Named<{ KeyName: Argument }>): boolean;
  GetValue(KeyName: string, ValueName: string, Default: Argument): Value;
  GetValue(named: Named<{ KeyName: string; ValueName: string; Default: Argument }>): Value;
  GetValue(KeyName: string, named: Named<{ ValueName: string; Default: Argument }>): Value;
  GetValue(KeyName: string, ValueName: string, named: Named<{ Default: Argument }>): Value;
  /**
   * @param dataType 0 when left out
   */
  SaveValue(KeyName: string, ValueName: string, Value: Argument, dataType?: RegTypeEnum): void;
  SaveValue(named: Named<{ KeyName: string; ValueName: string; Value: Argument; dataType?: RegTypeEnum }>): void;
  SaveValue(KeyName: string, named: Named<{ ValueName: string; Value: Argument; dataType?: RegTypeEnum }>): void;
  SaveValue(KeyName: string, ValueName: string, named: Named<{ Value: Argument; dataType?: RegTypeEnum }>): void;
  SaveValue(KeyName: string, ValueName: string, Value: Argument, named: Named<{ dataType?: RegTypeEnum }>): void;
  GetAllValues(KeyName: string): Value;
  GetAllValues(named: Named<{ KeyName: string }>): Value;
  /**
   * @param Levels 1 when left out
   */
  GetSubKeys(KeyName: string, Levels?: number): Value;
  GetSubKeys(named: Named<{ KeyName: string; Levels?: number }>): Value;
  GetSubKeys(KeyName: string, named: Named<{ Levels?: number }>): Value;
  DeleteKey(KeyName: string): void;
  DeleteKey(named: Named<{ KeyName: string }>): void;
  DeleteValue(KeyName: string, ValueName: string): void;
  DeleteValue(named: Named<{ KeyName: string; ValueName: string }>): void;
  DeleteValue(KeyName: string, named: Named<{ ValueName: string }>): void;
  CopyKey(SourceKeyName: string, DestinationKeyName: string): void;
  CopyKey(named: Named<{ SourceKeyName: string; DestinationKeyName: string }>): void;
  CopyKey(SourceKeyName: string, named: Named<{ DestinationKeyName: string }>): void;
}

export interface Money extends QuorlObject {
  Value: Currency;
  Unit: string;
  Units: string;
  SubUnit: string;
  SubUnits: string;
  UnitKind: number;
  SubUnitKind: number;
  SubUnitRow: number;
  Language: string;
  ToText(Value: Currency): string;
  ToText(named: Named<{ Value: Currency }>): string;
}

/** The library's classes by name. */
export interface Classes {
  /** The one instance of this global class. */
  readonly Math: Math;
  /** The one instance of this global class. */
  readonly Dates: Dates;
  /** The one instance of this global class. */
  readonly Strings: Strings;
  /** The one instance of this global class. */
  readonly DbLib: DbLib;
  readonly RollBuffer: new () => RollBuffer;
  /** The one instance of this global class. */
  readonly ComboBoxEx: ComboBoxEx;
  /** The one instance of this global class. */
  readonly Forms: Forms;
  /** The one instance of this global class. */
  readonly Global: Global;
  /** The one instance of this global class. */
  readonly Regional: Regional;
  /** The one instance of this global class. */
  readonly GUIDs: GUIDs;
  readonly Registry: new () => Registry;
  readonly Money: new () => Money;
}

/** Every class by name, for a further instance. */
export interface Instances {
  Math: Math;
  Dates: Dates;
  Strings: Strings;
  DbLib: DbLib;
  RollBuffer: RollBuffer;
  ComboBoxEx: ComboBoxEx;
  Forms: Forms;
  Global: Global;
  Regional: Regional;
  GUIDs: GUIDs;
  Registry: Registry;
  Money: Money;
}
