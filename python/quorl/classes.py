"""The classes and enumerations of Quorl.

Generated from docs/quorl.json by tools/generate_python.py; do not edit.
"""

from __future__ import annotations

from datetime import datetime
from decimal import Decimal
from enum import IntEnum
from typing import Any, Type, TypeVar, Union

from ._contract import identifier
from ._objects import ItemSequence, LibraryObject, Member
from ._values import ByRef, Missing, NoObject

Enumeration = TypeVar("Enumeration", bound=IntEnum)


def _named(enumeration: Type[Enumeration], value: int) -> Union[Enumeration, int]:
    """The member of that value; a value without one stays a number."""
    try:
        return enumeration(value)
    except ValueError:
        return value


def _object(value: Any) -> Any:
    return NoObject if value is None else value


class AlignentEnum(IntEnum):
    qlAlignLeft = 0
    qlAlignRight = 1
    qlAlignCenter = 2
    qlAlignGeneral = 3


qlAlignLeft = AlignentEnum.qlAlignLeft
qlAlignRight = AlignentEnum.qlAlignRight
qlAlignCenter = AlignentEnum.qlAlignCenter
qlAlignGeneral = AlignentEnum.qlAlignGeneral


class RegionalItemEnum(IntEnum):
    riNumDecimalChar = 0
    riNumThousandChar = 1
    riMonDecimalChar = 2
    riMonThousandChar = 3


riNumDecimalChar = RegionalItemEnum.riNumDecimalChar
riNumThousandChar = RegionalItemEnum.riNumThousandChar
riMonDecimalChar = RegionalItemEnum.riMonDecimalChar
riMonThousandChar = RegionalItemEnum.riMonThousandChar


class HKeyEnum(IntEnum):
    HKEY_CLASSES_ROOT = -2147483648
    HKEY_CURRENT_USER = -2147483647
    HKEY_LOCAL_MACHINE = -2147483646
    HKEY_USERS = -2147483645
    HKEY_PERFORMANCE_DATA = -2147483644
    HKEY_CURRENT_CONFIG = -2147483643
    HKEY_DYN_DATA = -2147483642


HKEY_CLASSES_ROOT = HKeyEnum.HKEY_CLASSES_ROOT
HKEY_CURRENT_USER = HKeyEnum.HKEY_CURRENT_USER
HKEY_LOCAL_MACHINE = HKeyEnum.HKEY_LOCAL_MACHINE
HKEY_USERS = HKeyEnum.HKEY_USERS
HKEY_PERFORMANCE_DATA = HKeyEnum.HKEY_PERFORMANCE_DATA
HKEY_CURRENT_CONFIG = HKeyEnum.HKEY_CURRENT_CONFIG
HKEY_DYN_DATA = HKeyEnum.HKEY_DYN_DATA


class RegTypeEnum(IntEnum):
    REG_NONE = 0
    REG_SZ = 1
    REG_DWORD = 4
    REG_BINARY = 3


REG_NONE = RegTypeEnum.REG_NONE
REG_SZ = RegTypeEnum.REG_SZ
REG_DWORD = RegTypeEnum.REG_DWORD
REG_BINARY = RegTypeEnum.REG_BINARY


class RegModeEnum(IntEnum):
    qlWinRegCurrentUser = 0
    qlWinRegLocalMachine = 1


qlWinRegCurrentUser = RegModeEnum.qlWinRegCurrentUser
qlWinRegLocalMachine = RegModeEnum.qlWinRegLocalMachine


_Math_method_StdRound = Member("Math", "StdRound", 1, 1, ("Nombre", "Nombredecimales"))
_Math_method_FixRound = Member("Math", "FixRound", 2, 1, ("Nombre", "Nombredecimales"))
_Math_method_RoundSup = Member("Math", "RoundSup", 3, 1, ("Nombre", "Nombredecimales"))
_Math_method_RoundInf = Member("Math", "RoundInf", 4, 1, ("Nombre", "Nombredecimales"))
_Math_method_Min = Member("Math", "Min", 5, 1, ("Expression1", "Expression2"))
_Math_method_Max = Member("Math", "Max", 6, 1, ("Expression1", "Expression2"))
_Math_method_IsNullOrZero = Member("Math", "IsNullOrZero", 7, 1, ("Value", "Default"))
_Math_method_ZeroAsNull = Member("Math", "ZeroAsNull", 8, 1, ("Value",))
_Math_method_ZeroOrOneAsNull = Member("Math", "ZeroOrOneAsNull", 9, 1, ("Value",))
_Math_method_NullOrZeroAsOne = Member("Math", "NullOrZeroAsOne", 10, 1, ("Value",))
_Math_method_StdTruncate = Member("Math", "StdTruncate", 11, 1, ("Nombre", "Nombredecimales"))
_Math_method_Round2019 = Member("Math", "Round2019", 12, 1, ("Nombre",))


class Math(LibraryObject):
    """Quorl.Math 1.4: a global class: all hosts of the process share one instance."""

    __slots__ = ()
    _identifier = identifier("{6301BBFC-CDDE-4047-8A6F-7FB77E3AA15C}")
    _interface = identifier("{7323691B-C1B8-4582-9D2F-2E8D4CC2ACEA}")
    _names = {
        "stdround": "StdRound",
        "fixround": "FixRound",
        "roundsup": "RoundSup",
        "roundinf": "RoundInf",
        "min": "Min",
        "max": "Max",
        "isnullorzero": "IsNullOrZero",
        "zeroasnull": "ZeroAsNull",
        "zerooroneasnull": "ZeroOrOneAsNull",
        "nullorzeroasone": "NullOrZeroAsOne",
        "stdtruncate": "StdTruncate",
        "round2019": "Round2019",
    }

    def StdRound(self, Nombre: Any, Nombredecimales: int = 1) -> Any:
        """Method of Math.

        Nombre: Variant
        Nombredecimales: Int16, 1 when left out
        Gives Variant
        """
        return self._call(_Math_method_StdRound, (Nombre, Nombredecimales))

    def FixRound(self, Nombre: float, Nombredecimales: int = 1) -> float:
        """Method of Math.

        Nombre: Double
        Nombredecimales: Int16, 1 when left out
        Gives Double
        """
        return self._call(_Math_method_FixRound, (Nombre, Nombredecimales))

    def RoundSup(self, Nombre: float, Nombredecimales: int = 0) -> float:
        """Retourne la valeur arrondie supérieure au nombre de décimales spécifié.

        Nombre: Double
        Nombredecimales: Int16, 0 when left out
        Gives Double
        """
        return self._call(_Math_method_RoundSup, (Nombre, Nombredecimales))

    def RoundInf(self, Nombre: float, Nombredecimales: int = 0) -> float:
        """Method of Math.

        Nombre: Double
        Nombredecimales: Int16, 0 when left out
        Gives Double
        """
        return self._call(_Math_method_RoundInf, (Nombre, Nombredecimales))

    def Min(self, Expression1: Any, Expression2: Any) -> Any:
        """Renvoie la valeur minimim de Expression1 et Expression2

        Expression1: Variant
        Expression2: Variant
        Gives Variant
        """
        return self._call(_Math_method_Min, (Expression1, Expression2))

    def Max(self, Expression1: Any, Expression2: Any) -> Any:
        """Renvoie la valeur maximum de Expression1 et Expression2

        Expression1: Variant
        Expression2: Variant
        Gives Variant
        """
        return self._call(_Math_method_Max, (Expression1, Expression2))

    def IsNullOrZero(self, Value: Any, Default: Any) -> Any:
        """Method of Math.

        Value: Variant
        Default: Variant
        Gives Variant
        """
        return self._call(_Math_method_IsNullOrZero, (Value, Default))

    def ZeroAsNull(self, Value: Any) -> Any:
        """Method of Math.

        Value: Variant
        Gives Variant
        """
        return self._call(_Math_method_ZeroAsNull, (Value,))

    def ZeroOrOneAsNull(self, Value: Any) -> Any:
        """Method of Math.

        Value: Variant
        Gives Variant
        """
        return self._call(_Math_method_ZeroOrOneAsNull, (Value,))

    def NullOrZeroAsOne(self, Value: Any) -> Any:
        """Method of Math.

        Value: Variant
        Gives Variant
        """
        return self._call(_Math_method_NullOrZeroAsOne, (Value,))

    def StdTruncate(self, Nombre: Any, Nombredecimales: int = 1) -> Any:
        """Method of Math.

        Nombre: Variant
        Nombredecimales: Int16, 1 when left out
        Gives Variant
        """
        return self._call(_Math_method_StdTruncate, (Nombre, Nombredecimales))

    def Round2019(self, Nombre: Any) -> Any:
        """Method of Math.

        Nombre: Variant
        Gives Variant
        """
        return self._call(_Math_method_Round2019, (Nombre,))


