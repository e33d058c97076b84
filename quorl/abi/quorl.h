/*
 * Quorl for hosts in any language: the binary form of values, objects and calls, in plain C11.
 *
 * A host loads libquorl_runtime.so, has the component registered once (QuorlRegister), and gets
 * objects from it:
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
 * the caller belongs to the caller, who ends it with SysFreeString or VariantClear. Before a call,
 * such a slot holds something valid or nothing (NULL, VariantInit): the callee ends what it holds.
 */
#ifndef QUORL_ABI_QUORL_H
#define QUORL_ABI_QUORL_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <uchar.h>
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---------------------------------------------------------------------------------- results -- */

/* 0 done, 1 false, negative failed. A failure of the library with a Number from 0 to 0xFFFF is
 * 0x800A0000 + Number; any other Number is given with its top bit set. */
typedef int32_t HRESULT;

#define QUORL_CODE(bits) ((HRESULT)(uint32_t)(bits))

enum {
  S_OK = 0,
  S_FALSE = 1
};

#define E_NOINTERFACE QUORL_CODE(0x80004002)           /* the object has no such interface */
#define E_POINTER QUORL_CODE(0x80004003)               /* a null pointer where none may stand */
#define E_UNEXPECTED QUORL_CODE(0x8000FFFF)            /* too late, or not in this state */
#define E_OUTOFMEMORY QUORL_CODE(0x8007000E)           /* memory ran out */
#define E_INVALIDARG QUORL_CODE(0x80070057)            /* an argument out of its contract */
#define DISP_E_MEMBERNOTFOUND QUORL_CODE(0x80020003)   /* no such member, or not of this kind */
#define DISP_E_PARAMNOTFOUND QUORL_CODE(0x80020004)    /* unknown named argument; also: Missing */
#define DISP_E_TYPEMISMATCH QUORL_CODE(0x80020005)     /* a value of no known type */
#define DISP_E_UNKNOWNNAME QUORL_CODE(0x80020006)      /* no member or argument of that name */
#define DISP_E_EXCEPTION QUORL_CODE(0x80020009)        /* the member failed; see EXCEPINFO */
#define DISP_E_BADINDEX QUORL_CODE(0x8002000B)         /* a subscript out of bounds */
#define DISP_E_BADPARAMCOUNT QUORL_CODE(0x8002000E)    /* too many arguments */
#define DISP_E_PARAMNOTOPTIONAL QUORL_CODE(0x8002000F) /* a required argument is absent */
#define CLASS_E_NOAGGREGATION QUORL_CODE(0x80040110)   /* no object is made as part of another */
#define CLASS_E_CLASSNOTAVAILABLE QUORL_CODE(0x80040111) /* no such class; or it is not global */
#define REGDB_E_CLASSNOTREG QUORL_CODE(0x80040154)     /* the class is not registered */
#define CO_E_CLASSSTRING QUORL_CODE(0x800401F3)        /* malformed identifier or unknown name */
#define QUORL_E_NOTLOADABLE QUORL_CODE(0x8007007E)     /* the component's library does not load */

/* ----------------------------------------------------------------------------------- values -- */

typedef struct GUID {
  uint32_t Data1;
  uint16_t Data2;
  uint16_t Data3;
  uint8_t Data4[8];
} GUID;

/* A text: UTF-16 units, their number of bytes in the uint32 just before them, a zero unit behind.
 * A null pointer is the empty text. Made and ended only by the Sys functions. */
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
  uint16_t features; /* kept by the library */
  uint32_t element_size;
  uint32_t locks;
  void* data;
  QuorlBound bounds[1]; /* as many as there are dimensions */
} SAFEARRAY;

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
    int64_t cy; /* ten-thousandths */
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
#define QUORL_UNKNOWN_SLOTS(Self)                                                 \
  HRESULT (*QueryInterface)(Self * self, const GUID* identifier, void** out);     \
  uint32_t (*AddRef)(Self * self);                                                \
  uint32_t (*Release)(Self * self)

