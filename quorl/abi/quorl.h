/*
 * Quorl for hosts in any language: the binary form of values, objects and calls, in plain C11.
 *
 * A host loads libquorl_runtime.so, has the component registered once (QuorlRegister) where it is
 * not installed for every user, and gets objects from it:
 *
 *     void* object = NULL;
 *     QuorlGlobalObject(u"Quorl.Math", &object);      a global class, without creating anything
 *     QuorlMath* math = object;
 *     double up = 0;
 *     math->table->RoundSup(math, 1.21, 1, &up);      1.3
 *     math->table->Release(math);
 *
 * Everything runs on the caller's thread. An object is used from one thread at a time and may be
 * released on another.
 *
 * Ownership. Arguments are lent for the call. A text or Variant that a function puts into a slot of
 * the caller belongs to the caller, who frees it with SysFreeString or VariantClear. Initialise a
 * BSTR slot to NULL and a VARIANT slot with VariantInit before a call: the callee clears the slot
 * first and frees what was there. A VARIANT that is both the result slot and an argument by
 * reference is thus Empty when the argument is read.
 */
#ifndef QUORL_ABI_QUORL_H
#define QUORL_ABI_QUORL_H

#include <stddef.h>
#include <stdint.h>
#ifdef __cplusplus
#include "quorl/runtime/enumerations.hpp"
#else
#include <uchar.h>
#endif

#include "quorl/runtime/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---------------------------------------------------------------------------------- results -- */

/* 0 done, 1 false, negative failed. A failure of the library with a Number from 0 to 0xFFFF is
 * 0x800A0000 + Number; any other Number is given with its top bit set. */
typedef int32_t HRESULT;

#define QUORL_CODE(bits) ((HRESULT)(uint32_t)(bits))

enum { S_OK = 0, S_FALSE = 1 };

#define E_NOINTERFACE QUORL_CODE(0x80004002)             /* the object has no such interface */
#define E_POINTER QUORL_CODE(0x80004003)                 /* a null pointer where none may stand */
#define E_UNEXPECTED QUORL_CODE(0x8000FFFF)              /* too late, or not in this state */
#define E_OUTOFMEMORY QUORL_CODE(0x8007000E)             /* memory ran out */
#define E_INVALIDARG QUORL_CODE(0x80070057)              /* an argument out of its contract */
#define DISP_E_MEMBERNOTFOUND QUORL_CODE(0x80020003)     /* no such member, or not of this kind */
#define DISP_E_PARAMNOTFOUND QUORL_CODE(0x80020004)      /* unknown named argument; also: Missing */
#define DISP_E_TYPEMISMATCH QUORL_CODE(0x80020005)       /* a value of no known type */
#define DISP_E_UNKNOWNNAME QUORL_CODE(0x80020006)        /* no member or argument of that name */
#define DISP_E_EXCEPTION QUORL_CODE(0x80020009)          /* the member failed; see EXCEPINFO */
#define DISP_E_BADINDEX QUORL_CODE(0x8002000B)           /* a subscript out of bounds */
#define DISP_E_BADPARAMCOUNT QUORL_CODE(0x8002000E)      /* too many arguments */
#define DISP_E_PARAMNOTOPTIONAL QUORL_CODE(0x8002000F)   /* a required argument is absent */
#define CLASS_E_NOAGGREGATION QUORL_CODE(0x80040110)     /* no object is made as part of another */
#define CLASS_E_CLASSNOTAVAILABLE QUORL_CODE(0x80040111) /* no such class; or it is not global */
#define REGDB_E_CLASSNOTREG QUORL_CODE(0x80040154)       /* the class is not registered */
#define CO_E_CLASSSTRING QUORL_CODE(0x800401F3)          /* malformed identifier or unknown name */
#define QUORL_E_NOTLOADABLE QUORL_CODE(0x8007007E)       /* the component's library does not load */

/* ----------------------------------------------------------------------------------- values -- */

typedef struct GUID {
  uint32_t Data1;
  uint16_t Data2;
  uint16_t Data3;
  uint8_t Data4[8];
} GUID;

/* A text: UTF-16 units, their number of bytes in the uint32 just before them, a zero unit after
 * them. A null pointer is the empty text. Made by SysAllocString, SysAllocStringLen, QuorlFromUtf8
 * and QuorlFromUtf8Len of this library, freed by its SysFreeString. Warning: a text from malloc, a
 * literal or one of another library with functions of the same names is none; it brings the process
 * down when it is read or freed, and so does a text of this library when another frees it. */
typedef char16_t* BSTR;

struct VARIANT;
struct QuorlDispatch;

/* Dimensions stand last dimension first; in the data the leftmost subscript runs fastest. */
typedef struct QuorlBound {
  uint32_t count;
  int32_t lower;
} QuorlBound;

typedef struct SAFEARRAY {
  uint16_t dimensions;
  uint16_t features; /* kept by the library: see QUORL_ARRAY_OF_TEXTS; a host leaves it alone */
  uint32_t element_size;
  uint32_t locks;
  void* data;
  QuorlBound bounds[1]; /* as many as there are dimensions */
} SAFEARRAY;

/* Features of arrays whose elements own something; the four highest bits are the library's, and 0
 * in an array that a host laid out by itself. Such an array may be an argument; the functions below
 * refuse it with E_INVALIDARG, and a null array too where they do not take one. */
enum {
  QUORL_ARRAY_OF_TEXTS = 0x100,
  QUORL_ARRAY_OF_OBJECTS = 0x400,
  QUORL_ARRAY_OF_VARIANTS = 0x800
};

/* What a VARIANT holds. */
enum {
  VT_EMPTY = 0,
  VT_NULL = 1,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R4 = 4,
  VT_R8 = 5,
  VT_CY = 6,
  VT_DATE = 7,
  VT_BSTR = 8,
  VT_DISPATCH = 9,
  VT_ERROR = 10, /* with DISP_E_PARAMNOTFOUND: an argument left out */
  VT_BOOL = 11,
  VT_VARIANT = 12, /* by reference, or as an array's element */
  VT_UI1 = 17,
  VT_ARRAY = 0x2000, /* added: a SAFEARRAY pointer */
  VT_BYREF = 0x4000  /* added: a pointer to the value */
};

typedef struct VARIANT {
  uint16_t vt;
  uint16_t reserved[3];
  union {
    int16_t i2;
    int32_t i4;
    float r4;
    double r8;
    int64_t cy;  /* ten-thousandths */
    double date; /* days from 1899-12-30 */
    BSTR bstr;
    struct QuorlDispatch* dispatch;
    int32_t error;
    int16_t boolean; /* -1 or 0 */
    uint8_t ui1;
    SAFEARRAY* array;
    void* reference;
    struct {
      void* first;
      void* second;
    } size;
  } value;
} VARIANT;

/* The failure record of a call by name. */
typedef struct EXCEPINFO {
  uint16_t code;
  uint16_t reserved;
  BSTR source;
  BSTR description;
  BSTR help_file;
  uint32_t help_context;
  void* reserved_pointer;
  HRESULT (*fill_in)(struct EXCEPINFO* info); /* called first to fill the record, unless null */
  int32_t scode;
} EXCEPINFO;