_Dates_method_IsDateOrEmpty = Member("Dates", "IsDateOrEmpty", 1, 1, ("Text",))


class Dates(LibraryObject):
    """Quorl.Dates 1.0: a global class: all hosts of the process share one instance."""

    __slots__ = ()
    _identifier = identifier("{64CCDCF9-43C4-42F3-A291-20BA6CFB93FE}")
    _interface = identifier("{37D047C9-7357-4153-A4DA-56526822B375}")
    _names = {
        "isdateorempty": "IsDateOrEmpty",
    }

    def IsDateOrEmpty(self, Text: str) -> bool:
        """Retourne vrai si le string passé en argument est vide ou s'il représente une date valide.

        Text: String
        Gives Boolean
        """
        return self._call(_Dates_method_IsDateOrEmpty, (Text,))


_Strings_method_IsEmptyString = Member("Strings", "IsEmptyString", 1, 1, ("Text",))
_Strings_method_IfIsNull = Member("Strings", "IfIsNull", 2, 1, ("Value", "ReplaceValue"))
_Strings_method_Padl = Member("Strings", "Padl", 3, 1, ("Text", "Length", "PadChar"))
_Strings_method_Padr = Member("Strings", "Padr", 4, 1, ("Text", "Length", "PadChar"))
_Strings_method_Pluriel = Member("Strings", "Pluriel", 5, 1, ("Text",))
_Strings_method_ProperCase = Member("Strings", "ProperCase", 6, 1, ("Text",))
_Strings_method_NbrTokens = Member("Strings", "NbrTokens", 7, 1, ("Text", "Separator"))
_Strings_method_GetToken = Member("Strings", "GetToken", 8, 1, ("Text", "Separator", "Index"))
_Strings_method_StrCount = Member("Strings", "StrCount", 9, 1, ("Text", "SubString"))
_Strings_method_StrTran = Member("Strings", "StrTran", 10, 1, ("Text", "OldSubString", "NewSubString"))
_Strings_method_AphpaNumericOf = Member("Strings", "AphpaNumericOf", 11, 1, ("Text",))
_Strings_method_DigitsOf = Member("Strings", "DigitsOf", 12, 1, ("Text",))
_Strings_method_WinVal = Member("Strings", "WinVal", 13, 1, ("Text",))
_Strings_method_AlphpaNumericOf = Member("Strings", "AlphpaNumericOf", 14, 1, ("Text",))
_Strings_method_AlphpabeticOf = Member("Strings", "AlphpabeticOf", 15, 1, ("Text",))
_Strings_method_RTrimEx = Member("Strings", "RTrimEx", 16, 1, ("Text", "Char"))
_Strings_method_LTrimEx = Member("Strings", "LTrimEx", 17, 1, ("Text", "Char"))
_Strings_method_IsVoyelle = Member("Strings", "IsVoyelle", 18, 1, ("Text",))
_Strings_method_IndexOf = Member("Strings", "IndexOf", 19, 1, ("cText", "cSubString", "nStart", "nCount"))
_Strings_method_Contains = Member("Strings", "Contains", 20, 1, ("cText", "cSubString", "nStart", "nCount"))
_Strings_method_IndexOfAny = Member("Strings", "IndexOfAny", 21, 1, ("cText", "cAnyOf", "nStart", "nCount"))
_Strings_method_ContainsAny = Member("Strings", "ContainsAny", 22, 1, ("cText", "cAnyOf", "nStart", "nCount"))
_Strings_method_IsDigits = Member("Strings", "IsDigits", 23, 1, ("Text",))
_Strings_method_TruncateMiddle = Member("Strings", "TruncateMiddle", 24, 1, ("Text", "Length", "DotsPosition"))


