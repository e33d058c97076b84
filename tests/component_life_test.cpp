// The component as a whole: factories and the life of objects, registration, what hosts can look
// up, the library's file, the host examples.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <thread>
#include <vector>

#include "quorl/abi/internal/errors.hpp"
#include "tools/description.hpp"
#include "quorl/frame/internal/listing.hpp"
#include "tests/support/component.hpp"
#include "tests/support/recording_store.hpp"
#include "tests/support/store_content.hpp"
#include "tests/support/store_failing_allocation.hpp"

namespace quorl {

using namespace internal;
namespace {

using abi::operator==;

// What a program prints, standard error included; its end code behind it unless that is 0.
std::string OutputOf(const std::string& command) {
  std::string output;
  FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  char buffer[4096];
  while (const std::size_t size = std::fread(buffer, 1, sizeof(buffer), pipe)) {
    output.append(buffer, size);
  }
  const int code = pclose(pipe);
  return code == 0 ? output : output + "ended with " + std::to_string(code);
}

std::string ContentOfFile(const std::string& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

// ------------------------------------------------------------------------- objects and their life

TEST_F(Component, EveryIdentifierOfAClassGivesItsTable) {
  for (const ClassRow& row : frame::Catalogue()) {
    const auto object = library_.Make(row, IID_IUnknown);
    const auto& table = *object.Get()->table;
    for (const auto& [identifier, members] : row.interfaces) {
      const auto again = library_.Make(row, identifier);
      EXPECT_EQ(again.Get()->table, &table) << Utf8(row.name);
      Reference<QuorlDispatch> same;
      EXPECT_EQ(table.QueryInterface(object.Get(), &identifier, same.Receive()), S_OK);
      EXPECT_EQ(same.Get(), object.Get());
      Reference<QuorlSupportErrorInfo> support;
      EXPECT_EQ(table.QueryInterface(object.Get(), &IID_ISupportErrorInfo, support.Receive()),
                S_OK);
      const auto& supports = *support.Get()->table;
      EXPECT_EQ(supports.InterfaceSupportsErrorInfo(support.Get(), &identifier), S_OK);
      EXPECT_EQ(supports.InterfaceSupportsErrorInfo(support.Get(), &row.identifier), S_FALSE);
      Reference<QuorlDispatch> back;
      EXPECT_EQ(supports.QueryInterface(support.Get(), &IID_IUnknown, back.Receive()), S_OK);
      EXPECT_EQ(back.Get(), object.Get());
    }
    void* out = &out;
    EXPECT_EQ(table.QueryInterface(object.Get(), &row.identifier, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(table.QueryInterface(object.Get(), nullptr, &out), E_POINTER);
    EXPECT_EQ(table.QueryInterface(object.Get(), &IID_IUnknown, nullptr), E_POINTER);
  }
}

TEST_F(Component, FactoriesRefuseWhatTheyDoNotMake) {
  const ClassRow& math = *frame::FindClass(u"Math");
  const GUID& interface = math.CurrentInterface();
  void* out = &out;
  const auto is_refused = [&](HRESULT given, HRESULT code) {
    const bool is_null = out == nullptr;
    out = &out;
    return given == code && is_null;
  };
  EXPECT_TRUE(is_refused(library_.get_class_object(&interface, &IID_IClassFactory, &out),
                         CLASS_E_CLASSNOTAVAILABLE));
  EXPECT_TRUE(
      is_refused(library_.get_class_object(&math.identifier, &interface, &out), E_NOINTERFACE));
  EXPECT_TRUE(is_refused(library_.get_class_object(nullptr, &interface, &out), E_POINTER));
  EXPECT_TRUE(is_refused(library_.get_class_object(&math.identifier, nullptr, &out), E_POINTER));
  EXPECT_EQ(library_.get_class_object(&math.identifier, &interface, nullptr), E_POINTER);
  const auto factory = library_.Factory(math);
  const auto& table = *factory.Get()->table;
  EXPECT_TRUE(is_refused(table.CreateInstance(factory.Get(), &out, &IID_IUnknown, &out),
                         CLASS_E_NOAGGREGATION));
  EXPECT_TRUE(is_refused(table.CreateInstance(factory.Get(), nullptr, &IID_IErrorInfo, &out),
                         E_NOINTERFACE));
  EXPECT_TRUE(is_refused(table.CreateInstance(factory.Get(), nullptr, nullptr, &out), E_POINTER));
  EXPECT_EQ(table.CreateInstance(factory.Get(), nullptr, &IID_IUnknown, nullptr), E_POINTER);

  // A failure while the instance is made is one of a call through a table.
  RecordingStore failing(store_);
  const ScopedStore guard(failing);
  const auto regional = library_.Factory(*frame::FindClass(u"Regional"));
  failing.FailAt(0, kAccessDenied);
  EXPECT_TRUE(is_refused(
      regional.Get()->table->CreateInstance(regional.Get(), nullptr, &IID_IUnknown, &out),
      QUORL_CODE(0x800A0005)));
  EXPECT_EQ(TakenErrorInfo().source, u"qlWinRegistry");
}

TEST_F(Component, StaysLoadedAsLongAsAHostUsesIt) {
  const auto can_unload = [&] { return library_.can_unload_now() == S_OK; };
  const ClassRow& row = *frame::FindClass(u"RollBuffer");
  EXPECT_TRUE(can_unload());
  {
    const auto factory = library_.Factory(row);
    EXPECT_FALSE(can_unload());
    EXPECT_EQ(factory.Get()->table->LockServer(factory.Get(), 0), E_UNEXPECTED);
    EXPECT_EQ(factory.Get()->table->LockServer(factory.Get(), 1), S_OK);
  }
  EXPECT_FALSE(can_unload());
  {
    const auto factory = library_.Factory(row);
    EXPECT_EQ(factory.Get()->table->LockServer(factory.Get(), 0), S_OK);
  }
  EXPECT_TRUE(can_unload());
  void* type_info = nullptr;
  {
    auto object = library_.Make(u"RollBuffer");
    EXPECT_EQ(object.Get()->table->GetTypeInfo(object.Get(), 0, 0, &type_info), S_OK);
    std::thread([&] { Reference<QuorlDispatch>::Adopt(object.Detach()); }).join();
  }
  EXPECT_FALSE(can_unload());
  static_cast<QuorlTypeInfo*>(type_info)->table->Release(static_cast<QuorlTypeInfo*>(type_info));
  EXPECT_TRUE(can_unload());
}

TEST_F(Component, CanBeUnloadedAndLoadedAgain) {
  for (int round = 0; round < 3; ++round) {
    const Library library;
    const auto factory = library.Factory<QuorlGlobalFactory>(*frame::FindClass(u"Regional"),
                                                             QUORL_IID_GLOBAL_FACTORY);
    Reference<QuorlDispatch> regional;
    EXPECT_EQ(factory.Get()->table->GetGlobalObject(factory.Get(), regional.Receive()), S_OK);
    // Long enough to have memory of its own, which has to go with the library.
    EXPECT_EQ(
        CallNamed(regional.Get(), u"SetRegional", DISPATCH_METHOD, {}, {0, String(99, u'x')}).code,
        S_OK);
    EXPECT_EQ(CallNamed(regional.Get(), u"NumDecimalChar", DISPATCH_PROPERTYGET, {}).value,
              Variant(String(99, u'x')));
  }
}

// In a process of its own, with no other library open.
TEST(ComponentProcess, LeavesTheProcessWhenItIsUnloaded) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto unload = [] {
    QuorlSetStore(nullptr, nullptr);
    {
      const Library library;
      const auto object = library.Make(u"Money");
      if (library.can_unload_now() != S_FALSE) std::exit(2);
    }
    std::exit(dlopen(kComponentPath, RTLD_NOLOAD | RTLD_NOW) == nullptr ? 0 : 3);
  };
  EXPECT_EXIT(unload(), testing::ExitedWithCode(0), "");
}

// Repeats a call with one allocation after another failing, until none is left to fail: each gives
// a code of memory that ran out.
void FailEachAllocation(const char* what, const std::function<HRESULT()>& call) {
  constexpr HRESULT kCodes[] = {E_OUTOFMEMORY, QUORL_CODE(0x800A0007), QUORL_CODE(0x800A0008),
                                QUORL_CODE(0x80070008)};
  for (const bool is_lasting : {false, true}) {
    for (std::int64_t place = 0;; ++place) {
      HRESULT code = S_OK;
      bool has_failed = false;
      {
        const FailingAllocation failing(place, is_lasting);
        code = call();
        has_failed = FailingAllocation::Met();
      }
      SetErrorInfo(0, nullptr);
      if (!has_failed) {
        EXPECT_EQ(code, S_OK) << what;
        break;
      }
      EXPECT_NE(std::ranges::find(kCodes, code), std::end(kCodes))
          << what << ' ' << place << std::hex << ' ' << code;
    }
  }
}

TEST_F(Component, MemoryThatRunsOutIsAFailureLikeAnyOther) {
  const auto strings = library_.Make(u"Strings");
  const OwnedVariant text(Variant(u"a text that is long enough to need memory of its own"));
  FailEachAllocation("a call by name", [&] {
    VARIANT arguments[] = {text.Get(), text.Get()};
    DISPPARAMS parameters{arguments, nullptr, 2, 0};
    OwnedVariant result;
    EXCEPINFO info{};
    const std::int32_t id = 8;  // GetToken
    const HRESULT code = strings.Get()->table->Invoke(strings.Get(), id, nullptr, 0, 1, &parameters,
                                                      result.Address(), &info, nullptr);
    const HRESULT told = info.scode;
    abi::FreeRecord(info);
    return code == DISP_E_EXCEPTION ? told : code;
  });
  FailEachAllocation("a call through a slot", [&] {
    auto* object = reinterpret_cast<QuorlStrings*>(strings.Get());
    BSTR result = nullptr;
    const HRESULT code = object->table->ProperCase(object, text.Get().value.bstr, &result);
    EXPECT_EQ(code == S_OK, result != nullptr);
    SysFreeString(result);
    return code;
  });
  const auto buffer = library_.Make(u"RollBuffer");
  const OwnedVariant array(Variant(Array::OfStrings(std::vector<String>(3, String(99, u'x')))));
  FailEachAllocation("an array in and out", [&] {
    auto* object = reinterpret_cast<QuorlRollBuffer*>(buffer.Get());
    OwnedVariant result;
    const HRESULT code = object->table->AddItem(object, array.Get());
    return code != S_OK ? code : object->table->get_CurrentItem(object, result.Address());
  });
  const auto regional = library_.Factory(*frame::FindClass(u"Regional"));
  FailEachAllocation("an instance", [&] {
    Reference<QuorlDispatch> made;
    return regional.Get()->table->CreateInstance(regional.Get(), nullptr, &IID_IDispatch,
                                                 made.Receive());
  });
  FailEachAllocation("type information", [&] {
    Reference<QuorlTypeInfo> info;
    QuorlArgument argument{};
    HRESULT code = strings.Get()->table->GetTypeInfo(strings.Get(), 0, 0, info.Receive());
    if (code == S_OK) code = info.Get()->table->GetArgument(info.Get(), 2, 2, &argument);
    SysFreeString(argument.name);
    VariantClear(&argument.default_value);
    return code;
  });
}

TEST_F(Component, ARegistrationWithoutMemoryChangesNothing) {
  const std::string before = ContentOf(store_, kClassesRoot);
  bool has_failed = true;
  for (std::int64_t place = 0; has_failed; place += 61) {
    HRESULT code = S_OK;
    {
      const FailingAllocation failing(place, false);
      code = library_.register_server();
      has_failed = FailingAllocation::Met();
    }
    // What fails behind the one change is of no importance.
    if (code == S_OK) library_.unregister_server();
    EXPECT_EQ(ContentOf(store_, kClassesRoot), before) << place << ' ' << code;
  }
}

// ------------------------------------------------------------------------------------ registration

std::string ExpectedRegistration(const std::string& path) {
  MemoryStore expected;
  const auto save = [&](const std::string& key, const std::string& value,
                        const std::string& name = "") {
    EXPECT_EQ(Save(expected, kClassesRoot, key, name, value + '\0'), kDone);
  };
  const auto text = [](const GUID& guid) {
    char16_t buffer[39];
    EXPECT_EQ(StringFromGUID2(&guid, buffer, 39), 39);
    return Utf8(StringView(buffer, 38));
  };
  const std::string library = "{F9B439FC-91D9-4814-8FA0-62AB9D090FA0}";
  save("TypeLib\\" + library, "Quorl");
  for (const ClassRow& row : frame::Catalogue()) {
    const std::string name = "Quorl." + Utf8(row.name);
    const std::string key = "CLSID\\" + text(row.identifier);
    save(name, name);
    save(name + "\\Clsid", text(row.identifier));
    save(key, name);
    save(key + "\\InprocServer32", path);
    save(key + "\\InprocServer32", "Apartment", "ThreadingModel");
    save(key + "\\ProgID", name);
    save(key + "\\TypeLib", library);
    save(key + "\\VERSION", "1." + std::to_string(row.interfaces.size() - 1));
    if (row.kind == frame::ClassKind::kGlobal) save(key + "\\Global", "");
    for (std::size_t k = 0; k < row.interfaces.size(); ++k) {
      const bool is_current = k + 1 == row.interfaces.size();
      const std::string former = Utf8(row.name) + "___v" + std::to_string(k);
      save("Interface\\" + text(row.interfaces[k].identifier), is_current ? "_" + Utf8(row.name) : former);
      save("Interface\\" + text(row.interfaces[k].identifier) + "\\TypeLib", library);
    }
  }
  return ContentOf(expected, kClassesRoot);
}

TEST_F(Component, RegistersEveryClassAndUndoesItWhole) {
  const std::string empty = ContentOf(store_, kClassesRoot);
  EXPECT_EQ(library_.unregister_server(), S_OK);
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(library_.register_server(), S_OK);
    EXPECT_EQ(ContentOf(store_, kClassesRoot), ExpectedRegistration(kComponentPath));
  }
  EXPECT_EQ(library_.unregister_server(), S_OK);
  EXPECT_EQ(ContentOf(store_, kClassesRoot), empty);

  Save(store_, kClassesRoot, "CLSID\\{other}\\ProgID", "", "Other.Class");
  Save(store_, kClassesRoot, "Other.Class", "", "x");
  const std::string others = ContentOf(store_, kClassesRoot);
  EXPECT_EQ(library_.register_server(), S_OK);
  EXPECT_EQ(library_.unregister_server(), S_OK);
  EXPECT_EQ(ContentOf(store_, kClassesRoot), others);
  EXPECT_EQ(store_.OpenKeyCount(), 0);
  EXPECT_EQ(ContentOf(store_, kDynData), empty);
}

TEST_F(Component, AFailedRegistrationChangesNothing) {
  RecordingStore failing(store_);
  const ScopedStore guard(failing);
  failing.FailNever();
  ASSERT_EQ(library_.register_server(), S_OK);
  const std::vector<std::string> calls = failing.Calls();
  for (const bool is_registered : {true, false}) {
    if (!is_registered) library_.unregister_server();
    const std::string before = ContentOf(store_, kClassesRoot);
    for (std::size_t place = 0; place < calls.size(); ++place) {
      // The clearing of what was put together in memory may fail.
      if (calls[place] == "DeleteTree") continue;
      failing.FailAt(place, kDiskFull);
      EXPECT_EQ(library_.register_server(), QUORL_CODE(0x80070070)) << place << calls[place];
      EXPECT_EQ(ContentOf(store_, kClassesRoot), before) << place << calls[place];
    }
  }
  failing.FailAt(0, kAccessDenied);
  EXPECT_EQ(library_.unregister_server(), QUORL_CODE(0x80070005));
}

TEST_F(Component, HostsFindRegisteredClasses) {
  const auto global = [](const char16_t* progid, Reference<QuorlDispatch>& object) {
    return QuorlGlobalObject(progid, object.Receive());
  };
  Reference<QuorlDispatch> object;
  EXPECT_EQ(global(u"Quorl.Math", object), CO_E_CLASSSTRING);
  void* out = &out;
  const ClassRow& money = *frame::FindClass(u"Money");
  EXPECT_EQ(CoCreateInstance(&money.identifier, nullptr, 0, &IID_IUnknown, &out),
            REGDB_E_CLASSNOTREG);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(QuorlRegister(u"/nowhere/libquorl.so"), QUORL_E_NOTLOADABLE);
  EXPECT_EQ(QuorlRegister(nullptr), E_POINTER);
  const String path = Utf16(kComponentPath);
  ASSERT_EQ(QuorlRegister(path.c_str()), S_OK);

  GUID identifier{};
  EXPECT_EQ(CLSIDFromProgID(u"quorl.MONEY", &identifier), S_OK);
  EXPECT_TRUE(identifier == money.identifier);
  EXPECT_EQ(CLSIDFromProgID(u"Quorl.Nothing", &identifier), CO_E_CLASSSTRING);
  EXPECT_EQ(CLSIDFromProgID(u"Quorl.Money\\Clsid", &identifier), CO_E_CLASSSTRING);
  EXPECT_EQ(CLSIDFromProgID(u"", &identifier), CO_E_CLASSSTRING);
  EXPECT_EQ(CLSIDFromProgID(nullptr, &identifier), E_POINTER);
  EXPECT_EQ(CLSIDFromProgID(u"Quorl.Money", nullptr), E_POINTER);
  {
    Reference<QuorlDispatch> made;
    EXPECT_EQ(
        CoCreateInstance(&money.identifier, nullptr, 0, &money.CurrentInterface(), made.Receive()),
        S_OK);
    EXPECT_EQ(CoCreateInstance(&money.identifier, &out, 0, &IID_IUnknown, &out),
              CLASS_E_NOAGGREGATION);
  }
  for (const ClassRow& row : frame::Catalogue()) {
    const String progid = u"Quorl." + String(row.name);
    Reference<QuorlDispatch> first;
    Reference<QuorlDispatch> second;
    const bool is_global = row.kind == frame::ClassKind::kGlobal;
    EXPECT_EQ(global(progid.c_str(), first), is_global ? S_OK : CLASS_E_CLASSNOTAVAILABLE);
    global(progid.c_str(), second);
    EXPECT_EQ(first.Get(), second.Get()) << Utf8(row.name);
    EXPECT_EQ(first.Get() != nullptr, is_global);
    EXPECT_EQ(library_.can_unload_now(), S_OK) << Utf8(row.name);
  }
  Save(store_, kClassesRoot, "CLSID\\{0553AA64-C47C-467D-B2DD-13C658FBCA74}\\InprocServer32", "",
       "/nowhere%20else");
  EXPECT_EQ(CoCreateInstance(&money.identifier, nullptr, 0, &IID_IUnknown, &out),
            QUORL_E_NOTLOADABLE);
  EXPECT_EQ(QuorlUnregister(path.c_str()), S_OK);
  EXPECT_EQ(global(u"Quorl.Math", object), CO_E_CLASSSTRING);
}

// The two libraries are copied to a folder whose name has to be escaped.
TEST(ComponentProcess, IsFoundWhereverItsTwoLibrariesAre) {
  const std::string folder = testing::TempDir() + "quorl été 100%";
  const std::string host = QUORL_BINARY_DIR "/examples/component_host";
  const std::string script = "rm -rf '" + folder + "' && mkdir -p '" + folder + "' && cp " +
                             QUORL_BINARY_DIR "/libquorl*.so '" + folder + "'";
  ASSERT_EQ(OutputOf(script), "");
  const auto run = [&] {
    const Library library(folder + "/libquorl.so");
    MemoryStore store;
    const ScopedStore guard(store);
    if (library.register_server() != S_OK) std::exit(2);
    std::string expected = folder;
    for (const auto& [bytes, text] :
         {std::pair("\xC3", "%C3"), {"\xA9", "%A9"}, {"100%", "100%25"}}) {
      for (std::size_t at = 0; (at = expected.find(bytes, at)) != std::string::npos;) {
        expected.replace(at, std::strlen(bytes), text);
        at += std::strlen(text);
      }
    }
    const std::string kept = Load(
        store, kClassesRoot, "CLSID\\{0553AA64-C47C-467D-B2DD-13C658FBCA74}\\InprocServer32", "");
    if (kept != expected + "/libquorl.so" + '\0') {
      std::fprintf(stderr, "%s", kept.c_str());
      std::exit(3);
    }
    Reference<QuorlDispatch> math;
    std::exit(QuorlGlobalObject(u"Quorl.Math", math.Receive()) == S_OK ? 0 : 4);
  };
  EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
  EXPECT_EQ(
      OutputOf("cd '" + folder + "' && LD_LIBRARY_PATH=. " + host + " ./libquorl.so | tail -1"),
      "CmbCurrentItemData, which this combo lacks: 0x800A01B6\n");
  OutputOf("rm -rf '" + folder + "'");
}

TEST(ComponentProcess, TheStoreIsChosenBeforeItsFirstUse) {
  const std::string folder = testing::TempDir() + "quorl_store";
  std::filesystem::remove_all(folder);
  const auto choose = [&](bool is_in_memory) {
    const String path = Utf16(folder);
    if (QuorlSetStore(is_in_memory ? nullptr : path.c_str(), path.c_str()) != S_OK) std::exit(2);
    if (Save(CurrentStore(), kCurrentUser, "A", "B", "c") != kDone) std::exit(3);
    if (QuorlSetStore(nullptr, nullptr) != E_UNEXPECTED) std::exit(4);
    std::exit(std::filesystem::exists(folder) == !is_in_memory ? 0 : 5);
  };
  for (const bool is_in_memory : {true, false}) {
    EXPECT_EXIT(choose(is_in_memory), testing::ExitedWithCode(0), "") << is_in_memory;
  }
  std::filesystem::remove_all(folder);
}

// ------------------------------------------------------------------------------ look-up

TEST_F(Component, TypeInfoTellsTheCatalogue) {
  for (const ClassRow& row : frame::Catalogue()) {
    const auto object = library_.Make(row, IID_IDispatch);
    std::uint32_t count = 0;
    EXPECT_EQ(object.Get()->table->GetTypeInfoCount(object.Get(), &count), S_OK);
    EXPECT_EQ(count, 1u);
    Reference<QuorlTypeInfo> info;
    EXPECT_EQ(object.Get()->table->GetTypeInfo(object.Get(), 1, 0, info.Receive()),
              DISP_E_BADINDEX);
    ASSERT_EQ(object.Get()->table->GetTypeInfo(object.Get(), 0, 0, info.Receive()), S_OK);
    const auto& table = *info.Get()->table;
    QuorlTypeAttributes attributes{};
    EXPECT_EQ(table.GetTypeAttributes(info.Get(), &attributes), S_OK);
    EXPECT_TRUE(attributes.class_identifier == row.identifier);
    EXPECT_TRUE(attributes.interface_identifier == row.CurrentInterface());
    EXPECT_EQ(attributes.minor_version, row.interfaces.size() - 1);
    EXPECT_EQ(attributes.class_flags, row.kind == frame::ClassKind::kGlobal ? 0xB : 0x2);
    EXPECT_EQ(attributes.interface_flags, 0x11D0);
    ASSERT_EQ(attributes.functions, row.members.size());
    for (std::uint32_t i = 0; i < attributes.functions; ++i) {
      const MemberRow& member = row.members[i];
      QuorlFunction function{};
      EXPECT_EQ(table.GetFunction(info.Get(), i, &function), S_OK);
      EXPECT_EQ(function.id, IdentifierOf(row, member));
      EXPECT_EQ(function.invoke_kind, FlagOf(member.kind));
      EXPECT_EQ(function.table_slot, 7 + i);
      EXPECT_EQ(function.listing_place, ListingPlaceOf(row, member));
      EXPECT_EQ(function.argument_count, member.arguments.count);
      BSTR name = nullptr;
      BSTR help = nullptr;
      EXPECT_EQ(table.GetDocumentation(info.Get(), function.id, &name, &help), S_OK);
      EXPECT_EQ(Taken(name), member.name);
      EXPECT_EQ(Taken(help), member.help);
      for (std::uint32_t k = 0; k < function.argument_count; ++k) {
        QuorlArgument argument{};
        EXPECT_EQ(table.GetArgument(info.Get(), i, k, &argument), S_OK);
        EXPECT_EQ(Taken(argument.name), member.arguments.elements[k].name);
        EXPECT_EQ(argument.optional != 0, member.arguments.elements[k].IsOptional());
        VariantClear(&argument.default_value);
      }
      QuorlArgument none{};
      EXPECT_EQ(table.GetArgument(info.Get(), i, function.argument_count, &none), DISP_E_BADINDEX);
    }
    QuorlFunction none{};
    EXPECT_EQ(table.GetFunction(info.Get(), attributes.functions, &none), DISP_E_BADINDEX);
    EXPECT_EQ(table.GetDocumentation(info.Get(), 99, nullptr, nullptr), DISP_E_MEMBERNOTFOUND);
    BSTR name = nullptr;
    EXPECT_EQ(table.GetDocumentation(info.Get(), -1, &name, nullptr), S_OK);
    EXPECT_EQ(Taken(name), row.name);
  }
}

TEST(ComponentHosts, TheHostInCPrintsWhatIsExpected) {
  EXPECT_EQ(OutputOf(QUORL_BINARY_DIR "/examples/component_host " + std::string(kComponentPath)),
            ContentOfFile(QUORL_SOURCE_DIR "/examples/component_host.out"));
}

TEST(ComponentHosts, TheHostInPythonPrintsWhatIsExpected) {
#ifdef QUORL_IS_SANITIZED
  GTEST_SKIP() << "python3 cannot load libraries that were built with a sanitizer";
#endif
  if (OutputOf("python3 --version").find("Python 3") != 0)
    GTEST_SKIP() << "there is no python3 here";
  const std::string folder = QUORL_SOURCE_DIR "/examples/python/";
  EXPECT_EQ(OutputOf("PYTHONIOENCODING=utf-8 python3 -B " + folder + "demo.py " QUORL_BINARY_DIR),
            ContentOfFile(folder + "demo.out"));
}

TEST(ComponentFiles, GeneratedTextsAreUpToDate) {
  const std::string root = QUORL_SOURCE_DIR;
  EXPECT_EQ(ContentOfFile(root + "/docs/quorl.idl"), tools::TypeDescription())
      << "run tools/update_generated.sh";
  const std::string header = ContentOfFile(root + "/quorl/abi/quorl.h");
  const std::string begin = "/* begin generated */\n";
  const std::size_t from = header.find(begin) + begin.size();
  EXPECT_EQ(header.substr(from, header.find("/* end generated */") - from), tools::HeaderTables())
      << "run tools/update_generated.sh";
}

TEST(ComponentFiles, TheHeaderCompilesAlone) {
  for (const char* compiler :
       {QUORL_C_COMPILER " -std=c11 -x c", QUORL_CXX_COMPILER " -std=c++20 -x c++"}) {
    EXPECT_EQ(OutputOf(std::string("echo '#include \"quorl/abi/quorl.h\"' | ") + compiler +
                       " -Wall -Wextra -pedantic -Werror -fsyntax-only -I " QUORL_SOURCE_DIR " -"),
              "");
  }
}

TEST(ComponentFiles, FourSymbolsAreExported) {
  if (OutputOf("command -v nm").empty()) GTEST_SKIP() << "there is no nm here";
  std::istringstream lines(OutputOf(std::string("nm -D --defined-only ") + kComponentPath));
  std::vector<std::string> names;
  for (std::string address, kind, name; lines >> address >> kind >> name;) names.push_back(name);
  EXPECT_EQ(names, (std::vector<std::string>{"DllCanUnloadNow", "DllGetClassObject",
                                             "DllRegisterServer", "DllUnregisterServer"}));
}

}  // namespace
}  // namespace quorl