/* Named arguments stand first: named[i] names arguments[i]. The positional ones follow in reverse
 * order. In a put the new value is arguments[0], named QUORL_PUT_VALUE. */
typedef struct DISPPARAMS {
  VARIANT* arguments;
  int32_t* named;
  uint32_t argument_count;
  uint32_t named_count;
} DISPPARAMS;

#define QUORL_PUT_VALUE (-3)
#define QUORL_DEFAULT_MEMBER 0

/* Flags of Invoke. */
enum {
  DISPATCH_METHOD = 1,
  DISPATCH_PROPERTYGET = 2,
  DISPATCH_PROPERTYPUT = 4,
  DISPATCH_PROPERTYPUTREF = 8
};

/* ---------------------------------------------------------------------------------- objects -- */

/* Every object is a pointer to a pointer to its table, whose slots 0 to 2 are these. QueryInterface
 * answers the identifiers below, each class's own, and every identifier the class ever had. */
#define QUORL_UNKNOWN_SLOTS(Self)                                             \
  HRESULT (*QueryInterface)(Self * self, const GUID* identifier, void** out); \
  uint32_t (*AddRef)(Self * self);                                            \
  uint32_t (*Release)(Self * self)

/* Slots 3 to 6. In GetIDsOfNames the first name is a member's, those after it are its arguments';
 * an argument's identifier is its position from 0. Case does not count. An unknown name gets -1,
 * and the result is DISP_E_UNKNOWNNAME. `identifier` and `lcid` are ignored. A member answers
 * Invoke when its kind is among the flags; where they allow a get and a put, the number of
 * arguments decides. The last three pointers of Invoke may be null; wrong_argument tells which
 * element of the array is meant by DISP_E_PARAMNOTFOUND. A member's failure is DISP_E_EXCEPTION,
 * with the record filled; a wrong call is DISP_E_MEMBERNOTFOUND, DISP_E_BADPARAMCOUNT,
 * DISP_E_PARAMNOTFOUND, DISP_E_PARAMNOTOPTIONAL, or E_POINTER without parameters or their arrays.
 * GetTypeInfo knows index 0 alone and gives DISP_E_BADINDEX for any other. */
#define QUORL_DISPATCH_SLOTS(Self)                                                             \
  QUORL_UNKNOWN_SLOTS(Self);                                                                   \
  HRESULT (*GetTypeInfoCount)(Self * self, uint32_t * count);                                  \
  HRESULT (*GetTypeInfo)(Self * self, uint32_t index, uint32_t lcid, void** out);              \
  HRESULT(*GetIDsOfNames)                                                                      \
  (Self * self, const GUID* identifier, const char16_t** names, uint32_t count, uint32_t lcid, \
   int32_t* ids);                                                                              \
  HRESULT(*Invoke)                                                                             \
  (Self * self, int32_t id, const GUID* identifier, uint32_t lcid, uint16_t flags,             \
   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* info, uint32_t* wrong_argument)

#define QUORL_OBJECT(Name)                \
  typedef struct Name Name;               \
  typedef struct Name##Table Name##Table; \
  struct Name {                           \
    const Name##Table* table;             \
  }

QUORL_OBJECT(QuorlUnknown);
struct QuorlUnknownTable {
  QUORL_UNKNOWN_SLOTS(QuorlUnknown);
};

QUORL_OBJECT(QuorlDispatch);
struct QuorlDispatchTable {
  QUORL_DISPATCH_SLOTS(QuorlDispatch);
};

QUORL_OBJECT(QuorlClassFactory);
struct QuorlClassFactoryTable {
  QUORL_UNKNOWN_SLOTS(QuorlClassFactory);
  HRESULT(*CreateInstance)
  (QuorlClassFactory* self, void* outer, const GUID* identifier, void** out);
  /* E_UNEXPECTED to unlock more often than it was locked. */
  HRESULT (*LockServer)(QuorlClassFactory* self, int32_t lock);
};

/* The second interface of a global class's factory: its QueryInterface, and DllGetClassObject, give
 * it under QUORL_IID_GLOBAL_FACTORY. */
QUORL_OBJECT(QuorlGlobalFactory);
struct QuorlGlobalFactoryTable {
  QUORL_UNKNOWN_SLOTS(QuorlGlobalFactory);
  HRESULT (*GetGlobalObject)(QuorlGlobalFactory* self, void** out); /* the hidden instance */
};

QUORL_OBJECT(QuorlErrorInfo);
struct QuorlErrorInfoTable {
  QUORL_UNKNOWN_SLOTS(QuorlErrorInfo);
  HRESULT (*GetGUID)(QuorlErrorInfo* self, GUID* out);
  HRESULT (*GetSource)(QuorlErrorInfo* self, BSTR* out);
  HRESULT (*GetDescription)(QuorlErrorInfo* self, BSTR* out);
  HRESULT (*GetHelpFile)(QuorlErrorInfo* self, BSTR* out);
  HRESULT (*GetHelpContext)(QuorlErrorInfo* self, uint32_t* out);
};

QUORL_OBJECT(QuorlSupportErrorInfo);
struct QuorlSupportErrorInfoTable {
  QUORL_UNKNOWN_SLOTS(QuorlSupportErrorInfo);
  HRESULT (*InterfaceSupportsErrorInfo)(QuorlSupportErrorInfo* self, const GUID* identifier);
};

/* Type information: what docs/quorl.idl tells, at run time. GetTypeInfo(0, ...) gives that of the
 * object's class, and from there GetLibrary that of the library: all classes, made or not, and the
 * enumerations. Each function writes over what `out` points to, without freeing it; after a failure
 * it is zero. Texts in it are the caller's to free. They give E_POINTER for a null `out`,
 * DISP_E_BADINDEX for a place after the last, and 0x800A0007 when memory ran out (E_OUTOFMEMORY
 * where an object is made). */

typedef struct QuorlTypeAttributes {
  GUID class_identifier;
  GUID interface_identifier; /* the current one */
  uint16_t major_version;
  uint16_t minor_version;
  uint16_t class_flags;
  uint16_t interface_flags;
  uint32_t functions; /* entries of the table after the seven of every class */
} QuorlTypeAttributes;

typedef struct QuorlFunction {
  int32_t id;
  uint16_t invoke_kind;   /* one of the flags of Invoke */
  uint16_t table_slot;    /* from 0, so 7 for a class's first own entry */
  uint16_t listing_place; /* place in the type description's listing, from 0 */
  uint16_t result_type;   /* a VT number; VT_EMPTY for none */
  uint16_t argument_count;
  uint16_t optional_count; /* the last so many arguments may be left out */
} QuorlFunction;

typedef struct QuorlArgument {
  uint16_t type;         /* a VT number, with VT_BYREF where the member writes back */
  int16_t optional;      /* -1 where it may be left out */
  BSTR name;             /* the caller's to free */
  VARIANT default_value; /* the caller's to free; Missing where there is none */
} QuorlArgument;

/* A version of the class's interface. */
typedef struct QuorlInterface {
  GUID identifier;
  BSTR name;        /* "_Math" for the current one, "Math___v0" for a former one; to free */
  uint32_t members; /* how many entries of the table it knows: the first so many */
} QuorlInterface;