class Strings(LibraryObject):
    """Quorl.Strings 1.6: a global class: all hosts of the process share one instance."""

    __slots__ = ()
    _identifier = identifier("{98DAA4BF-9001-4DA6-97B6-CBDB5E6AEA04}")
    _interface = identifier("{A40F8266-96AA-4AED-B7E1-ED68EDB5A50E}")
    _names = {
        "isemptystring": "IsEmptyString",
        "ifisnull": "IfIsNull",
        "padl": "Padl",
        "padr": "Padr",
        "pluriel": "Pluriel",
        "propercase": "ProperCase",
        "nbrtokens": "NbrTokens",
        "gettoken": "GetToken",
        "strcount": "StrCount",
        "strtran": "StrTran",
        "aphpanumericof": "AphpaNumericOf",
        "digitsof": "DigitsOf",
        "winval": "WinVal",
        "alphpanumericof": "AlphpaNumericOf",
        "alphpabeticof": "AlphpabeticOf",
        "rtrimex": "RTrimEx",
        "ltrimex": "LTrimEx",
        "isvoyelle": "IsVoyelle",
        "indexof": "IndexOf",
        "contains": "Contains",
        "indexofany": "IndexOfAny",
        "containsany": "ContainsAny",
        "isdigits": "IsDigits",
        "truncatemiddle": "TruncateMiddle",
    }

    def IsEmptyString(self, Text: str) -> bool:
        """Method of Strings.

        Text: String
        Gives Boolean
        """
        return self._call(_Strings_method_IsEmptyString, (Text,))

    def IfIsNull(self, Value: Any, ReplaceValue: Any) -> Any:
        """Method of Strings.

        Value: Variant
        ReplaceValue: Variant
        Gives Variant
        """
        return self._call(_Strings_method_IfIsNull, (Value, ReplaceValue))

    def Padl(self, Text: str, Length: int, PadChar: str = ' ') -> str:
        """Method of Strings.

        Text: String
        Length: Int16
        PadChar: String, ' ' when left out
        Gives String
        """
        return self._call(_Strings_method_Padl, (Text, Length, PadChar))

    def Padr(self, Text: str, Length: int, PadChar: str = ' ') -> str:
        """Method of Strings.

        Text: String
        Length: Int16
        PadChar: String, ' ' when left out
        Gives String
        """
        return self._call(_Strings_method_Padr, (Text, Length, PadChar))

    def Pluriel(self, Text: str) -> str:
        """Method of Strings.

        Text: String
        Gives String
        """
        return self._call(_Strings_method_Pluriel, (Text,))

    def ProperCase(self, Text: str) -> str:
        """Method of Strings.

        Text: String
        Gives String
        """
        return self._call(_Strings_method_ProperCase, (Text,))

    def NbrTokens(self, Text: str, Separator: str) -> str:
        """Method of Strings.

        Text: String
        Separator: String
        Gives String
        """
        return self._call(_Strings_method_NbrTokens, (Text, Separator))

    def GetToken(self, Text: str, Separator: str = ' ', Index: int = 1) -> str:
        """Method of Strings.

        Text: String
        Separator: String, ' ' when left out
        Index: Int16, 1 when left out
        Gives String
        """
        return self._call(_Strings_method_GetToken, (Text, Separator, Index))

    def StrCount(self, Text: str, SubString: str) -> int:
        """Method of Strings.

        Text: String
        SubString: String
        Gives Int32
        """
        return self._call(_Strings_method_StrCount, (Text, SubString))

    def StrTran(self, Text: str, OldSubString: str, NewSubString: str) -> str:
        """Method of Strings.

        Text: String
        OldSubString: String
        NewSubString: String
        Gives String
        """
        return self._call(_Strings_method_StrTran, (Text, OldSubString, NewSubString))

    def AphpaNumericOf(self, Text: str) -> str:
        """Method of Strings.

        Text: String
        Gives String
        """
        return self._call(_Strings_method_AphpaNumericOf, (Text,))

    def DigitsOf(self, Text: str) -> str:
        """Method of Strings.

        Text: String
        Gives String
        """
        return self._call(_Strings_method_DigitsOf, (Text,))

    def WinVal(self, Text: str) -> float:
        """Method of Strings.

        Text: String
        Gives Double
        """
        return self._call(_Strings_method_WinVal, (Text,))

    def AlphpaNumericOf(self, Text: str) -> str:
        """Method of Strings.

        Text: String
        Gives String
        """
        return self._call(_Strings_method_AlphpaNumericOf, (Text,))

    def AlphpabeticOf(self, Text: str) -> str:
        """Method of Strings.

        Text: String
        Gives String
        """
        return self._call(_Strings_method_AlphpabeticOf, (Text,))

    def RTrimEx(self, Text: str, Char: str = ' ') -> str:
        """Method of Strings.

        Text: String
        Char: String, ' ' when left out
        Gives String
        """
        return self._call(_Strings_method_RTrimEx, (Text, Char))

    def LTrimEx(self, Text: str, Char: str = ' ') -> str:
        """Method of Strings.

        Text: String
        Char: String, ' ' when left out
        Gives String
        """
        return self._call(_Strings_method_LTrimEx, (Text, Char))

    def IsVoyelle(self, Text: str) -> bool:
        """Method of Strings.

        Text: String
        Gives Boolean
        """
        return self._call(_Strings_method_IsVoyelle, (Text,))

    def IndexOf(self, cText: str, cSubString: str, nStart: int = 1, nCount: int = 0) -> int:
        """Method of Strings.

        cText: String
        cSubString: String
        nStart: Int16, 1 when left out
        nCount: Int16, 0 when left out
        Gives Int16
        """
        return self._call(_Strings_method_IndexOf, (cText, cSubString, nStart, nCount))

    def Contains(self, cText: str, cSubString: str, nStart: int = 1, nCount: int = 0) -> bool:
        """Method of Strings.

        cText: String
        cSubString: String
        nStart: Int16, 1 when left out
        nCount: Int16, 0 when left out
        Gives Boolean
        """
        return self._call(_Strings_method_Contains, (cText, cSubString, nStart, nCount))

    def IndexOfAny(self, cText: str, cAnyOf: str, nStart: int = 1, nCount: int = 0) -> int:
        """Method of Strings.

        cText: String
        cAnyOf: String
        nStart: Int16, 1 when left out
        nCount: Int16, 0 when left out
        Gives Int16
        """
        return self._call(_Strings_method_IndexOfAny, (cText, cAnyOf, nStart, nCount))

    def ContainsAny(self, cText: str, cAnyOf: str, nStart: int = 1, nCount: int = 0) -> bool:
        """Method of Strings.

        cText: String
        cAnyOf: String
        nStart: Int16, 1 when left out
        nCount: Int16, 0 when left out
        Gives Boolean
        """
        return self._call(_Strings_method_ContainsAny, (cText, cAnyOf, nStart, nCount))

    def IsDigits(self, Text: str) -> bool:
        """Method of Strings.

        Text: String
        Gives Boolean
        """
        return self._call(_Strings_method_IsDigits, (Text,))

    def TruncateMiddle(self, Text: str, Length: int, DotsPosition: int = Missing) -> str:
        """Method of Strings.

        Text: String
        Length: Int16
        DotsPosition: Int16, may be left out
        Gives String
        """
        return self._call(_Strings_method_TruncateMiddle, (Text, Length, DotsPosition))


_DbLib_method_FieldPos = Member("DbLib", "FieldPos", 1, 1, ("FieldName", "Fields"))
_DbLib_method_StrFieldValue = Member("DbLib", "StrFieldValue", 2, 1, ("FieldValue",))
_DbLib_method_GuidFieldValue = Member("DbLib", "GuidFieldValue", 3, 1, ("GUID",))
_DbLib_method_NumFieldValue = Member("DbLib", "NumFieldValue", 4, 1, ("FieldValue",))
_DbLib_method_DateFieldValue = Member("DbLib", "DateFieldValue", 5, 1, ("FieldValue",))
_DbLib_method_StrDateFieldValue = Member("DbLib", "StrDateFieldValue", 6, 1, ("FieldValue",))
_DbLib_method_BoolFieldValue = Member("DbLib", "BoolFieldValue", 7, 1, ("FieldValue",))
_DbLib_method_TriStateFieldValue = Member("DbLib", "TriStateFieldValue", 8, 1, ("FieldValue",))
_DbLib_method_StrToField = Member("DbLib", "StrToField", 9, 1, ("Text",))
_DbLib_method_StrGuidToField = Member("DbLib", "StrGuidToField", 10, 1, ("Text",))
_DbLib_method_StrNumToField = Member("DbLib", "StrNumToField", 11, 1, ("Text",))
_DbLib_method_StrDateToField = Member("DbLib", "StrDateToField", 12, 1, ("Text",))
_DbLib_method_TriStateToBoolField = Member("DbLib", "TriStateToBoolField", 13, 1, ("NumValue",))
_DbLib_method_DotStrFieldValue = Member("DbLib", "DotStrFieldValue", 14, 1, ("FieldValue",))
_DbLib_method_DotStrNumToField = Member("DbLib", "DotStrNumToField", 15, 1, ("Text",))
_DbLib_method_DuplicateQuotte = Member("DbLib", "DuplicateQuotte", 16, 1, ("Text",))
_DbLib_method_SpaceIfEmptyOrNull = Member("DbLib", "SpaceIfEmptyOrNull", 17, 1, ("xVar",))


