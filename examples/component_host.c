/*
 * A host in plain C: calls members through the table and by name, reads failures, and lends the
 * library a combo box of its own to call back.
 *
 *   component_host libquorl.so
 */
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "quorl/abi/quorl.h"

/* --------------------------------------------------------------------------------- small help --
 */

static void Require(HRESULT code, const char* what) {
  if (code >= 0) return;
  fprintf(stderr, "%s: 0x%08" PRIX32 "\n", what, (uint32_t)code);
  exit(1);
}

/* A text in UTF-8; this host's texts have no character beyond the 16-bit ones. */
static void Print(const char* before, BSTR text, const char* after) {
  printf("%s", before);
  for (uint32_t i = 0; i < SysStringLen(text); ++i) {
    const unsigned unit = text[i];
    if (unit < 0x80) {
      putchar((int)unit);
    } else if (unit < 0x800) {
      printf("%c%c", (char)(0xC0 | unit >> 6), (char)(0x80 | (unit & 0x3F)));
    } else {
      printf("%c%c%c", (char)(0xE0 | unit >> 12), (char)(0x80 | (unit >> 6 & 0x3F)),
             (char)(0x80 | (unit & 0x3F)));
    }
  }
  printf("%s", after);
}

/* Prints a text that this host owns and frees it. */
static void PrintOwned(const char* before, BSTR text, const char* after) {
  Print(before, text, after);
  SysFreeString(text);
}

static VARIANT TextVariant(const char16_t* text) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BSTR;
  value.value.bstr = SysAllocString(text);
  return value;
}

static VARIANT NumberVariant(int32_t number) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_I4;
  value.value.i4 = number;
  return value;
}

static void* Global(const char16_t* progid) {
  void* object = NULL;
  Require(QuorlGlobalObject(progid, &object), "QuorlGlobalObject");
  return object;
}

/* ------------------------------------------------------------------------- through the table -- */

static void CallThroughTheTable(void) {
  QuorlMath* math = Global(u"Quorl.Math");
  double up = 0;
  Require(math->table->RoundSup(math, 1.21, 1, &up), "RoundSup");
  printf("RoundSup(1.21, 1) = %.1f\n", up);

  /* A failure is a code; the thread keeps its source and description. */
  const HRESULT code = math->table->RoundSup(math, 1.21, -1, &up);
  printf("RoundSup(1.21, -1): 0x%08" PRIX32 "\n", (uint32_t)code);
  void* out = NULL;
  Require(GetErrorInfo(0, &out), "GetErrorInfo");
  QuorlErrorInfo* info = out;
  BSTR text = NULL;
  Require(info->table->GetSource(info, &text), "GetSource");
  PrintOwned("  ", text, ": ");
  Require(info->table->GetDescription(info, &text), "GetDescription");
  PrintOwned("", text, "\n");
  info->table->Release(info);
  math->table->Release(math);
}

static void WriteAnAmount(void) {
  void* out = NULL;
  Require(CoCreateInstance(&QUORL_CLSID_Money, NULL, 0, &QUORL_IID_Money, &out), "Money");
  QuorlMoney* money = out;
  BSTR unit = SysAllocString(u"euro");
  BSTR units = SysAllocString(u"euros");
  BSTR language = SysAllocString(u"FR");
  Require(money->table->put_Unit(money, unit), "Unit");
  Require(money->table->put_Units(money, units), "Units");
  Require(money->table->put_Language(money, language), "Language");
  SysFreeString(unit);
  SysFreeString(units);
  SysFreeString(language);
  BSTR words = NULL;
  Require(money->table->ToText(money, 80 * 10000, &words), "ToText");
  PrintOwned("ToText(80) = ", words, "\n");
  money->table->Release(money);
}

/* ----------------------------------------------------------------------------------- by name -- */

static void CallByName(void) {
  QuorlDispatch* strings = Global(u"Quorl.Strings");
  /* The member, and after it the two arguments that are passed by name. */
  const char16_t* names[] = {u"gettoken", u"Index", u"Text"};
  int32_t ids[3];
  Require(strings->table->GetIDsOfNames(strings, NULL, names, 3, 0, ids), "GetIDsOfNames");

  VARIANT arguments[] = {NumberVariant(2), TextVariant(u"un deux trois")};
  DISPPARAMS parameters = {arguments, &ids[1], 2, 2};
  VARIANT result;
  VariantInit(&result);
  Require(strings->table->Invoke(strings, ids[0], NULL, 0, DISPATCH_METHOD, &parameters, &result,
                                 NULL, NULL),
          "Invoke");
  Print("GetToken(Index := 2, Text := \"un deux trois\") = ", result.value.bstr, "\n");
  VariantClear(&result);

  /* A text that is no number: the failure comes in a record. */
  EXCEPINFO info;
  memset(&info, 0, sizeof info);
  VariantClear(&arguments[0]);
  arguments[0] = TextVariant(u"deux");
  const HRESULT code = strings->table->Invoke(strings, ids[0], NULL, 0, DISPATCH_METHOD,
                                              &parameters, &result, &info, NULL);
  printf("GetToken(Index := \"deux\"): 0x%08" PRIX32 ", Number %u\n", (uint32_t)code,
         (unsigned)info.scode & 0xFFFFu);
  PrintOwned("  ", info.source, ": ");
  PrintOwned("", info.description, "\n");
  VariantClear(&arguments[0]);
  VariantClear(&arguments[1]);
  strings->table->Release(strings);
}