typedef struct QuorlLibraryAttributes {
  GUID identifier;
  BSTR name; /* "Quorl": with a point and a class's name, what CLSIDFromProgID reads; to free */
  uint16_t major_version;
  uint16_t minor_version;
  uint32_t classes;
  uint32_t enumerations;
} QuorlLibraryAttributes;

typedef struct QuorlEnumeration {
  BSTR name; /* "HKeyEnum"; to free */
  uint32_t members;
} QuorlEnumeration;

typedef struct QuorlEnumerator {
  BSTR name; /* "HKEY_CURRENT_USER"; to free */
  int32_t value;
} QuorlEnumerator;

QUORL_OBJECT(QuorlTypeInfo);
QUORL_OBJECT(QuorlLibraryInfo);

/* For GetTypeName: the result in place of an argument. */
#define QUORL_RESULT UINT32_MAX

struct QuorlTypeInfoTable {
  QUORL_UNKNOWN_SLOTS(QuorlTypeInfo);
  HRESULT (*GetTypeAttributes)(QuorlTypeInfo* self, QuorlTypeAttributes* out);
  /* The entry at a place of the table, from 0; DISP_E_BADINDEX after the last. */
  HRESULT (*GetFunction)(QuorlTypeInfo* self, uint32_t index, QuorlFunction* out);
  HRESULT(*GetArgument)
  (QuorlTypeInfo* self, uint32_t index, uint32_t argument, QuorlArgument* out);
  /* A member's name and help string by its identifier, the class's own for id -1. Each out pointer
   * may be null; the texts are the caller's to free. DISP_E_MEMBERNOTFOUND for an unknown one. */
  HRESULT (*GetDocumentation)(QuorlTypeInfo* self, int32_t id, BSTR* name, BSTR* help);
  /* As the object's own GetIDsOfNames. */
  HRESULT(*GetIDsOfNames)
  (QuorlTypeInfo* self, const char16_t** names, uint32_t count, int32_t* ids);

  /* From here on under QUORL_IID_TYPE_INFO_2: QueryInterface for it tells a host that may meet an
   * older library whether it has them. */

  /* The published name of an argument's type, or of the result's for QUORL_RESULT: "HKeyEnum", an
   * enumeration, or "_Registry", the interface of a class. Null for a type that has none. */
  HRESULT(*GetTypeName)
  (QuorlTypeInfo* self, uint32_t index, uint32_t argument, BSTR* out);
  /* Version 1.k of the interface for k from 0 to minor_version, the current one. */
  HRESULT (*GetInterface)(QuorlTypeInfo* self, uint32_t version, QuorlInterface* out);
  HRESULT (*GetLibrary)(QuorlTypeInfo* self, QuorlLibraryInfo** out); /* the caller's to release */
};

/* The library. An enumeration's member stands for its value by its own name alone:
 *
 *     int32_t root = 0;
 *     library->table->FindEnumerator(library, u"HKEY_CURRENT_USER", &root);      -2147483647 */
struct QuorlLibraryInfoTable {
  QUORL_UNKNOWN_SLOTS(QuorlLibraryInfo);
  HRESULT (*GetLibraryAttributes)(QuorlLibraryInfo* self, QuorlLibraryAttributes* out);
  /* A class's type information, without an instance of it; the caller's to release. */
  HRESULT (*GetClass)(QuorlLibraryInfo* self, uint32_t index, QuorlTypeInfo** out);
  HRESULT (*GetEnumeration)(QuorlLibraryInfo* self, uint32_t index, QuorlEnumeration* out);
  HRESULT(*GetEnumerator)
  (QuorlLibraryInfo* self, uint32_t index, uint32_t member, QuorlEnumerator* out);
  /* Case does not count. DISP_E_UNKNOWNNAME when no enumeration has such a member; E_POINTER also
   * for a null name. */
  HRESULT (*FindEnumerator)(QuorlLibraryInfo* self, const char16_t* name, int32_t* out);
};

#define QUORL_SYSTEM_GUID(first)                  \
  {                                               \
    first, 0, 0, { 0xC0, 0, 0, 0, 0, 0, 0, 0x46 } \
  }