class DbLib(LibraryObject):
    """Quorl.DbLib 1.0: a global class: all hosts of the process share one instance."""

    __slots__ = ()
    _identifier = identifier("{3AD8132F-7B98-4D84-94E8-F9A811D69E6C}")
    _interface = identifier("{A6202E8E-6D49-4B63-9104-783E54FA3E74}")
    _names = {
        "fieldpos": "FieldPos",
        "strfieldvalue": "StrFieldValue",
        "guidfieldvalue": "GuidFieldValue",
        "numfieldvalue": "NumFieldValue",
        "datefieldvalue": "DateFieldValue",
        "strdatefieldvalue": "StrDateFieldValue",
        "boolfieldvalue": "BoolFieldValue",
        "tristatefieldvalue": "TriStateFieldValue",
        "strtofield": "StrToField",
        "strguidtofield": "StrGuidToField",
        "strnumtofield": "StrNumToField",
        "strdatetofield": "StrDateToField",
        "tristatetoboolfield": "TriStateToBoolField",
        "dotstrfieldvalue": "DotStrFieldValue",
        "dotstrnumtofield": "DotStrNumToField",
        "duplicatequotte": "DuplicateQuotte",
        "spaceifemptyornull": "SpaceIfEmptyOrNull",
    }

    def FieldPos(self, FieldName: str, Fields: Any) -> int:
        """Method of DbLib.

        FieldName: String
        Fields: Variant
        Gives Int16
        """
        return self._call(_DbLib_method_FieldPos, (FieldName, Fields))

    def StrFieldValue(self, FieldValue: Any) -> str:
        """Method of DbLib.

        FieldValue: Variant
        Gives String
        """
        return self._call(_DbLib_method_StrFieldValue, (FieldValue,))

    def GuidFieldValue(self, GUID: Any) -> str:
        """Method of DbLib.

        GUID: Variant
        Gives String
        """
        return self._call(_DbLib_method_GuidFieldValue, (GUID,))

    def NumFieldValue(self, FieldValue: Any) -> Any:
        """Method of DbLib.

        FieldValue: Variant
        Gives Variant
        """
        return self._call(_DbLib_method_NumFieldValue, (FieldValue,))

    def DateFieldValue(self, FieldValue: Any) -> datetime:
        """Method of DbLib.

        FieldValue: Variant
        Gives Date
        """
        return self._call(_DbLib_method_DateFieldValue, (FieldValue,))

    def StrDateFieldValue(self, FieldValue: Any) -> str:
        """Method of DbLib.

        FieldValue: Variant
        Gives String
        """
        return self._call(_DbLib_method_StrDateFieldValue, (FieldValue,))

    def BoolFieldValue(self, FieldValue: Any) -> bool:
        """Method of DbLib.

        FieldValue: Variant
        Gives Boolean
        """
        return self._call(_DbLib_method_BoolFieldValue, (FieldValue,))

    def TriStateFieldValue(self, FieldValue: Any) -> int:
        """Method of DbLib.

        FieldValue: Variant
        Gives Int16
        """
        return self._call(_DbLib_method_TriStateFieldValue, (FieldValue,))

    def StrToField(self, Text: str) -> Any:
        """Method of DbLib.

        Text: String
        Gives Variant
        """
        return self._call(_DbLib_method_StrToField, (Text,))

    def StrGuidToField(self, Text: str) -> Any:
        """Method of DbLib.

        Text: String
        Gives Variant
        """
        return self._call(_DbLib_method_StrGuidToField, (Text,))

    def StrNumToField(self, Text: str) -> Any:
        """Method of DbLib.

        Text: String
        Gives Variant
        """
        return self._call(_DbLib_method_StrNumToField, (Text,))

    def StrDateToField(self, Text: str) -> Any:
        """Method of DbLib.

        Text: String
        Gives Variant
        """
        return self._call(_DbLib_method_StrDateToField, (Text,))

    def TriStateToBoolField(self, NumValue: int) -> Any:
        """Method of DbLib.

        NumValue: Int16
        Gives Variant
        """
        return self._call(_DbLib_method_TriStateToBoolField, (NumValue,))

    def DotStrFieldValue(self, FieldValue: Any) -> str:
        """Method of DbLib.

        FieldValue: Variant
        Gives String
        """
        return self._call(_DbLib_method_DotStrFieldValue, (FieldValue,))

    def DotStrNumToField(self, Text: str) -> Any:
        """Method of DbLib.

        Text: String
        Gives Variant
        """
        return self._call(_DbLib_method_DotStrNumToField, (Text,))

    def DuplicateQuotte(self, Text: str) -> str:
        """Method of DbLib.

        Text: String
        Gives String
        """
        return self._call(_DbLib_method_DuplicateQuotte, (Text,))

    def SpaceIfEmptyOrNull(self, xVar: Any) -> str:
        """Method of DbLib.

        xVar: Variant
        Gives String
        """
        return self._call(_DbLib_method_SpaceIfEmptyOrNull, (xVar,))


_RollBuffer_get_BufferSize = Member("RollBuffer", "BufferSize", 1, 2, ())
_RollBuffer_put_BufferSize = Member("RollBuffer", "BufferSize", 1, 4, ("New_BufferSize",))
_RollBuffer_get_Count = Member("RollBuffer", "Count", 3, 2, ())
_RollBuffer_get_Index = Member("RollBuffer", "Index", 4, 2, ())
_RollBuffer_put_Index = Member("RollBuffer", "Index", 4, 4, ("New_Index",))
_RollBuffer_get_CurrentItem = Member("RollBuffer", "CurrentItem", 6, 2, ())
_RollBuffer_put_CurrentItem = Member("RollBuffer", "CurrentItem", 6, 4, ("New_Item",))
_RollBuffer_get_Items = Member("RollBuffer", "Items", 8, 2, ("Index",))
_RollBuffer_get_BOF = Member("RollBuffer", "BOF", 9, 2, ())
_RollBuffer_get_OnFirst = Member("RollBuffer", "OnFirst", 10, 2, ())
_RollBuffer_get_OnLast = Member("RollBuffer", "OnLast", 11, 2, ())
_RollBuffer_get_EOF = Member("RollBuffer", "EOF", 12, 2, ())
_RollBuffer_method_Clear = Member("RollBuffer", "Clear", 13, 1, ())
_RollBuffer_method_AddItem = Member("RollBuffer", "AddItem", 14, 1, ("Item",))
_RollBuffer_method_MoveFirst = Member("RollBuffer", "MoveFirst", 15, 1, ())
_RollBuffer_method_MoveLast = Member("RollBuffer", "MoveLast", 16, 1, ())
_RollBuffer_method_MoveNext = Member("RollBuffer", "MoveNext", 17, 1, ())
_RollBuffer_method_MovePrevious = Member("RollBuffer", "MovePrevious", 18, 1, ())


