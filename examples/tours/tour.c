/*
 * The tour in plain C: the same program stands here in C++, Python and JavaScript, and prints the
 * same. Members are called through the table of their class; GetToken is called by name.
 *
 *   tour_c libquorl.so
 */
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "quorl/abi/quorl.h"

/* -------------------------------------------------------------------------------- small help -- */

static void Require(HRESULT code, const char* what) {
  if (code >= 0) return;
  fprintf(stderr, "%s: 0x%08" PRIX32 "\n", what, (uint32_t)code);
  exit(1);
}

/* Prints a text in UTF-8 and frees it. */
static void PrintOwned(BSTR text, const char* after) {
  char* shown = NULL;
  Require(QuorlToUtf8(text, &shown, NULL), "QuorlToUtf8");
  printf("%s%s", shown, after);
  QuorlFreeUtf8(shown);
  SysFreeString(text);
}

static VARIANT OfText(const char16_t* text) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BSTR;
  value.value.bstr = SysAllocString(text);
  return value;
}

static VARIANT OfInt32(int32_t number) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_I4;
  value.value.i4 = number;
  return value;
}

static VARIANT OfDouble(double number) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_R8;
  value.value.r8 = number;
  return value;
}

static VARIANT OfFalse(void) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BOOL;
  return value;
}

static VARIANT LeftOut(void) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_ERROR;
  value.value.error = DISP_E_PARAMNOTFOUND;
  return value;
}

static void* Global(const char16_t* progid) {
  void* object = NULL;
  Require(QuorlGlobalObject(progid, &object), "QuorlGlobalObject");
  return object;
}

static void* New(const GUID* class_identifier, const GUID* identifier) {
  void* object = NULL;
  Require(CoCreateInstance(class_identifier, NULL, 0, identifier, &object), "CoCreateInstance");
  return object;
}

/* ---------------------------------------------------------------- objects of the host's own -- */

/* An object with the members that it lists by name; their identifiers are their places, from 1.
 * Combo and form differ in what they do when they are invoked. */
typedef struct Host {
  QuorlDispatch dispatch;
  uint32_t count;
  const char16_t* const* names; /* ended by a null pointer */
  double lengths[4];            /* of the form: left, top, width, height */
  int32_t selected;             /* of the combo */
} Host;

static int IsSame(const char16_t* a, const char16_t* b) {
  while (*a != 0 && *a == *b) ++a, ++b;
  return *a == *b;
}

static uint32_t HostAddRef(QuorlDispatch* self) { return ++((Host*)self)->count; }
static uint32_t HostRelease(QuorlDispatch* self) { return --((Host*)self)->count; }
static HRESULT HostQuery(QuorlDispatch* self, const GUID* identifier, void** out) {
  const int is_known = memcmp(identifier, &IID_IUnknown, sizeof(GUID)) == 0 ||
                       memcmp(identifier, &IID_IDispatch, sizeof(GUID)) == 0;
  *out = is_known ? self : NULL;
  if (!is_known) return E_NOINTERFACE;
  HostAddRef(self);
  return S_OK;
}
static HRESULT HostTypeInfoCount(QuorlDispatch* self, uint32_t* count) {
  (void)self;
  *count = 0;
  return S_OK;
}
static HRESULT HostTypeInfo(QuorlDispatch* self, uint32_t index, uint32_t lcid, void** out) {
  (void)self, (void)index, (void)lcid;
  *out = NULL;
  return DISP_E_BADINDEX;
}
static HRESULT HostIds(QuorlDispatch* self, const GUID* identifier, const char16_t** names,
                       uint32_t count, uint32_t lcid, int32_t* ids) {
  (void)identifier, (void)count, (void)lcid;
  const char16_t* const* known = ((Host*)self)->names;
  for (int32_t i = 0; known[i] != NULL; ++i) {
    if (IsSame(known[i], names[0])) return ids[0] = i + 1, S_OK;
  }
  return ids[0] = -1, DISP_E_UNKNOWNNAME;
}

#define HOST_TABLE(Invoke) \
  { HostQuery, HostAddRef, HostRelease, HostTypeInfoCount, HostTypeInfo, HostIds, Invoke }

static const char16_t* const kComboMembers[] = {u"ListCount", u"List", u"ItemData", u"ListIndex",
                                                NULL};
enum { kListCount = 1, kList, kItemData, kListIndex };
static const char16_t* const kEntries[] = {u"Anvers 2000", u"Bruxelles 1000", u"Namur 5000"};