/* -------------------------------------------------------------- an object that is called back --
 */

/* A combo box as the library knows it: four members, by name. */
typedef struct Combo {
  QuorlDispatch dispatch;
  uint32_t count;
  int32_t selected;
} Combo;

static const char16_t* const kEntries[] = {u"Anvers 2000", u"Bruxelles 1000", u"Namur 5000"};
static const char16_t* const kMembers[] = {u"ListCount", u"List", u"ItemData", u"ListIndex"};
enum { kListCount = 1, kList, kItemData, kListIndex };

static int IsSame(const char16_t* a, const char16_t* b) {
  while (*a != 0 && *a == *b) ++a, ++b;
  return *a == *b;
}

static uint32_t ComboAddRef(QuorlDispatch* self) { return ++((Combo*)self)->count; }
static uint32_t ComboRelease(QuorlDispatch* self) { return --((Combo*)self)->count; }
static HRESULT ComboQuery(QuorlDispatch* self, const GUID* identifier, void** out) {
  (void)identifier;
  ComboAddRef(self);
  *out = self;
  return S_OK;
}
static HRESULT ComboTypeInfoCount(QuorlDispatch* self, uint32_t* count) {
  (void)self;
  *count = 0;
  return S_OK;
}
static HRESULT ComboTypeInfo(QuorlDispatch* self, uint32_t index, uint32_t lcid, void** out) {
  (void)self, (void)index, (void)lcid;
  *out = NULL;
  return DISP_E_BADINDEX;
}
static HRESULT ComboIds(QuorlDispatch* self, const GUID* identifier, const char16_t** names,
                        uint32_t count, uint32_t lcid, int32_t* ids) {
  (void)self, (void)identifier, (void)count, (void)lcid;
  for (int32_t i = 0; i < 4; ++i) {
    if (IsSame(kMembers[i], names[0])) return ids[0] = i + 1, S_OK;
  }
  return ids[0] = -1, DISP_E_UNKNOWNNAME;
}
static HRESULT ComboInvoke(QuorlDispatch* self, int32_t id, const GUID* identifier, uint32_t lcid,
                           uint16_t flags, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* info,
                           uint32_t* wrong_argument) {
  (void)identifier, (void)lcid, (void)info, (void)wrong_argument;
  Combo* combo = (Combo*)self;
  if (id == kListCount) {
    *result = NumberVariant(3);
  } else if (id == kListIndex && (flags & DISPATCH_PROPERTYPUT) != 0) {
    combo->selected = parameters->arguments[0].value.i2; /* comes as an Int16, named -3 */
  } else if (id == kListIndex) {
    *result = NumberVariant(combo->selected);
  } else if (id == kList) {
    const int16_t* index = parameters->arguments[0].value.reference; /* comes by reference */
    *result = TextVariant(kEntries[*index]);
  } else {
    return DISP_E_MEMBERNOTFOUND;
  }
  return S_OK;
}

static const QuorlDispatchTable kComboTable = {ComboQuery,         ComboAddRef,   ComboRelease,
                                               ComboTypeInfoCount, ComboTypeInfo, ComboIds,
                                               ComboInvoke};

static void LendACombo(void) {
  Combo combo = {{&kComboTable}, 1, -1};
  QuorlComboBoxEx* helper = Global(u"Quorl.ComboBoxEx");
  BSTR code = SysAllocString(u"1000");
  Require(helper->table->CmbSelectMatchToken(helper, &combo.dispatch, code, 2), "token");
  printf("CmbSelectMatchToken selected entry %" PRId32 "; references left: %" PRIu32 "\n",
         combo.selected, combo.count);
  int32_t data = 0;
  const HRESULT lacking = helper->table->CmbCurrentItemData(helper, &combo.dispatch, 0, &data);
  printf("CmbCurrentItemData, which this combo lacks: 0x%08" PRIX32 "\n", (uint32_t)lacking);
  SysFreeString(code);
  helper->table->Release(helper);
}

/* The path's bytes as 16-bit units; this host is given a path in ASCII. */
static void Widen(const char* text, char16_t* out, size_t capacity) {
  size_t i = 0;
  for (; text[i] != 0 && i + 1 < capacity; ++i) out[i] = (unsigned char)text[i];
  out[i] = 0;
}

int main(int count, char** arguments) {
  char16_t path[4096];
  if (count != 2) {
    fprintf(stderr, "usage: component_host libquorl.so\n");
    return 2;
  }
  Widen(arguments[1], path, sizeof path / sizeof *path);
  /* Settings in memory, so that a run leaves nothing behind; a host of its own keeps the default.
   */
  Require(QuorlSetStore(NULL, NULL), "QuorlSetStore");
  Require(QuorlSetLocale(u"fr-BE"), "QuorlSetLocale");
  Require(QuorlRegister(path), "QuorlRegister");
  CallThroughTheTable();
  WriteAnAmount();
  CallByName();
  LendACombo();
  return 0;
}