class RollBuffer(ItemSequence):
    """Quorl.RollBuffer 1.0: each host makes instances of its own."""

    __slots__ = ()
    _identifier = identifier("{04B01553-355D-4895-A26A-3CD3D067FB90}")
    _interface = identifier("{970A1A4F-9A4F-409A-9891-859023EC99D1}")
    _names = {
        "buffersize": "BufferSize",
        "count": "Count",
        "index": "Index",
        "currentitem": "CurrentItem",
        "items": "Items",
        "bof": "BOF",
        "onfirst": "OnFirst",
        "onlast": "OnLast",
        "eof": "EOF",
        "clear": "Clear",
        "additem": "AddItem",
        "movefirst": "MoveFirst",
        "movelast": "MoveLast",
        "movenext": "MoveNext",
        "moveprevious": "MovePrevious",
    }

    @property
    def BufferSize(self) -> int:
        """Property of RollBuffer.

        Gives Int32
        """
        return self._call(_RollBuffer_get_BufferSize, ())

    @BufferSize.setter
    def BufferSize(self, New_BufferSize: int) -> None:
        """Property of RollBuffer.

        New_BufferSize: Int32
        """
        self._call(_RollBuffer_put_BufferSize, (New_BufferSize,))

    @property
    def Count(self) -> int:
        """Property of RollBuffer.

        Gives Int32
        """
        return self._call(_RollBuffer_get_Count, ())

    @property
    def Index(self) -> int:
        """Property of RollBuffer.

        Gives Int32
        """
        return self._call(_RollBuffer_get_Index, ())

    @Index.setter
    def Index(self, New_Index: int) -> None:
        """Property of RollBuffer.

        New_Index: Int32
        """
        self._call(_RollBuffer_put_Index, (New_Index,))

    @property
    def CurrentItem(self) -> Any:
        """Property of RollBuffer.

        Gives Variant
        """
        return self._call(_RollBuffer_get_CurrentItem, ())

    @CurrentItem.setter
    def CurrentItem(self, New_Item: Any) -> None:
        """Property of RollBuffer.

        New_Item: Variant
        """
        self._call(_RollBuffer_put_CurrentItem, (New_Item,))

    def Items(self, Index: int) -> Any:
        """Property of RollBuffer.

        Index: Int32
        Gives Variant
        """
        return self._call(_RollBuffer_get_Items, (Index,))

    @property
    def BOF(self) -> bool:
        """Property of RollBuffer.

        Gives Boolean
        """
        return self._call(_RollBuffer_get_BOF, ())

    @property
    def OnFirst(self) -> bool:
        """Property of RollBuffer.

        Gives Boolean
        """
        return self._call(_RollBuffer_get_OnFirst, ())

    @property
    def OnLast(self) -> bool:
        """Property of RollBuffer.

        Gives Boolean
        """
        return self._call(_RollBuffer_get_OnLast, ())

    @property
    def EOF(self) -> bool:
        """Property of RollBuffer.

        Gives Boolean
        """
        return self._call(_RollBuffer_get_EOF, ())

    def Clear(self) -> None:
        """Method of RollBuffer."""
        self._call(_RollBuffer_method_Clear, ())

    def AddItem(self, Item: Any) -> None:
        """Method of RollBuffer.

        Item: Variant
        """
        self._call(_RollBuffer_method_AddItem, (Item,))

    def MoveFirst(self) -> None:
        """Method of RollBuffer."""
        self._call(_RollBuffer_method_MoveFirst, ())

    def MoveLast(self) -> None:
        """Method of RollBuffer."""
        self._call(_RollBuffer_method_MoveLast, ())

    def MoveNext(self) -> None:
        """Method of RollBuffer."""
        self._call(_RollBuffer_method_MoveNext, ())

    def MovePrevious(self) -> None:
        """Method of RollBuffer."""
        self._call(_RollBuffer_method_MovePrevious, ())


_ComboBoxEx_method_CmbSelectMatchString = Member("ComboBoxEx", "CmbSelectMatchString", 1, 1, ("Combo", "Text", "Length"))
_ComboBoxEx_method_CmbSelectMatchToken = Member("ComboBoxEx", "CmbSelectMatchToken", 2, 1, ("Combo", "Text", "Index"))
_ComboBoxEx_method_CmbSelectMatchSubString = Member("ComboBoxEx", "CmbSelectMatchSubString", 3, 1, ("Combo", "Text", "Start", "Length"))
_ComboBoxEx_method_CmbSelectItemData = Member("ComboBoxEx", "CmbSelectItemData", 4, 1, ("Combo", "ItemData"))
_ComboBoxEx_method_CmbCurrentItemData = Member("ComboBoxEx", "CmbCurrentItemData", 5, 1, ("Combo", "DefValue"))


class ComboBoxEx(LibraryObject):
    """Quorl.ComboBoxEx 1.0: a global class: all hosts of the process share one instance."""

    __slots__ = ()
    _identifier = identifier("{EEBB6992-A8B7-4074-81B2-4C0DFBF80DF3}")
    _interface = identifier("{6A28A832-185F-40F4-8CC7-D84B0152E145}")
    _names = {
        "cmbselectmatchstring": "CmbSelectMatchString",
        "cmbselectmatchtoken": "CmbSelectMatchToken",
        "cmbselectmatchsubstring": "CmbSelectMatchSubString",
        "cmbselectitemdata": "CmbSelectItemData",
        "cmbcurrentitemdata": "CmbCurrentItemData",
    }

    def CmbSelectMatchString(self, Combo: Any, Text: str, Length: int = 0) -> None:
        """Method of ComboBoxEx.

        Combo: Object
        Text: String
        Length: Int16, 0 when left out
        """
        self._call(_ComboBoxEx_method_CmbSelectMatchString, (_object(Combo), Text, Length))

    def CmbSelectMatchToken(self, Combo: Any, Text: str, Index: int = 1) -> None:
        """Method of ComboBoxEx.

        Combo: Object
        Text: String
        Index: Int16, 1 when left out
        """
        self._call(_ComboBoxEx_method_CmbSelectMatchToken, (_object(Combo), Text, Index))

    def CmbSelectMatchSubString(self, Combo: Any, Text: str, Start: int = 1, Length: int = 0) -> None:
        """Method of ComboBoxEx.

        Combo: Object
        Text: String
        Start: Int16, 1 when left out
        Length: Int16, 0 when left out
        """
        self._call(_ComboBoxEx_method_CmbSelectMatchSubString, (_object(Combo), Text, Start, Length))

    def CmbSelectItemData(self, Combo: Any, ItemData: int) -> None:
        """Method of ComboBoxEx.

        Combo: Object
        ItemData: Int32
        """
        self._call(_ComboBoxEx_method_CmbSelectItemData, (_object(Combo), ItemData))

    def CmbCurrentItemData(self, Combo: Any, DefValue: int) -> int:
        """Method of ComboBoxEx.

        Combo: Object
        DefValue: Int32
        Gives Int32
        """
        return self._call(_ComboBoxEx_method_CmbCurrentItemData, (_object(Combo), DefValue))