static HRESULT ComboInvoke(QuorlDispatch* self, int32_t id, const GUID* identifier, uint32_t lcid,
                           uint16_t flags, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* info,
                           uint32_t* wrong_argument) {
  (void)identifier, (void)lcid, (void)info, (void)wrong_argument;
  Host* combo = (Host*)self;
  const VARIANT* given = parameters->arguments;
  if (id == kListCount) {
    *result = OfInt32(3);
  } else if (id == kList) {
    *result = OfText(kEntries[*(int16_t*)given->value.reference]); /* comes by reference */
  } else if (id == kItemData) {
    *result = OfInt32(100 + (given->vt == VT_I2 ? given->value.i2 : given->value.i4));
  } else if ((flags & DISPATCH_PROPERTYPUT) != 0) {
    combo->selected = given->value.i2; /* comes as an Int16, named -3 */
  } else {
    *result = OfInt32(combo->selected);
  }
  return S_OK;
}
static const QuorlDispatchTable kComboTable = HOST_TABLE(ComboInvoke);

/* A combo box that refuses: its failure reaches the caller as it is. */
static HRESULT ClosedInvoke(QuorlDispatch* self, int32_t id, const GUID* identifier, uint32_t lcid,
                            uint16_t flags, DISPPARAMS* parameters, VARIANT* result,
                            EXCEPINFO* info, uint32_t* wrong_argument) {
  (void)self, (void)id, (void)identifier, (void)lcid, (void)flags, (void)parameters, (void)result;
  (void)wrong_argument;
  info->scode = QUORL_CODE(0x800A0000 + 1004);
  info->source = SysAllocString(u"Combo");
  info->description = SysAllocString(u"La liste est fermée.");
  return DISP_E_EXCEPTION;
}
static const QuorlDispatchTable kClosedTable = HOST_TABLE(ClosedInvoke);

static const char16_t* const kFormMembers[] = {
    u"Left",        u"Top",      u"Width",       u"Height", u"Name",
    u"BorderStyle", u"MDIChild", u"WindowState", u"Move",   NULL};
enum { kLeft = 1, kHeight = 4, kName, kBorderStyle, kMdiChild, kWindowState, kMove };

static void MoveForm(Host* form, const DISPPARAMS* parameters) {
  for (uint32_t i = 0; i < parameters->argument_count; ++i) {
    form->lengths[i] = parameters->arguments[parameters->argument_count - 1 - i].value.r8;
  }
}

static HRESULT FormInvoke(QuorlDispatch* self, int32_t id, const GUID* identifier, uint32_t lcid,
                          uint16_t flags, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* info,
                          uint32_t* wrong_argument) {
  (void)identifier, (void)lcid, (void)info, (void)wrong_argument;
  Host* form = (Host*)self;
  if (id == kMove) {
    MoveForm(form, parameters);
  } else if ((flags & DISPATCH_PROPERTYPUT) != 0) {
    /* WindowState is all that is put, and this form has the normal state alone. */
  } else if (id == kName) {
    *result = OfText(u"Orders");
  } else if (id == kBorderStyle) {
    *result = OfInt32(2);
  } else if (id == kMdiChild) {
    *result = OfFalse();
  } else if (id == kWindowState) {
    *result = OfInt32(0);
  } else {
    *result = OfDouble(form->lengths[id - kLeft]);
  }
  return S_OK;
}
static const QuorlDispatchTable kFormTable = HOST_TABLE(FormInvoke);

/* --------------------------------------------------------------------------------- the tour -- */

static void PutText(HRESULT (*put)(QuorlMoney*, BSTR), QuorlMoney* money, const char16_t* text) {
  BSTR lent = SysAllocString(text);
  Require(put(money, lent), "a property of Money");
  SysFreeString(lent);
}

static void WriteAnAmount(void) {
  QuorlMoney* money = New(&QUORL_CLSID_Money, &QUORL_IID_Money);
  PutText(money->table->put_Unit, money, u"euro");
  PutText(money->table->put_Units, money, u"euros");
  PutText(money->table->put_SubUnit, money, u"cent");
  PutText(money->table->put_SubUnits, money, u"cents");
  PutText(money->table->put_Language, money, u"FR");
  Require(money->table->put_SubUnitRow(money, 2), "SubUnitRow");
  BSTR words = NULL;
  Require(money->table->ToText(money, INT64_C(12802100), &words), "ToText");
  printf("amount in words: ");
  PrintOwned(words, "\n");
  money->table->Release(money);
}

static void Round(QuorlMath* math) {
  double up = 0;
  Require(math->table->RoundSup(math, 1.21, 1, &up), "RoundSup");
  printf("1.21 rounded up: %g\n", up);
}

static void SplitByName(void) {
  QuorlDispatch* strings = Global(u"Quorl.Strings");
  /* The member, and behind it the arguments that are passed by name. */
  const char16_t* names[] = {u"GetToken", u"Index", u"Text"};
  int32_t ids[3];
  Require(strings->table->GetIDsOfNames(strings, NULL, names, 3, 0, ids), "GetIDsOfNames");
  VARIANT arguments[] = {OfInt32(2), OfText(u"un deux trois")};
  DISPPARAMS parameters = {arguments, &ids[1], 2, 2};
  VARIANT result;
  VariantInit(&result);
  Require(strings->table->Invoke(strings, ids[0], NULL, 0, DISPATCH_METHOD, &parameters, &result,
                                 NULL, NULL),
          "GetToken");
  printf("second token: ");
  PrintOwned(result.value.bstr, "\n");
  VariantClear(&arguments[1]);
  strings->table->Release(strings);
}