static const GUID IID_IUnknown = QUORL_SYSTEM_GUID(0x00000000);
static const GUID IID_IDispatch = QUORL_SYSTEM_GUID(0x00020400);
static const GUID IID_IClassFactory = QUORL_SYSTEM_GUID(0x00000001);
static const GUID IID_IErrorInfo = {
    0x1CF2B120, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
static const GUID IID_ISupportErrorInfo = {
    0xDF0B3D60, 0x548F, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
static const GUID QUORL_IID_GLOBAL_FACTORY = {
    0x8F1D6A02, 0x3B5E, 0x4C47, {0x9A, 0x61, 0x52, 0x0E, 0xD7, 0x44, 0xB3, 0x01}};
static const GUID QUORL_IID_TYPE_INFO = {
    0x8F1D6A02, 0x3B5E, 0x4C47, {0x9A, 0x61, 0x52, 0x0E, 0xD7, 0x44, 0xB3, 0x02}};
static const GUID QUORL_IID_TYPE_INFO_2 = {
    0x8F1D6A02, 0x3B5E, 0x4C47, {0x9A, 0x61, 0x52, 0x0E, 0xD7, 0x44, 0xB3, 0x03}};
static const GUID QUORL_IID_LIBRARY_INFO = {
    0x8F1D6A02, 0x3B5E, 0x4C47, {0x9A, 0x61, 0x52, 0x0E, 0xD7, 0x44, 0xB3, 0x04}};

/* ------------------------------------------------------------- functions of libquorl_runtime -- */

/* What gives an HRESULT gives E_POINTER for a null pointer where none may stand, E_OUTOFMEMORY when
 * memory ran out, and the codes that are named with it. */

/* Texts. A null argument gives null, and so do want of memory and more bytes than a uint32 counts;
 * SysFreeString takes null. Length counts code units. */
QUORL_API BSTR SysAllocString(const char16_t* text);
/* `text` may be null: the units are then zeros. */
QUORL_API BSTR SysAllocStringLen(const char16_t* text, uint32_t length);
QUORL_API void SysFreeString(BSTR text);
QUORL_API uint32_t SysStringLen(BSTR text);

/* Texts from and to UTF-8. What is not well-formed (a stray byte, a surrogate without its partner)
 * becomes U+FFFD each, and the code is then S_FALSE. `out` is written over, not freed, and null
 * after a failure: E_POINTER without `out`, E_OUTOFMEMORY. A null text converts as the empty one.
 *
 *     BSTR word = NULL;
 *     char* shown = NULL;
 *     QuorlFromUtf8("d\xC3\xA9j\xC3\xA0", &word);
 *     QuorlToUtf8(word, &shown, NULL);
 *     puts(shown);
 *     QuorlFreeUtf8(shown);
 *     SysFreeString(word);
 */
/* Up to the zero byte. The text is the caller's, who frees it with SysFreeString. */
QUORL_API HRESULT QuorlFromUtf8(const char* text, BSTR* out);
/* The same for so many bytes, zeros among them; E_POINTER for a null text of more than none. */
QUORL_API HRESULT QuorlFromUtf8Len(const char* text, size_t length, BSTR* out);
/* The bytes with a zero byte after them are the caller's, who frees them with QuorlFreeUtf8, never
 * with free. `length` gets their number without that zero, 0 after a failure; it may be null. A
 * text with a zero unit inside has a zero byte there. */
QUORL_API HRESULT QuorlToUtf8(BSTR text, char** out, size_t* length);
/* Takes null. */
QUORL_API void QuorlFreeUtf8(char* text);

/* Variants. VariantClear frees what the Variant owns and leaves it Empty; what it holds by
 * reference belongs to someone else. VariantCopy clears the destination first and copies deep; an
 * object is counted once more, and a value by reference stays one. Both give DISP_E_TYPEMISMATCH
 * for a value of no known type (VariantClear then leaves Empty, VariantCopy the destination as it
 * was), and E_UNEXPECTED, with nothing changed, when what they would free is an array whose data is
 * accessed. VariantCopy also gives DISP_E_TYPEMISMATCH for arrays nested more than 64 deep,
 * E_INVALIDARG for a damaged array, and E_OUTOFMEMORY, also when arrays within an array have more
 * than 256 MiB. */
QUORL_API void VariantInit(VARIANT* variant);
QUORL_API HRESULT VariantClear(VARIANT* variant);
QUORL_API HRESULT VariantCopy(VARIANT* destination, const VARIANT* source);

/* Arrays of any VT number of a single value, or VT_VARIANT. `bounds` stand leftmost dimension
 * first: 1 to 60 dimensions. All elements together have at most 2147483647 bytes, here and wherever
 * an array is passed. Null when an argument is out of its contract or memory ran out. */
QUORL_API SAFEARRAY* SafeArrayCreate(uint16_t vt, uint32_t dimensions, const QuorlBound* bounds);
/* Frees the elements, the data and the array; takes null. E_UNEXPECTED while data is accessed. An
 * array that is accessed when a call replaces the Variant around it belongs to who accesses it. */
QUORL_API HRESULT SafeArrayDestroy(SAFEARRAY* array);
QUORL_API uint32_t SafeArrayGetDim(SAFEARRAY* array);
/* Dimensions count from 1, leftmost first; DISP_E_BADINDEX for any other. */
QUORL_API HRESULT SafeArrayGetLBound(SAFEARRAY* array, uint32_t dimension, int32_t* bound);
QUORL_API HRESULT SafeArrayGetUBound(SAFEARRAY* array, uint32_t dimension, int32_t* bound);
QUORL_API HRESULT SafeArrayGetVartype(SAFEARRAY* array, uint16_t* vt);
/* Subscripts leftmost first. A text is put as the BSTR itself, an object as its pointer, everything
 * else as a pointer to it; what is put is copied. A text or Variant that is got is a copy that the
 * caller frees; `element` is written over, not freed. DISP_E_BADINDEX for a subscript out of
 * bounds; otherwise they fail as VariantCopy does. */
QUORL_API HRESULT SafeArrayGetElement(SAFEARRAY* array, const int32_t* subscripts, void* element);
QUORL_API HRESULT SafeArrayPutElement(SAFEARRAY* array, const int32_t* subscripts, void* element);
QUORL_API HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data);
/* E_UNEXPECTED where no access is open. */
QUORL_API HRESULT SafeArrayUnaccessData(SAFEARRAY* array);

/* The thread's failure of a call through a table. GetErrorInfo takes it away; S_FALSE and null when
 * there is none. SetErrorInfo takes null to clear it, and counts the object. */
QUORL_API HRESULT GetErrorInfo(uint32_t reserved, void** out);
QUORL_API HRESULT SetErrorInfo(uint32_t reserved, void* info);

/* "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}", either case on reading, with the braces;
 * CO_E_CLASSSTRING for any other text. */
QUORL_API HRESULT CLSIDFromString(const char16_t* text, GUID* out);
/* Writes 38 characters and a zero; gives 39, or 0 if `capacity` is too small. */
QUORL_API int32_t StringFromGUID2(const GUID* guid, char16_t* buffer, int32_t capacity);

/* Classes, by what is registered below HKEY_CLASSES_ROOT, and what is not, by the list of classes
 * that an installation for every user has beside this library, if any. `context` is ignored. A
 * store that cannot be read gives 0x80070000 + its code, here and in QuorlGlobalObject. An unknown
 * name is CO_E_CLASSSTRING. An unknown class is REGDB_E_CLASSNOTREG, one whose library cannot be
 * loaded QUORL_E_NOTLOADABLE, one that its library lacks CLASS_E_CLASSNOTAVAILABLE; E_NOINTERFACE
 * for an interface that the object lacks, CLASS_E_NOAGGREGATION for an `outer` that is not null. An
 * instance that cannot be made gives its failure as a slot does. */
QUORL_API HRESULT CLSIDFromProgID(const char16_t* progid, GUID* out);
QUORL_API HRESULT CoGetClassObject(const GUID* class_identifier, uint32_t context, void* reserved,
                                   const GUID* identifier, void** out);
QUORL_API HRESULT CoCreateInstance(const GUID* class_identifier, void* outer, uint32_t context,
                                   const GUID* identifier, void** out);

/* A counted dispatch pointer to the hidden instance of a global class, the same each time.
 * CLASS_E_CLASSNOTAVAILABLE for a class that is not global; otherwise as those above. */
QUORL_API HRESULT QuorlGlobalObject(const char16_t* progid, void** out);
/* "fr-BE" and the like; null or empty: the system's again. E_INVALIDARG for an unknown one. For the
 * whole process and at any time: a call under way on another thread uses the former locale or this
 * one for each of its conversions. */
QUORL_API HRESULT QuorlSetLocale(const char16_t* name);
/* The ambient screen's size, 0 by 0 until then. E_INVALIDARG for a size out of range. For the whole
 * process and at any time; set both before forms are placed, as a placing under way may read either
 * of two sizes. */
QUORL_API HRESULT QuorlSetScreen(double width, double height);
/* The folders of the user's and the machine's settings, as absolute paths: each use of settings in
 * a relative one fails with code 161. A null user folder: in memory; a null machine folder: the
 * usual one. E_UNEXPECTED, with nothing changed, once the store is in use. */
QUORL_API HRESULT QuorlSetStore(const char16_t* user_folder, const char16_t* machine_folder);
/* Loads a component and has it register or unregister itself: one change of the store, made whole
 * or not at all. 0x80070000 + the store's code when it fails, QUORL_E_NOTLOADABLE without the
 * library. */
QUORL_API HRESULT QuorlRegister(const char16_t* path);
QUORL_API HRESULT QuorlUnregister(const char16_t* path);

/* ---------------------------------------------------- the classes, from libquorl's catalogue -- */

/* Of each class: QUORL_CLSID_Math, its identifier; QUORL_IID_Math, its current interface's; and
 * QUORL_IID_Math_v0, _v1 and so on, those of its former versions 1.0, 1.1 and so on. QUORL_LIBID is
 * the library's.
 *
 * Generated by the program describe ("describe tables"); do not edit between the two marks. */
/* begin generated */
/* clang-format off */
#ifdef __cplusplus

typedef quorl::AlignentEnum QuorlAlignentEnum;
using quorl::qlAlignLeft;
using quorl::qlAlignRight;
using quorl::qlAlignCenter;
using quorl::qlAlignGeneral;

typedef quorl::RegionalItemEnum QuorlRegionalItemEnum;
using quorl::riNumDecimalChar;
using quorl::riNumThousandChar;
using quorl::riMonDecimalChar;
using quorl::riMonThousandChar;

typedef quorl::HKeyEnum QuorlHKeyEnum;
using quorl::HKEY_CLASSES_ROOT;
using quorl::HKEY_CURRENT_USER;
using quorl::HKEY_LOCAL_MACHINE;
using quorl::HKEY_USERS;
using quorl::HKEY_PERFORMANCE_DATA;
using quorl::HKEY_CURRENT_CONFIG;
using quorl::HKEY_DYN_DATA;

typedef quorl::RegTypeEnum QuorlRegTypeEnum;
using quorl::REG_NONE;
using quorl::REG_SZ;
using quorl::REG_DWORD;
using quorl::REG_BINARY;

typedef quorl::RegModeEnum QuorlRegModeEnum;
using quorl::qlWinRegCurrentUser;
using quorl::qlWinRegLocalMachine;

#else

enum QuorlAlignentEnum {
  qlAlignLeft = 0,
  qlAlignRight = 1,
  qlAlignCenter = 2,
  qlAlignGeneral = 3
};

enum QuorlRegionalItemEnum {
  riNumDecimalChar = 0,
  riNumThousandChar = 1,
  riMonDecimalChar = 2,
  riMonThousandChar = 3
};

enum QuorlHKeyEnum {
  HKEY_CLASSES_ROOT = -2147483647 - 1,
  HKEY_CURRENT_USER = -2147483647,
  HKEY_LOCAL_MACHINE = -2147483646,
  HKEY_USERS = -2147483645,
  HKEY_PERFORMANCE_DATA = -2147483644,
  HKEY_CURRENT_CONFIG = -2147483643,
  HKEY_DYN_DATA = -2147483642
};

enum QuorlRegTypeEnum {
  REG_NONE = 0,
  REG_SZ = 1,
  REG_DWORD = 4,
  REG_BINARY = 3
};

enum QuorlRegModeEnum {
  qlWinRegCurrentUser = 0,
  qlWinRegLocalMachine = 1
};

#endif

static const GUID QUORL_LIBID = {
    0xF9B439FC, 0x91D9, 0x4814, {0x8F, 0xA0, 0x62, 0xAB, 0x9D, 0x09, 0x0F, 0xA0}};

QUORL_OBJECT(QuorlMath);
QUORL_OBJECT(QuorlDates);
QUORL_OBJECT(QuorlStrings);
QUORL_OBJECT(QuorlDbLib);
QUORL_OBJECT(QuorlRollBuffer);
QUORL_OBJECT(QuorlComboBoxEx);
QUORL_OBJECT(QuorlForms);
QUORL_OBJECT(QuorlGlobal);
QUORL_OBJECT(QuorlRegional);
QUORL_OBJECT(QuorlGUIDs);
QUORL_OBJECT(QuorlRegistry);
QUORL_OBJECT(QuorlMoney);

/* Quorl.Math, a global class */
static const GUID QUORL_CLSID_Math = {
    0x6301BBFC, 0xCDDE, 0x4047, {0x8A, 0x6F, 0x7F, 0xB7, 0x7E, 0x3A, 0xA1, 0x5C}};
static const GUID QUORL_IID_Math = {
    0x7323691B, 0xC1B8, 0x4582, {0x9D, 0x2F, 0x2E, 0x8D, 0x4C, 0xC2, 0xAC, 0xEA}};
static const GUID QUORL_IID_Math_v0 = {
    0x4C96D8E2, 0x6608, 0x4873, {0x90, 0xF0, 0xB1, 0xB4, 0xCE, 0x84, 0x78, 0xE8}};
static const GUID QUORL_IID_Math_v1 = {
    0x48668D77, 0x562A, 0x4233, {0xB7, 0xE3, 0x64, 0xC1, 0x84, 0xF0, 0x5E, 0x9A}};
static const GUID QUORL_IID_Math_v2 = {
    0xB12E9EED, 0xF6A7, 0x46FB, {0xA6, 0x39, 0xC5, 0xA2, 0x8D, 0x47, 0x95, 0x38}};
static const GUID QUORL_IID_Math_v3 = {
    0xF3194A3B, 0x7F00, 0x4DAF, {0x8D, 0xC4, 0x9B, 0x67, 0x43, 0xAB, 0x0F, 0x19}};
struct QuorlMathTable {
  QUORL_DISPATCH_SLOTS(QuorlMath);
  HRESULT (*StdRound)(QuorlMath* self, VARIANT Nombre, int32_t Nombredecimales, VARIANT* result);
  HRESULT (*FixRound)(QuorlMath* self, double Nombre, int32_t Nombredecimales, double* result);
  HRESULT (*RoundSup)(QuorlMath* self, double Nombre, int32_t Nombredecimales, double* result);
  HRESULT (*RoundInf)(QuorlMath* self, double Nombre, int32_t Nombredecimales, double* result);
  HRESULT (*Min)(QuorlMath* self, VARIANT Expression1, VARIANT Expression2, VARIANT* result);
  HRESULT (*Max)(QuorlMath* self, VARIANT Expression1, VARIANT Expression2, VARIANT* result);
  HRESULT (*IsNullOrZero)(QuorlMath* self, VARIANT Value, VARIANT Default, VARIANT* result);
  HRESULT (*ZeroAsNull)(QuorlMath* self, VARIANT Value, VARIANT* result);
  HRESULT (*ZeroOrOneAsNull)(QuorlMath* self, VARIANT Value, VARIANT* result);
  HRESULT (*NullOrZeroAsOne)(QuorlMath* self, VARIANT Value, VARIANT* result);
  HRESULT (*StdTruncate)(QuorlMath* self, VARIANT Nombre, int32_t Nombredecimales, VARIANT* result);
  HRESULT (*Round2019)(QuorlMath* self, VARIANT Nombre, VARIANT* result);
};

/* Quorl.Dates, a global class */
static const GUID QUORL_CLSID_Dates = {
    0x64CCDCF9, 0x43C4, 0x42F3, {0xA2, 0x91, 0x20, 0xBA, 0x6C, 0xFB, 0x93, 0xFE}};
static const GUID QUORL_IID_Dates = {
    0x37D047C9, 0x7357, 0x4153, {0xA4, 0xDA, 0x56, 0x52, 0x68, 0x22, 0xB3, 0x75}};
struct QuorlDatesTable {
  QUORL_DISPATCH_SLOTS(QuorlDates);
  HRESULT (*IsDateOrEmpty)(QuorlDates* self, BSTR Text, int16_t* result);
};

/* Quorl.Strings, a global class */
static const GUID QUORL_CLSID_Strings = {
    0x98DAA4BF, 0x9001, 0x4DA6, {0x97, 0xB6, 0xCB, 0xDB, 0x5E, 0x6A, 0xEA, 0x04}};
static const GUID QUORL_IID_Strings = {
    0xA40F8266, 0x96AA, 0x4AED, {0xB7, 0xE1, 0xED, 0x68, 0xED, 0xB5, 0xA5, 0x0E}};
static const GUID QUORL_IID_Strings_v0 = {
    0x6659B554, 0x365B, 0x46F0, {0xAB, 0x29, 0x23, 0x47, 0x6B, 0x18, 0x48, 0xC4}};
static const GUID QUORL_IID_Strings_v1 = {
    0xA3003324, 0x1F1E, 0x4614, {0x8B, 0xF6, 0x7D, 0xE9, 0x48, 0x35, 0xD9, 0xDF}};
static const GUID QUORL_IID_Strings_v2 = {
    0x777A5BBB, 0xB394, 0x43CE, {0xBC, 0x2B, 0xBF, 0x67, 0x27, 0x2E, 0xFE, 0x23}};
static const GUID QUORL_IID_Strings_v3 = {
    0x90237DE7, 0x7A98, 0x4D64, {0xAA, 0x52, 0x14, 0x1D, 0xA8, 0x9E, 0x6D, 0xF7}};
static const GUID QUORL_IID_Strings_v4 = {
    0x47E37C09, 0x13D3, 0x4391, {0x92, 0x16, 0x1E, 0x63, 0x3E, 0x37, 0xC5, 0x96}};
static const GUID QUORL_IID_Strings_v5 = {
    0x76428C7A, 0x378B, 0x4F0C, {0xAC, 0xF7, 0x59, 0xA7, 0x9C, 0xF8, 0xC3, 0x2A}};
struct QuorlStringsTable {
  QUORL_DISPATCH_SLOTS(QuorlStrings);
  HRESULT (*IsEmptyString)(QuorlStrings* self, BSTR Text, int16_t* result);
  HRESULT (*IfIsNull)(QuorlStrings* self, VARIANT Value, VARIANT ReplaceValue, VARIANT* result);
  HRESULT (*Padl)(QuorlStrings* self, BSTR Text, int32_t Length, BSTR PadChar, BSTR* result);
  HRESULT (*Padr)(QuorlStrings* self, BSTR Text, int32_t Length, BSTR PadChar, BSTR* result);
  HRESULT (*Pluriel)(QuorlStrings* self, BSTR Text, BSTR* result);
  HRESULT (*ProperCase)(QuorlStrings* self, BSTR Text, BSTR* result);
  HRESULT (*NbrTokens)(QuorlStrings* self, BSTR Text, BSTR Separator, BSTR* result);
  HRESULT (*GetToken)(QuorlStrings* self, BSTR Text, BSTR Separator, int32_t Index, BSTR* result);
  HRESULT (*StrCount)(QuorlStrings* self, BSTR Text, BSTR SubString, int32_t* result);
  HRESULT (*StrTran)(QuorlStrings* self, BSTR Text, BSTR OldSubString, BSTR NewSubString, BSTR* result);
  HRESULT (*AphpaNumericOf)(QuorlStrings* self, BSTR Text, BSTR* result);
  HRESULT (*DigitsOf)(QuorlStrings* self, BSTR Text, BSTR* result);
  HRESULT (*WinVal)(QuorlStrings* self, BSTR Text, double* result);
  HRESULT (*AlphpaNumericOf)(QuorlStrings* self, BSTR Text, BSTR* result);
  HRESULT (*AlphpabeticOf)(QuorlStrings* self, BSTR Text, BSTR* result);
  HRESULT (*RTrimEx)(QuorlStrings* self, BSTR Text, BSTR Char, BSTR* result);
  HRESULT (*LTrimEx)(QuorlStrings* self, BSTR Text, BSTR Char, BSTR* result);
  HRESULT (*IsVoyelle)(QuorlStrings* self, BSTR Text, int16_t* result);
  HRESULT (*IndexOf)(QuorlStrings* self, BSTR cText, BSTR cSubString, int32_t nStart, int32_t nCount, int16_t* result);
  HRESULT (*Contains)(QuorlStrings* self, BSTR cText, BSTR cSubString, int32_t nStart, int32_t nCount, int16_t* result);
  HRESULT (*IndexOfAny)(QuorlStrings* self, BSTR cText, BSTR cAnyOf, int32_t nStart, int32_t nCount, int16_t* result);
  HRESULT (*ContainsAny)(QuorlStrings* self, BSTR cText, BSTR cAnyOf, int32_t nStart, int32_t nCount, int16_t* result);
  HRESULT (*IsDigits)(QuorlStrings* self, BSTR Text, int16_t* result);
  HRESULT (*TruncateMiddle)(QuorlStrings* self, BSTR Text, int32_t Length, int32_t DotsPosition, BSTR* result);
};

/* Quorl.DbLib, a global class */
static const GUID QUORL_CLSID_DbLib = {
    0x3AD8132F, 0x7B98, 0x4D84, {0x94, 0xE8, 0xF9, 0xA8, 0x11, 0xD6, 0x9E, 0x6C}};
static const GUID QUORL_IID_DbLib = {
    0xA6202E8E, 0x6D49, 0x4B63, {0x91, 0x04, 0x78, 0x3E, 0x54, 0xFA, 0x3E, 0x74}};
struct QuorlDbLibTable {
  QUORL_DISPATCH_SLOTS(QuorlDbLib);
  HRESULT (*FieldPos)(QuorlDbLib* self, BSTR FieldName, VARIANT Fields, int16_t* result);
  HRESULT (*StrFieldValue)(QuorlDbLib* self, VARIANT FieldValue, BSTR* result);
  HRESULT (*GuidFieldValue)(QuorlDbLib* self, VARIANT GUID, BSTR* result);
  HRESULT (*NumFieldValue)(QuorlDbLib* self, VARIANT FieldValue, VARIANT* result);
  HRESULT (*DateFieldValue)(QuorlDbLib* self, VARIANT FieldValue, double* result);
  HRESULT (*StrDateFieldValue)(QuorlDbLib* self, VARIANT FieldValue, BSTR* result);
  HRESULT (*BoolFieldValue)(QuorlDbLib* self, VARIANT FieldValue, int16_t* result);
  HRESULT (*TriStateFieldValue)(QuorlDbLib* self, VARIANT FieldValue, int16_t* result);
  HRESULT (*StrToField)(QuorlDbLib* self, BSTR Text, VARIANT* result);
  HRESULT (*StrGuidToField)(QuorlDbLib* self, BSTR Text, VARIANT* result);
  HRESULT (*StrNumToField)(QuorlDbLib* self, BSTR Text, VARIANT* result);
  HRESULT (*StrDateToField)(QuorlDbLib* self, BSTR Text, VARIANT* result);
  HRESULT (*TriStateToBoolField)(QuorlDbLib* self, int32_t NumValue, VARIANT* result);
  HRESULT (*DotStrFieldValue)(QuorlDbLib* self, VARIANT FieldValue, BSTR* result);
  HRESULT (*DotStrNumToField)(QuorlDbLib* self, BSTR Text, VARIANT* result);
  HRESULT (*DuplicateQuotte)(QuorlDbLib* self, BSTR Text, BSTR* result);
  HRESULT (*SpaceIfEmptyOrNull)(QuorlDbLib* self, VARIANT xVar, BSTR* result);
};

/* Quorl.RollBuffer, made by its hosts */
static const GUID QUORL_CLSID_RollBuffer = {
    0x04B01553, 0x355D, 0x4895, {0xA2, 0x6A, 0x3C, 0xD3, 0xD0, 0x67, 0xFB, 0x90}};
static const GUID QUORL_IID_RollBuffer = {
    0x970A1A4F, 0x9A4F, 0x409A, {0x98, 0x91, 0x85, 0x90, 0x23, 0xEC, 0x99, 0xD1}};
struct QuorlRollBufferTable {
  QUORL_DISPATCH_SLOTS(QuorlRollBuffer);
  HRESULT (*get_BufferSize)(QuorlRollBuffer* self, int32_t* result);
  HRESULT (*put_BufferSize)(QuorlRollBuffer* self, int32_t New_BufferSize);
  HRESULT (*get_Count)(QuorlRollBuffer* self, int32_t* result);
  HRESULT (*get_Index)(QuorlRollBuffer* self, int32_t* result);
  HRESULT (*put_Index)(QuorlRollBuffer* self, int32_t New_Index);
  HRESULT (*get_CurrentItem)(QuorlRollBuffer* self, VARIANT* result);
  HRESULT (*put_CurrentItem)(QuorlRollBuffer* self, VARIANT New_Item);
  HRESULT (*get_Items)(QuorlRollBuffer* self, int32_t Index, VARIANT* result);
  HRESULT (*get_BOF)(QuorlRollBuffer* self, int16_t* result);
  HRESULT (*get_OnFirst)(QuorlRollBuffer* self, int16_t* result);
  HRESULT (*get_OnLast)(QuorlRollBuffer* self, int16_t* result);
  HRESULT (*get_EOF)(QuorlRollBuffer* self, int16_t* result);
  HRESULT (*Clear)(QuorlRollBuffer* self);
  HRESULT (*AddItem)(QuorlRollBuffer* self, VARIANT Item);
  HRESULT (*MoveFirst)(QuorlRollBuffer* self);
  HRESULT (*MoveLast)(QuorlRollBuffer* self);
  HRESULT (*MoveNext)(QuorlRollBuffer* self);
  HRESULT (*MovePrevious)(QuorlRollBuffer* self);
};

/* Quorl.ComboBoxEx, a global class */
static const GUID QUORL_CLSID_ComboBoxEx = {
    0xEEBB6992, 0xA8B7, 0x4074, {0x81, 0xB2, 0x4C, 0x0D, 0xFB, 0xF8, 0x0D, 0xF3}};
static const GUID QUORL_IID_ComboBoxEx = {
    0x6A28A832, 0x185F, 0x40F4, {0x8C, 0xC7, 0xD8, 0x4B, 0x01, 0x52, 0xE1, 0x45}};
struct QuorlComboBoxExTable {
  QUORL_DISPATCH_SLOTS(QuorlComboBoxEx);
  HRESULT (*CmbSelectMatchString)(QuorlComboBoxEx* self, QuorlDispatch* Combo, BSTR Text, int32_t Length);
  HRESULT (*CmbSelectMatchToken)(QuorlComboBoxEx* self, QuorlDispatch* Combo, BSTR Text, int32_t Index);
  HRESULT (*CmbSelectMatchSubString)(QuorlComboBoxEx* self, QuorlDispatch* Combo, BSTR Text, int32_t Start, int32_t Length);
  HRESULT (*CmbSelectItemData)(QuorlComboBoxEx* self, QuorlDispatch* Combo, int32_t ItemData);
  HRESULT (*CmbCurrentItemData)(QuorlComboBoxEx* self, QuorlDispatch* Combo, int32_t DefValue, int32_t* result);
};

/* Quorl.Forms, a global class */
static const GUID QUORL_CLSID_Forms = {
    0x78B99E7A, 0x7BC2, 0x4EC3, {0x8D, 0x01, 0xC1, 0xF1, 0x31, 0x84, 0x74, 0x92}};
static const GUID QUORL_IID_Forms = {
    0x59A250C7, 0xDE4E, 0x4A24, {0x80, 0xC1, 0x76, 0x62, 0x63, 0x8B, 0x0E, 0xC8}};
struct QuorlFormsTable {
  QUORL_DISPATCH_SLOTS(QuorlForms);
  HRESULT (*InitFormSettings)(QuorlForms* self, QuorlDispatch* Frm, QuorlDispatch* Container, double Width, double Height);
  HRESULT (*SaveFormSettings)(QuorlForms* self, QuorlRegistry* Reg, QuorlDispatch* Frm, VARIANT FrmName);
  HRESULT (*GetFormSettings)(QuorlForms* self, QuorlRegistry* Reg, QuorlDispatch* Frm, VARIANT FrmName);
};

/* Quorl.Global, a global class */
static const GUID QUORL_CLSID_Global = {
    0x5E5BD2A4, 0xC29D, 0x475F, {0x92, 0xBB, 0xEE, 0xF3, 0x7A, 0xF4, 0x29, 0x0B}};
static const GUID QUORL_IID_Global = {
    0x7A2514A3, 0xDD85, 0x43A6, {0x9E, 0x8F, 0x8F, 0xF3, 0xC7, 0xD4, 0x3B, 0xF6}};
struct QuorlGlobalTable {
  QUORL_DISPATCH_SLOTS(QuorlGlobal);
};

/* Quorl.Regional, a global class */
static const GUID QUORL_CLSID_Regional = {
    0xE60E8228, 0xF086, 0x4E47, {0x98, 0x9B, 0x00, 0xE9, 0x7C, 0x56, 0xE1, 0x34}};
static const GUID QUORL_IID_Regional = {
    0x9F592C2F, 0x6699, 0x4520, {0xA7, 0x81, 0x44, 0xB5, 0x7C, 0x1C, 0x5F, 0x1E}};
static const GUID QUORL_IID_Regional_v0 = {
    0x1BBE009C, 0x0AB9, 0x4BF7, {0x8D, 0xB3, 0xA2, 0x19, 0x48, 0xAC, 0xF3, 0x51}};
static const GUID QUORL_IID_Regional_v1 = {
    0xAA581D9B, 0xCA48, 0x4512, {0xB2, 0xF2, 0x73, 0x49, 0x4D, 0xA9, 0xB7, 0x50}};
struct QuorlRegionalTable {
  QUORL_DISPATCH_SLOTS(QuorlRegional);
  HRESULT (*get_DecimalChar)(QuorlRegional* self, BSTR* result);
  HRESULT (*get_ThousandChar)(QuorlRegional* self, BSTR* result);
  HRESULT (*GetRegional)(QuorlRegional* self);
  HRESULT (*ConvertDecimalPoint)(QuorlRegional* self, int16_t* KeyAscii);
  HRESULT (*get_NumDecimalChar)(QuorlRegional* self, BSTR* result);
  HRESULT (*get_NumThousandChar)(QuorlRegional* self, BSTR* result);
  HRESULT (*get_MonDecimalChar)(QuorlRegional* self, BSTR* result);
  HRESULT (*get_MonThousandChar)(QuorlRegional* self, BSTR* result);
  HRESULT (*CheckRegional)(QuorlRegional* self, int16_t* result);
  HRESULT (*SetRegional)(QuorlRegional* self, int32_t regionalItem, BSTR Value);
};

/* Quorl.GUIDs, a global class */
static const GUID QUORL_CLSID_GUIDs = {
    0x02E7FC9A, 0x568B, 0x46D2, {0xAD, 0x39, 0xB0, 0x3B, 0xD8, 0x88, 0x13, 0x8F}};
static const GUID QUORL_IID_GUIDs = {
    0x937E5E4E, 0x17A5, 0x497E, {0x89, 0x83, 0xED, 0x6B, 0xD2, 0x37, 0x8B, 0xAA}};
struct QuorlGUIDsTable {
  QUORL_DISPATCH_SLOTS(QuorlGUIDs);
  HRESULT (*CreateGUID)(QuorlGUIDs* self, BSTR* result);
  HRESULT (*GetNullGUID)(QuorlGUIDs* self, BSTR* result);
  HRESULT (*GetZeroGUID)(QuorlGUIDs* self, BSTR* result);
  HRESULT (*GetNumGUID)(QuorlGUIDs* self, int32_t Number, BSTR* result);
};

/* Quorl.Registry, made by its hosts */
static const GUID QUORL_CLSID_Registry = {
    0x39C5FA8F, 0x7236, 0x4C1C, {0xAF, 0x82, 0xA4, 0x41, 0x05, 0xA9, 0xB7, 0x1D}};
static const GUID QUORL_IID_Registry = {
    0x4323591E, 0x72F8, 0x48A5, {0xBD, 0x24, 0x4A, 0x2D, 0xEA, 0xA3, 0xBA, 0x33}};
static const GUID QUORL_IID_Registry_v0 = {
    0xF984C753, 0xE2A0, 0x4770, {0xA9, 0x0A, 0xB6, 0xF1, 0xE7, 0xD2, 0x04, 0x1D}};
static const GUID QUORL_IID_Registry_v1 = {
    0x1FA05674, 0x1C71, 0x43FB, {0x96, 0x0F, 0x31, 0x34, 0x51, 0xE3, 0x97, 0x7A}};
struct QuorlRegistryTable {
  QUORL_DISPATCH_SLOTS(QuorlRegistry);
  HRESULT (*put_HKey)(QuorlRegistry* self, int32_t New_HKey);
  HRESULT (*get_HKey)(QuorlRegistry* self, int32_t* result);
  HRESULT (*put_RootKeyName)(QuorlRegistry* self, BSTR New_RootKeyName);
  HRESULT (*get_RootKeyName)(QuorlRegistry* self, BSTR* result);
  HRESULT (*InitAbsolute)(QuorlRegistry* self, int32_t New_HKey, BSTR New_RootKeyName);
  HRESULT (*InitApp)(QuorlRegistry* self, BSTR Compagny, BSTR AppName, int32_t Mode);
  HRESULT (*KeyFullName)(QuorlRegistry* self, VARIANT KeyName, BSTR* result);
  HRESULT (*KeyExists)(QuorlRegistry* self, VARIANT KeyName, int16_t* result);
  HRESULT (*GetValue)(QuorlRegistry* self, BSTR KeyName, BSTR ValueName, VARIANT Default, VARIANT* result);
  HRESULT (*SaveValue)(QuorlRegistry* self, BSTR KeyName, BSTR ValueName, VARIANT Value, int32_t dataType);
  HRESULT (*GetAllValues)(QuorlRegistry* self, BSTR KeyName, VARIANT* result);
  HRESULT (*GetSubKeys)(QuorlRegistry* self, BSTR KeyName, int32_t Levels, VARIANT* result);
  HRESULT (*DeleteKey)(QuorlRegistry* self, BSTR KeyName);
  HRESULT (*DeleteValue)(QuorlRegistry* self, BSTR KeyName, BSTR ValueName);
  HRESULT (*CopyKey)(QuorlRegistry* self, BSTR SourceKeyName, BSTR DestinationKeyName);
};

/* Quorl.Money, made by its hosts */
static const GUID QUORL_CLSID_Money = {
    0x0553AA64, 0xC47C, 0x467D, {0xB2, 0xDD, 0x13, 0xC6, 0x58, 0xFB, 0xCA, 0x74}};
static const GUID QUORL_IID_Money = {
    0xF503D1C2, 0x065D, 0x4814, {0xB9, 0xE9, 0xB6, 0x3B, 0x02, 0x6B, 0xDA, 0x21}};
struct QuorlMoneyTable {
  QUORL_DISPATCH_SLOTS(QuorlMoney);
  HRESULT (*get_Value)(QuorlMoney* self, int64_t* result);
  HRESULT (*put_Value)(QuorlMoney* self, int64_t New_Value);
  HRESULT (*get_Unit)(QuorlMoney* self, BSTR* result);
  HRESULT (*put_Unit)(QuorlMoney* self, BSTR New_Unit);
  HRESULT (*get_Units)(QuorlMoney* self, BSTR* result);
  HRESULT (*put_Units)(QuorlMoney* self, BSTR New_Units);
  HRESULT (*get_SubUnit)(QuorlMoney* self, BSTR* result);
  HRESULT (*put_SubUnit)(QuorlMoney* self, BSTR New_SubUnit);
  HRESULT (*get_SubUnits)(QuorlMoney* self, BSTR* result);
  HRESULT (*put_SubUnits)(QuorlMoney* self, BSTR New_SubUnits);
  HRESULT (*get_UnitKind)(QuorlMoney* self, int16_t* result);
  HRESULT (*put_UnitKind)(QuorlMoney* self, int32_t New_UnitKind);
  HRESULT (*get_SubUnitKind)(QuorlMoney* self, int16_t* result);
  HRESULT (*put_SubUnitKind)(QuorlMoney* self, int32_t New_SubUnitKind);
  HRESULT (*get_SubUnitRow)(QuorlMoney* self, int16_t* result);
  HRESULT (*put_SubUnitRow)(QuorlMoney* self, int32_t New_SubUnitRow);
  HRESULT (*get_Language)(QuorlMoney* self, BSTR* result);
  HRESULT (*put_Language)(QuorlMoney* self, BSTR New_Language);
  HRESULT (*ToText)(QuorlMoney* self, int64_t Value, BSTR* result);
};
/* clang-format on */
/* end generated */

/* ----------------------------------------------------------------- exports of a component -- */

/* What libquorl.so exports, for hosts that load it by themselves. */
typedef HRESULT (*DllGetClassObjectFunction)(const GUID* class_identifier, const GUID* identifier,
                                             void** out);
typedef HRESULT (*DllCanUnloadNowFunction)(void);
typedef HRESULT (*DllRegisterServerFunction)(void);
typedef HRESULT (*DllUnregisterServerFunction)(void);

#ifdef __cplusplus
}
#endif

#endif