_Forms_method_InitFormSettings = Member("Forms", "InitFormSettings", 1, 1, ("Frm", "Container", "Width", "Height"))
_Forms_method_SaveFormSettings = Member("Forms", "SaveFormSettings", 2, 1, ("Reg", "Frm", "FrmName"))
_Forms_method_GetFormSettings = Member("Forms", "GetFormSettings", 3, 1, ("Reg", "Frm", "FrmName"))


class Forms(LibraryObject):
    """Quorl.Forms 1.0: a global class: all hosts of the process share one instance."""

    __slots__ = ()
    _identifier = identifier("{78B99E7A-7BC2-4EC3-8D01-C1F131847492}")
    _interface = identifier("{59A250C7-DE4E-4A24-80C1-7662638B0EC8}")
    _names = {
        "initformsettings": "InitFormSettings",
        "saveformsettings": "SaveFormSettings",
        "getformsettings": "GetFormSettings",
    }

    def InitFormSettings(self, Frm: Any, Container: Any = Missing, Width: float = 0, Height: float = 0) -> None:
        """Method of Forms.

        Frm: Object
        Container: Object, may be left out
        Width: Double, 0 when left out
        Height: Double, 0 when left out
        """
        self._call(_Forms_method_InitFormSettings, (_object(Frm), _object(Container), Width, Height))

    def SaveFormSettings(self, Reg: Registry, Frm: Any, FrmName: Any = Missing) -> None:
        """Method of Forms.

        Reg: Registry
        Frm: Object
        FrmName: Variant, may be left out
        """
        self._call(_Forms_method_SaveFormSettings, (_object(Reg), _object(Frm), FrmName))

    def GetFormSettings(self, Reg: Registry, Frm: Any, FrmName: Any = Missing) -> None:
        """Method of Forms.

        Reg: Registry
        Frm: Object
        FrmName: Variant, may be left out
        """
        self._call(_Forms_method_GetFormSettings, (_object(Reg), _object(Frm), FrmName))




class Global(LibraryObject):
    """Quorl.Global 1.0: a global class: all hosts of the process share one instance."""

    __slots__ = ()
    _identifier = identifier("{5E5BD2A4-C29D-475F-92BB-EEF37AF4290B}")
    _interface = identifier("{7A2514A3-DD85-43A6-9E8F-8FF3C7D43BF6}")
    _names = {
    }


_Regional_get_DecimalChar = Member("Regional", "DecimalChar", 1, 2, ())
_Regional_get_ThousandChar = Member("Regional", "ThousandChar", 2, 2, ())
_Regional_method_GetRegional = Member("Regional", "GetRegional", 3, 1, ())
_Regional_method_ConvertDecimalPoint = Member("Regional", "ConvertDecimalPoint", 4, 1, ("KeyAscii",))
_Regional_get_NumDecimalChar = Member("Regional", "NumDecimalChar", 5, 2, ())
_Regional_get_NumThousandChar = Member("Regional", "NumThousandChar", 6, 2, ())
_Regional_get_MonDecimalChar = Member("Regional", "MonDecimalChar", 7, 2, ())
_Regional_get_MonThousandChar = Member("Regional", "MonThousandChar", 8, 2, ())
_Regional_method_CheckRegional = Member("Regional", "CheckRegional", 9, 1, ())
_Regional_method_SetRegional = Member("Regional", "SetRegional", 10, 1, ("regionalItem", "Value"))


class Regional(LibraryObject):
    """Quorl.Regional 1.2: a global class: all hosts of the process share one instance."""

    __slots__ = ()
    _identifier = identifier("{E60E8228-F086-4E47-989B-00E97C56E134}")
    _interface = identifier("{9F592C2F-6699-4520-A781-44B57C1C5F1E}")
    _names = {
        "decimalchar": "DecimalChar",
        "thousandchar": "ThousandChar",
        "getregional": "GetRegional",
        "convertdecimalpoint": "ConvertDecimalPoint",
        "numdecimalchar": "NumDecimalChar",
        "numthousandchar": "NumThousandChar",
        "mondecimalchar": "MonDecimalChar",
        "monthousandchar": "MonThousandChar",
        "checkregional": "CheckRegional",
        "setregional": "SetRegional",
    }

    @property
    def DecimalChar(self) -> str:
        """Property of Regional.

        Gives String
        """
        return self._call(_Regional_get_DecimalChar, ())

    @property
    def ThousandChar(self) -> str:
        """Property of Regional.

        Gives String
        """
        return self._call(_Regional_get_ThousandChar, ())

    def GetRegional(self) -> None:
        """Method of Regional."""
        self._call(_Regional_method_GetRegional, ())

    def ConvertDecimalPoint(self, KeyAscii: int | ByRef) -> None:
        """Method of Regional.

        KeyAscii: Int16, written back
        """
        self._call(_Regional_method_ConvertDecimalPoint, (KeyAscii,))

    @property
    def NumDecimalChar(self) -> str:
        """Property of Regional.

        Gives String
        """
        return self._call(_Regional_get_NumDecimalChar, ())

    @property
    def NumThousandChar(self) -> str:
        """Property of Regional.

        Gives String
        """
        return self._call(_Regional_get_NumThousandChar, ())

    @property
    def MonDecimalChar(self) -> str:
        """Property of Regional.

        Gives String
        """
        return self._call(_Regional_get_MonDecimalChar, ())

    @property
    def MonThousandChar(self) -> str:
        """Property of Regional.

        Gives String
        """
        return self._call(_Regional_get_MonThousandChar, ())

    def CheckRegional(self) -> bool:
        """Method of Regional.

        Gives Boolean
        """
        return self._call(_Regional_method_CheckRegional, ())

    def SetRegional(self, regionalItem: RegionalItemEnum, Value: str) -> None:
        """Method of Regional.

        regionalItem: RegionalItemEnum
        Value: String
        """
        self._call(_Regional_method_SetRegional, (regionalItem, Value))


_GUIDs_method_CreateGUID = Member("GUIDs", "CreateGUID", 1, 1, ())
_GUIDs_method_GetNullGUID = Member("GUIDs", "GetNullGUID", 2, 1, ())
_GUIDs_method_GetZeroGUID = Member("GUIDs", "GetZeroGUID", 3, 1, ())
_GUIDs_method_GetNumGUID = Member("GUIDs", "GetNumGUID", 4, 1, ("Number",))