static QuorlRegistry* OpenSettings(void) {
  QuorlRegistry* settings = New(&QUORL_CLSID_Registry, &QUORL_IID_Registry);
  BSTR company = SysAllocString(u"Maison");
  BSTR application = SysAllocString(u"Caisse");
  Require(settings->table->InitApp(settings, company, application, qlWinRegCurrentUser), "InitApp");
  SysFreeString(company);
  SysFreeString(application);
  return settings;
}

static void KeepSettings(QuorlRegistry* settings) {
  BSTR key = SysAllocString(u"Ticket");
  BSTR copies = SysAllocString(u"Copies");
  BSTR font = SysAllocString(u"Font");
  VARIANT none = OfText(u"none yet");
  VARIANT found;
  VariantInit(&found);
  Require(settings->table->SaveValue(settings, key, copies, OfInt32(2), REG_NONE), "SaveValue");
  Require(settings->table->GetValue(settings, key, copies, OfInt32(1), &found), "GetValue");
  printf("copies: %" PRId32 "\n", found.value.i4);
  Require(settings->table->GetValue(settings, key, font, none, &found), "GetValue");
  printf("font: ");
  PrintOwned(found.value.bstr, "\n");
  VariantClear(&none);
  SysFreeString(font);
  SysFreeString(copies);
  SysFreeString(key);
}

static void LendACombo(QuorlComboBoxEx* helper) {
  Host combo = {{&kComboTable}, 1, kComboMembers, {0}, -1};
  BSTR code = SysAllocString(u"1000");
  Require(helper->table->CmbSelectMatchToken(helper, &combo.dispatch, code, 2), "the combo");
  int32_t data = 0;
  Require(helper->table->CmbCurrentItemData(helper, &combo.dispatch, 0, &data), "the combo");
  printf("combo: entry %" PRId32 ", data %" PRId32 "\n", combo.selected, data);
  SysFreeString(code);
}

static void LendAForm(QuorlRegistry* settings) {
  Host form = {{&kFormTable}, 1, kFormMembers, {0, 0, 400, 300}, 0};
  QuorlForms* forms = Global(u"Quorl.Forms");
  const QuorlFormsTable* table = forms->table;
  Require(table->InitFormSettings(forms, &form.dispatch, NULL, 800, 600), "InitFormSettings");
  Require(table->SaveFormSettings(forms, settings, &form.dispatch, LeftOut()), "SaveFormSettings");
  form.lengths[0] = 0;
  Require(table->GetFormSettings(forms, settings, &form.dispatch, LeftOut()), "GetFormSettings");
  printf("form: %g, %g, %g by %g\n", form.lengths[0], form.lengths[1], form.lengths[2],
         form.lengths[3]);
  table->Release(forms);
}

/* A failure is a code; the thread keeps its source and description. */
static void ShowFailure(HRESULT code) {
  void* out = NULL;
  Require(GetErrorInfo(0, &out), "GetErrorInfo");
  QuorlErrorInfo* info = out;
  BSTR text = NULL;
  Require(info->table->GetSource(info, &text), "GetSource");
  printf("failure %" PRIu32 " of ", (uint32_t)code & 0xFFFF);
  PrintOwned(text, ": ");
  text = NULL;
  Require(info->table->GetDescription(info, &text), "GetDescription");
  PrintOwned(text, "\n");
  info->table->Release(info);
}

int main(int count, char** arguments) {
  BSTR path = NULL;
  if (count != 2) {
    fprintf(stderr, "usage: tour_c libquorl.so\n");
    return 2;
  }
  Require(QuorlFromUtf8(arguments[1], &path), "QuorlFromUtf8");
  /* Settings in memory: the tour leaves nothing behind. */
  Require(QuorlSetStore(NULL, NULL), "QuorlSetStore");
  Require(QuorlRegister(path), "QuorlRegister");
  SysFreeString(path);
  Require(QuorlSetLocale(u"fr-BE"), "QuorlSetLocale");
  Require(QuorlSetScreen(1800, 1600), "QuorlSetScreen");
  QuorlMath* math = Global(u"Quorl.Math");
  QuorlComboBoxEx* helper = Global(u"Quorl.ComboBoxEx");
  QuorlRegistry* settings = OpenSettings();

  WriteAnAmount();
  Round(math);
  SplitByName();
  KeepSettings(settings);
  LendACombo(helper);
  LendAForm(settings);
  double up = 0;
  ShowFailure(math->table->RoundSup(math, 1.21, -1, &up));
  Host closed = {{&kClosedTable}, 1, kComboMembers, {0}, -1};
  ShowFailure(helper->table->CmbSelectItemData(helper, &closed.dispatch, 1));

  settings->table->Release(settings);
  helper->table->Release(helper);
  math->table->Release(math);
  return 0;
}