/* Slots 3 to 6. In GetIDsOfNames the first name is a member's, those behind it its arguments'; an
 * argument's identifier is its position from 0. Case does not count. `identifier` and `lcid` are not
 * looked at. The last three pointers of Invoke may be null; wrong_argument tells which element of
 * the array is meant by DISP_E_PARAMNOTFOUND. */
#define QUORL_DISPATCH_SLOTS(Self)                                                              \
  QUORL_UNKNOWN_SLOTS(Self);                                                                    \
  HRESULT (*GetTypeInfoCount)(Self * self, uint32_t * count);                                   \
  HRESULT (*GetTypeInfo)(Self * self, uint32_t index, uint32_t lcid, void** out);               \
  HRESULT (*GetIDsOfNames)(Self * self, const GUID* identifier, const char16_t** names,         \
                           uint32_t count, uint32_t lcid, int32_t* ids);                        \
  HRESULT (*Invoke)(Self * self, int32_t id, const GUID* identifier, uint32_t lcid,             \
                    uint16_t flags, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* info,   \
                    uint32_t* wrong_argument)

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
  HRESULT (*CreateInstance)(QuorlClassFactory* self, void* outer, const GUID* identifier, void** out);
  HRESULT (*LockServer)(QuorlClassFactory* self, int32_t lock);
};

/* The same factory under QUORL_IID_GLOBAL_FACTORY, which only a global class's factory has. */
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

/* What GetTypeInfo(0, ...) gives: the class as its catalogue describes it. */

typedef struct QuorlTypeAttributes {
  GUID class_identifier;
  GUID interface_identifier; /* the current one */
  uint16_t major_version;
  uint16_t minor_version;
  uint16_t class_flags;
  uint16_t interface_flags;
  uint32_t functions; /* entries of the table behind the seven of every class */
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
  uint16_t type;   /* a VT number, with VT_BYREF where the member writes back */
  int16_t optional; /* -1 where it may be left out */
  BSTR name;       /* the caller's to end */
  VARIANT default_value; /* the caller's to end; Missing where there is none */
} QuorlArgument;

QUORL_OBJECT(QuorlTypeInfo);
struct QuorlTypeInfoTable {
  QUORL_UNKNOWN_SLOTS(QuorlTypeInfo);
  HRESULT (*GetTypeAttributes)(QuorlTypeInfo* self, QuorlTypeAttributes* out);
  /* The entry at a place of the table, from 0; DISP_E_BADINDEX behind the last. */
  HRESULT (*GetFunction)(QuorlTypeInfo* self, uint32_t index, QuorlFunction* out);
  HRESULT (*GetArgument)(QuorlTypeInfo* self, uint32_t index, uint32_t argument,
                         QuorlArgument* out);
  /* A member's name and help string by its identifier, the class's own for id -1. Each out pointer
   * may be null; the texts are the caller's to end. */
  HRESULT (*GetDocumentation)(QuorlTypeInfo* self, int32_t id, BSTR* name, BSTR* help);
  /* As the object's own GetIDsOfNames. */
  HRESULT (*GetIDsOfNames)(QuorlTypeInfo* self, const char16_t** names, uint32_t count,
                           int32_t* ids);
};

#define QUORL_SYSTEM_GUID(first) \
  { first, 0, 0, { 0xC0, 0, 0, 0, 0, 0, 0, 0x46 } }

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

/* ------------------------------------------------------------- functions of libquorl_runtime -- */

/* Texts. A null argument gives null; SysFreeString takes null. Length counts code units. */
BSTR SysAllocString(const char16_t* text);
/* `text` may be null: the units are then zeros. */
BSTR SysAllocStringLen(const char16_t* text, uint32_t length);
void SysFreeString(BSTR text);
uint32_t SysStringLen(BSTR text);