class GUIDs(LibraryObject):
    """Quorl.GUIDs 1.0: a global class: all hosts of the process share one instance."""

    __slots__ = ()
    _identifier = identifier("{02E7FC9A-568B-46D2-AD39-B03BD888138F}")
    _interface = identifier("{937E5E4E-17A5-497E-8983-ED6BD2378BAA}")
    _names = {
        "createguid": "CreateGUID",
        "getnullguid": "GetNullGUID",
        "getzeroguid": "GetZeroGUID",
        "getnumguid": "GetNumGUID",
    }

    def CreateGUID(self) -> str:
        """Method of GUIDs.

        Gives String
        """
        return self._call(_GUIDs_method_CreateGUID, ())

    def GetNullGUID(self) -> str:
        """Method of GUIDs.

        Gives String
        """
        return self._call(_GUIDs_method_GetNullGUID, ())

    def GetZeroGUID(self) -> str:
        """Method of GUIDs.

        Gives String
        """
        return self._call(_GUIDs_method_GetZeroGUID, ())

    def GetNumGUID(self, Number: int) -> str:
        """Method of GUIDs.

        Number: Int32
        Gives String
        """
        return self._call(_GUIDs_method_GetNumGUID, (Number,))


_Registry_put_HKey = Member("Registry", "HKey", 1, 4, ("New_HKey",))
_Registry_get_HKey = Member("Registry", "HKey", 1, 2, ())
_Registry_put_RootKeyName = Member("Registry", "RootKeyName", 3, 4, ("New_RootKeyName",))
_Registry_get_RootKeyName = Member("Registry", "RootKeyName", 3, 2, ())
_Registry_method_InitAbsolute = Member("Registry", "InitAbsolute", 5, 1, ("New_HKey", "New_RootKeyName"))
_Registry_method_InitApp = Member("Registry", "InitApp", 6, 1, ("Compagny", "AppName", "Mode"))
_Registry_method_KeyFullName = Member("Registry", "KeyFullName", 7, 1, ("KeyName",))
_Registry_method_KeyExists = Member("Registry", "KeyExists", 8, 1, ("KeyName",))
_Registry_method_GetValue = Member("Registry", "GetValue", 9, 1, ("KeyName", "ValueName", "Default"))
_Registry_method_SaveValue = Member("Registry", "SaveValue", 10, 1, ("KeyName", "ValueName", "Value", "dataType"))
_Registry_method_GetAllValues = Member("Registry", "GetAllValues", 11, 1, ("KeyName",))
_Registry_method_GetSubKeys = Member("Registry", "GetSubKeys", 12, 1, ("KeyName", "Levels"))
_Registry_method_DeleteKey = Member("Registry", "DeleteKey", 13, 1, ("KeyName",))
_Registry_method_DeleteValue = Member("Registry", "DeleteValue", 14, 1, ("KeyName", "ValueName"))
_Registry_method_CopyKey = Member("Registry", "CopyKey", 15, 1, ("SourceKeyName", "DestinationKeyName"))


class Registry(LibraryObject):
    """Quorl.Registry 1.2: each host makes instances of its own."""

    __slots__ = ()
    _identifier = identifier("{39C5FA8F-7236-4C1C-AF82-A44105A9B71D}")
    _interface = identifier("{4323591E-72F8-48A5-BD24-4A2DEAA3BA33}")
    _names = {
        "hkey": "HKey",
        "rootkeyname": "RootKeyName",
        "initabsolute": "InitAbsolute",
        "initapp": "InitApp",
        "keyfullname": "KeyFullName",
        "keyexists": "KeyExists",
        "getvalue": "GetValue",
        "savevalue": "SaveValue",
        "getallvalues": "GetAllValues",
        "getsubkeys": "GetSubKeys",
        "deletekey": "DeleteKey",
        "deletevalue": "DeleteValue",
        "copykey": "CopyKey",
    }

    @property
    def HKey(self) -> HKeyEnum:
        """Property of Registry.

        Gives HKeyEnum
        """
        return _named(HKeyEnum, self._call(_Registry_get_HKey, ()))

    @HKey.setter
    def HKey(self, New_HKey: HKeyEnum) -> None:
        """Property of Registry.

        New_HKey: HKeyEnum
        """
        self._call(_Registry_put_HKey, (New_HKey,))

    @property
    def RootKeyName(self) -> str:
        """Property of Registry.

        Gives String
        """
        return self._call(_Registry_get_RootKeyName, ())

    @RootKeyName.setter
    def RootKeyName(self, New_RootKeyName: str) -> None:
        """Property of Registry.

        New_RootKeyName: String
        """
        self._call(_Registry_put_RootKeyName, (New_RootKeyName,))

    def InitAbsolute(self, New_HKey: HKeyEnum, New_RootKeyName: str) -> None:
        """Method of Registry.

        New_HKey: HKeyEnum
        New_RootKeyName: String
        """
        self._call(_Registry_method_InitAbsolute, (New_HKey, New_RootKeyName))

    def InitApp(self, Compagny: str, AppName: str, Mode: RegModeEnum = RegModeEnum(0)) -> None:
        """Method of Registry.

        Compagny: String
        AppName: String
        Mode: RegModeEnum, 0 when left out
        """
        self._call(_Registry_method_InitApp, (Compagny, AppName, Mode))

    def KeyFullName(self, KeyName: Any) -> str:
        """Method of Registry.

        KeyName: Variant
        Gives String
        """
        return self._call(_Registry_method_KeyFullName, (KeyName,))

    def KeyExists(self, KeyName: Any) -> bool:
        """Method of Registry.

        KeyName: Variant
        Gives Boolean
        """
        return self._call(_Registry_method_KeyExists, (KeyName,))

    def GetValue(self, KeyName: str, ValueName: str, Default: Any) -> Any:
        """Method of Registry.

        KeyName: String
        ValueName: String
        Default: Variant
        Gives Variant
        """
        return self._call(_Registry_method_GetValue, (KeyName, ValueName, Default))

    def SaveValue(self, KeyName: str, ValueName: str, Value: Any, dataType: RegTypeEnum = RegTypeEnum(0)) -> None:
        """Method of Registry.

        KeyName: String
        ValueName: String
        Value: Variant
        dataType: RegTypeEnum, 0 when left out
        """
        self._call(_Registry_method_SaveValue, (KeyName, ValueName, Value, dataType))

    def GetAllValues(self, KeyName: str) -> Any:
        """Method of Registry.

        KeyName: String
        Gives Variant
        """
        return self._call(_Registry_method_GetAllValues, (KeyName,))

    def GetSubKeys(self, KeyName: str, Levels: int = 1) -> Any:
        """Method of Registry.

        KeyName: String
        Levels: Int32, 1 when left out
        Gives Variant
        """
        return self._call(_Registry_method_GetSubKeys, (KeyName, Levels))

    def DeleteKey(self, KeyName: str) -> None:
        """Method of Registry.

        KeyName: String
        """
        self._call(_Registry_method_DeleteKey, (KeyName,))

    def DeleteValue(self, KeyName: str, ValueName: str) -> None:
        """Method of Registry.

        KeyName: String
        ValueName: String
        """
        self._call(_Registry_method_DeleteValue, (KeyName, ValueName))

    def CopyKey(self, SourceKeyName: str, DestinationKeyName: str) -> None:
        """Method of Registry.

        SourceKeyName: String
        DestinationKeyName: String
        """
        self._call(_Registry_method_CopyKey, (SourceKeyName, DestinationKeyName))


_Money_get_Value = Member("Money", "Value", 1, 2, ())
_Money_put_Value = Member("Money", "Value", 1, 4, ("New_Value",))
_Money_get_Unit = Member("Money", "Unit", 3, 2, ())
_Money_put_Unit = Member("Money", "Unit", 3, 4, ("New_Unit",))
_Money_get_Units = Member("Money", "Units", 5, 2, ())
_Money_put_Units = Member("Money", "Units", 5, 4, ("New_Units",))
_Money_get_SubUnit = Member("Money", "SubUnit", 7, 2, ())
_Money_put_SubUnit = Member("Money", "SubUnit", 7, 4, ("New_SubUnit",))
_Money_get_SubUnits = Member("Money", "SubUnits", 9, 2, ())
_Money_put_SubUnits = Member("Money", "SubUnits", 9, 4, ("New_SubUnits",))
_Money_get_UnitKind = Member("Money", "UnitKind", 11, 2, ())
_Money_put_UnitKind = Member("Money", "UnitKind", 11, 4, ("New_UnitKind",))
_Money_get_SubUnitKind = Member("Money", "SubUnitKind", 13, 2, ())
_Money_put_SubUnitKind = Member("Money", "SubUnitKind", 13, 4, ("New_SubUnitKind",))
_Money_get_SubUnitRow = Member("Money", "SubUnitRow", 15, 2, ())
_Money_put_SubUnitRow = Member("Money", "SubUnitRow", 15, 4, ("New_SubUnitRow",))
_Money_get_Language = Member("Money", "Language", 17, 2, ())
_Money_put_Language = Member("Money", "Language", 17, 4, ("New_Language",))
_Money_method_ToText = Member("Money", "ToText", 19, 1, ("Value",))


class Money(LibraryObject):
    """Quorl.Money 1.0: each host makes instances of its own."""

    __slots__ = ()
    _identifier = identifier("{0553AA64-C47C-467D-B2DD-13C658FBCA74}")
    _interface = identifier("{F503D1C2-065D-4814-B9E9-B63B026BDA21}")
    _names = {
        "value": "Value",
        "unit": "Unit",
        "units": "Units",
        "subunit": "SubUnit",
        "subunits": "SubUnits",
        "unitkind": "UnitKind",
        "subunitkind": "SubUnitKind",
        "subunitrow": "SubUnitRow",
        "language": "Language",
        "totext": "ToText",
    }

    @property
    def Value(self) -> Decimal:
        """Property of Money.

        Gives Currency
        """
        return self._call(_Money_get_Value, ())

    @Value.setter
    def Value(self, New_Value: Decimal) -> None:
        """Property of Money.

        New_Value: Currency
        """
        self._call(_Money_put_Value, (New_Value,))

    @property
    def Unit(self) -> str:
        """Property of Money.

        Gives String
        """
        return self._call(_Money_get_Unit, ())

    @Unit.setter
    def Unit(self, New_Unit: str) -> None:
        """Property of Money.

        New_Unit: String
        """
        self._call(_Money_put_Unit, (New_Unit,))

    @property
    def Units(self) -> str:
        """Property of Money.

        Gives String
        """
        return self._call(_Money_get_Units, ())

    @Units.setter
    def Units(self, New_Units: str) -> None:
        """Property of Money.

        New_Units: String
        """
        self._call(_Money_put_Units, (New_Units,))

    @property
    def SubUnit(self) -> str:
        """Property of Money.

        Gives String
        """
        return self._call(_Money_get_SubUnit, ())

    @SubUnit.setter
    def SubUnit(self, New_SubUnit: str) -> None:
        """Property of Money.

        New_SubUnit: String
        """
        self._call(_Money_put_SubUnit, (New_SubUnit,))

    @property
    def SubUnits(self) -> str:
        """Property of Money.

        Gives String
        """
        return self._call(_Money_get_SubUnits, ())

    @SubUnits.setter
    def SubUnits(self, New_SubUnits: str) -> None:
        """Property of Money.

        New_SubUnits: String
        """
        self._call(_Money_put_SubUnits, (New_SubUnits,))

    @property
    def UnitKind(self) -> int:
        """Property of Money.

        Gives Int16
        """
        return self._call(_Money_get_UnitKind, ())

    @UnitKind.setter
    def UnitKind(self, New_UnitKind: int) -> None:
        """Property of Money.

        New_UnitKind: Int16
        """
        self._call(_Money_put_UnitKind, (New_UnitKind,))

    @property
    def SubUnitKind(self) -> int:
        """Property of Money.

        Gives Int16
        """
        return self._call(_Money_get_SubUnitKind, ())

    @SubUnitKind.setter
    def SubUnitKind(self, New_SubUnitKind: int) -> None:
        """Property of Money.

        New_SubUnitKind: Int16
        """
        self._call(_Money_put_SubUnitKind, (New_SubUnitKind,))

    @property
    def SubUnitRow(self) -> int:
        """Property of Money.

        Gives Int16
        """
        return self._call(_Money_get_SubUnitRow, ())

    @SubUnitRow.setter
    def SubUnitRow(self, New_SubUnitRow: int) -> None:
        """Property of Money.

        New_SubUnitRow: Int16
        """
        self._call(_Money_put_SubUnitRow, (New_SubUnitRow,))

    @property
    def Language(self) -> str:
        """Property of Money.

        Gives String
        """
        return self._call(_Money_get_Language, ())

    @Language.setter
    def Language(self, New_Language: str) -> None:
        """Property of Money.

        New_Language: String
        """
        self._call(_Money_put_Language, (New_Language,))

    def ToText(self, Value: Decimal) -> str:
        """Method of Money.

        Value: Currency
        Gives String
        """
        return self._call(_Money_method_ToText, (Value,))


class Classes:
    """The classes that hosts make instances of."""

    RollBuffer = RollBuffer
    Registry = Registry
    Money = Money


GLOBALS: dict[str, type[LibraryObject]] = {
    "math": Math,
    "dates": Dates,
    "strings": Strings,
    "dblib": DbLib,
    "comboboxex": ComboBoxEx,
    "forms": Forms,
    "global": Global,
    "regional": Regional,
    "guids": GUIDs,
}

__all__ = [
    "AlignentEnum",
    "ComboBoxEx",
    "Dates",
    "DbLib",
    "Forms",
    "GUIDs",
    "Global",
    "HKEY_CLASSES_ROOT",
    "HKEY_CURRENT_CONFIG",
    "HKEY_CURRENT_USER",
    "HKEY_DYN_DATA",
    "HKEY_LOCAL_MACHINE",
    "HKEY_PERFORMANCE_DATA",
    "HKEY_USERS",
    "HKeyEnum",
    "Math",
    "Money",
    "REG_BINARY",
    "REG_DWORD",
    "REG_NONE",
    "REG_SZ",
    "RegModeEnum",
    "RegTypeEnum",
    "Regional",
    "RegionalItemEnum",
    "Registry",
    "RollBuffer",
    "Strings",
    "qlAlignCenter",
    "qlAlignGeneral",
    "qlAlignLeft",
    "qlAlignRight",
    "qlWinRegCurrentUser",
    "qlWinRegLocalMachine",
    "riMonDecimalChar",
    "riMonThousandChar",
    "riNumDecimalChar",
    "riNumThousandChar",
]