/* Variants. VariantClear ends what the Variant owns and leaves it Empty; what it holds by reference
 * belongs to someone else. VariantCopy clears the destination first and copies deep; an object is
 * counted once more, and a value by reference stays one. */
void VariantInit(VARIANT* variant);
HRESULT VariantClear(VARIANT* variant);
HRESULT VariantCopy(VARIANT* destination, const VARIANT* source);

/* Arrays of any VT number of a single value, or VT_VARIANT. `bounds` stand leftmost dimension
 * first. Null when an argument is out of its contract or memory ran out. */
SAFEARRAY* SafeArrayCreate(uint16_t vt, uint32_t dimensions, const QuorlBound* bounds);
/* Ends the elements, the data and the array. Fails with E_UNEXPECTED while data is accessed. */
HRESULT SafeArrayDestroy(SAFEARRAY* array);
uint32_t SafeArrayGetDim(SAFEARRAY* array);
/* Dimensions count from 1, leftmost first; DISP_E_BADINDEX for any other. */
HRESULT SafeArrayGetLBound(SAFEARRAY* array, uint32_t dimension, int32_t* bound);
HRESULT SafeArrayGetUBound(SAFEARRAY* array, uint32_t dimension, int32_t* bound);
HRESULT SafeArrayGetVartype(SAFEARRAY* array, uint16_t* vt);
/* Subscripts leftmost first. A text is put as the BSTR itself, an object as its pointer, everything
 * else as a pointer to it; what is put is copied. A text or Variant that is got is a copy that the
 * caller ends; `element` is written over, not ended. */
HRESULT SafeArrayGetElement(SAFEARRAY* array, const int32_t* subscripts, void* element);
HRESULT SafeArrayPutElement(SAFEARRAY* array, const int32_t* subscripts, void* element);
HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data);
HRESULT SafeArrayUnaccessData(SAFEARRAY* array);

/* The thread's failure of a call through a table. GetErrorInfo takes it away; S_FALSE and null when
 * there is none. SetErrorInfo takes null to clear it, and counts the object. */
HRESULT GetErrorInfo(uint32_t reserved, void** out);
HRESULT SetErrorInfo(uint32_t reserved, void* info);

/* "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}", either case on reading, with the braces. */
HRESULT CLSIDFromString(const char16_t* text, GUID* out);
/* Writes 38 characters and a zero; gives 39, or 0 if `capacity` is too small. */
int32_t StringFromGUID2(const GUID* guid, char16_t* buffer, int32_t capacity);

/* Classes, by what is registered below HKEY_CLASSES_ROOT. `context` is not looked at. */
HRESULT CLSIDFromProgID(const char16_t* progid, GUID* out);
HRESULT CoGetClassObject(const GUID* class_identifier, uint32_t context, void* reserved,
                         const GUID* identifier, void** out);
HRESULT CoCreateInstance(const GUID* class_identifier, void* outer, uint32_t context,
                         const GUID* identifier, void** out);

/* A counted dispatch pointer to the hidden instance of a global class, the same each time.
 * CLASS_E_CLASSNOTAVAILABLE for a class that is not global. */
HRESULT QuorlGlobalObject(const char16_t* progid, void** out);
/* "fr-BE" and the like; null or empty: the system's again. E_INVALIDARG for an unknown one. */
HRESULT QuorlSetLocale(const char16_t* name);
/* The ambient screen's size, 0 by 0 until then. E_INVALIDARG for a size out of range. */
HRESULT QuorlSetScreen(double width, double height);
/* The folders of the user's and the machine's settings. A null user folder: in memory; a null
 * machine folder: the usual one. E_UNEXPECTED, with nothing changed, once the store is in use. */
HRESULT QuorlSetStore(const char16_t* user_folder, const char16_t* machine_folder);
/* Loads a component and has it register or unregister itself. */
HRESULT QuorlRegister(const char16_t* path);
HRESULT QuorlUnregister(const char16_t* path);

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
