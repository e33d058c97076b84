// The component as a whole: factories and the life of objects, registration, what hosts can look
// up, the library's file, the host examples.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <thread>

#include "quorl/frame/internal/listing.hpp"
#include "tests/support/component.hpp"
#include "tests/support/program.hpp"
#include "tests/support/recording_store.hpp"
#include "tests/support/store_content.hpp"
#include "tests/support/store_failing_allocation.hpp"
#include "tools/description.hpp"

namespace quorl {

using namespace internal;
namespace {

using abi::operator==;

// What a program prints, standard error included.
std::string OutputOf(const std::string& command) {
  const ProgramResult result = RunProgram(command + " 2>&1");
  EXPECT_EQ(result.status, 0) << command;
  return result.output;
}

Reference<QuorlTypeInfo> TypeInfoOf(const Reference<QuorlDispatch>& object) {
  Reference<QuorlTypeInfo> info;
  EXPECT_EQ(object.Get()->table->GetTypeInfo(object.Get(), 0, 0, info.Receive()), S_OK);
  return info;
}

Reference<QuorlLibraryInfo> LibraryOf(const Reference<QuorlTypeInfo>& info) {
  QuorlLibraryInfo* library = nullptr;
  EXPECT_EQ(info.Get()->table->GetLibrary(info.Get(), &library), S_OK);
  return Reference<QuorlLibraryInfo>::Adopt(library);
}

// ------------------------------------------------------------------------- objects and their life

TEST_F(Component, EveryIdentifierOfAClassGivesItsTable) {
  for (const ClassRow& row : frame::Catalogue()) {
    const auto object = library_.Make(row, IID_IUnknown);
    const auto& table = *object.Get()->table;
    for (const auto& [identifier, members] : row.interfaces) {
      EXPECT_EQ(library_.Make(row, identifier).Get()->table, &table) << Utf8(row.name);
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
  const ClassRow& money = *frame::FindClass(u"Money");
  const GUID& interface = math.CurrentInterface();
  const auto factory = library_.Factory(math);
  const auto of_money = library_.Factory(money);
  RecordingStore failing(store_);
  const auto regional = library_.Factory(*frame::FindClass(u"Regional"));
  const auto ask = [&](const ClassRow* row, const GUID* identifier) {
    return [=, this](void** out) {
      return library_.get_class_object(row == nullptr ? nullptr : &row->identifier, identifier,
                                       out);
    };
  };
  const auto create = [](const auto& from, void* outer, const GUID* identifier) {
    return [=, object = from.Get()](void** out) {
      return object->table->CreateInstance(object, outer, identifier, out);
    };
  };
  const std::pair<std::function<HRESULT(void**)>, HRESULT> cases[] = {
      {[&](void** out) { return library_.get_class_object(&interface, &IID_IClassFactory, out); },
       CLASS_E_CLASSNOTAVAILABLE},
      {ask(&math, &interface), E_NOINTERFACE},
      {ask(&money, &QUORL_IID_GLOBAL_FACTORY), E_NOINTERFACE},
      {ask(nullptr, &interface), E_POINTER},
      {ask(&math, nullptr), E_POINTER},
      {create(factory, &failing, &IID_IUnknown), CLASS_E_NOAGGREGATION},
      {create(factory, nullptr, &IID_IErrorInfo), E_NOINTERFACE},
      {create(factory, nullptr, nullptr), E_POINTER},
      // A failure while the instance is made is one of a call through a table.
      {[&](void** out) {
         const ScopedStore guard(failing);
         failing.FailAt(0, kAccessDenied);
         return create(regional, nullptr, &IID_IUnknown)(out);
       },
       QUORL_CODE(0x800A0005)},
  };
  for (const auto& [call, code] : cases) {
    void* out = &out;
    EXPECT_EQ(call(&out), code) << &call - &cases[0].first;
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(call(nullptr), E_POINTER);
  }
  EXPECT_EQ(TakenErrorInfo().source, u"qlWinRegistry");
}

// The factory and its second interface are one object.
TEST_F(Component, AGlobalClassHasAFactoryWithTwoInterfaces) {
  const auto factory = library_.Factory(*frame::FindClass(u"Dates"));
  Reference<QuorlGlobalFactory> global;
  EXPECT_EQ(factory.Get()->table->QueryInterface(factory.Get(), &QUORL_IID_GLOBAL_FACTORY,
                                                 global.Receive()),
            S_OK);
  Reference<QuorlClassFactory> back;
  EXPECT_EQ(global.Get()->table->QueryInterface(global.Get(), &IID_IUnknown, back.Receive()), S_OK);
  EXPECT_EQ(back.Get(), factory.Get());
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
  Reference<QuorlTypeInfo> info;
  {
    auto object = library_.Make(u"RollBuffer");
    info = TypeInfoOf(object);
    std::thread([&] { Reference<QuorlDispatch>::Adopt(object.Detach()); }).join();
  }
  EXPECT_FALSE(can_unload());
  {
    const auto library = LibraryOf(std::exchange(info, {}));
    EXPECT_FALSE(can_unload());
  }
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
    // A host that releases it once too often does no harm.
    EXPECT_EQ(regional.Get()->table->Release(regional.Get()), 1u);
    EXPECT_EQ(regional.Get()->table->Release(regional.Get()), 0u);
    regional.Get()->table->AddRef(regional.Get());
    regional.Get()->table->AddRef(regional.Get());
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

// ------------------------------------------------------------------------------------ registration

TEST_F(Component, RegistersEveryClassAndUndoesItWhole) {
  EXPECT_EQ(library_.unregister_server(), S_OK);
  Save(store_, kClassesRoot, "CLSID\\{other}\\ProgID", "", "Other.Class");
  Save(store_, kClassesRoot, "Other.Class", "", "x");
  const std::string others = ContentOf(store_, kClassesRoot);
  std::string registered;
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(library_.register_server(), S_OK);
    registered = ContentOf(store_, kClassesRoot);
  }
  const std::string regional = "{E60E8228-F086-4E47-989B-00E97C56E134}";
  const std::string library = "   = 1:{F9B439FC-91D9-4814-8FA0-62AB9D090FA0}";
  for (const std::string& part :
       {"[Quorl.Regional]|   = 1:Quorl.Regional|[Quorl.Regional\\Clsid]|   = 1:" + regional + "|",
        "[CLSID\\" + regional + "]|   = 1:Quorl.Regional|[CLSID\\" + regional +
            "\\Global]|   = 1:|[CLSID\\" + regional + "\\InprocServer32]|   = 1:" + kComponentPath +
            "|  ThreadingModel = 1:Apartment|[CLSID\\" + regional +
            "\\ProgID]|   = 1:Quorl.Regional|[CLSID\\" + regional + "\\TypeLib]|" + library +
            "|[CLSID\\" + regional + "\\VERSION]|   = 1:1.2|",
        "[Interface\\{1BBE009C-0AB9-4BF7-8DB3-A21948ACF351}]|   = 1:Regional___v0|"
        "[Interface\\{1BBE009C-0AB9-4BF7-8DB3-A21948ACF351}\\TypeLib]|" +
            library + "|",
        std::string("[Interface\\{9F592C2F-6699-4520-A781-44B57C1C5F1E}]|   = 1:_Regional|"),
        "[TypeLib\\{F9B439FC-91D9-4814-8FA0-62AB9D090FA0}]|   = 1:Quorl|" + std::string()}) {
    std::string lines;
    for (const char unit : part) lines += unit == '|' ? std::string(1, '\n') : std::string(1, unit);
    std::erase(registered, '\0');
    EXPECT_NE(registered.find(lines), std::string::npos) << lines << registered;
  }
  EXPECT_EQ(std::ranges::count(registered, '['), 153);
  EXPECT_EQ(library_.unregister_server(), S_OK);
  EXPECT_EQ(ContentOf(store_, kClassesRoot), others);
  EXPECT_EQ(store_.OpenKeyCount(), 0);
  EXPECT_EQ(ContentOf(store_, kDynData), ContentOf(store_, kUsers));
}

TEST(ComponentFiles, VersionsHaveAnyNumber) {
  const std::vector<frame::InterfaceRow> versions(12);
  ClassRow row = *frame::FindClass(u"Strings");
  row.interfaces = versions;
  EXPECT_EQ(InterfaceName(row, 10), u"Strings___v10");
  EXPECT_EQ(InterfaceName(row, 11), u"_Strings");
  EXPECT_EQ(frame::VersionText(row.MinorVersion()), u"1.11");
}

// One change of the store each, which fails whole.
TEST_F(Component, RegistrationAndItsRemovalHappenWholeOrNotAtAll) {
  RecordingStore failing(store_);
  const ScopedStore guard(failing);
  for (const auto work : {library_.register_server, library_.unregister_server}) {
    const std::string before = ContentOf(store_, kClassesRoot);
    failing.FailAt(0, kDiskFull);
    EXPECT_EQ(work(), QUORL_CODE(0x80070070));
    EXPECT_EQ(failing.Calls(), std::vector<std::string>{"Commit"});
    failing.FailNever();
    HRESULT code = S_FALSE;
    for (std::int64_t place = 0; code != S_OK; place += 61) {
      EXPECT_EQ(ContentOf(store_, kClassesRoot), before) << place << ' ' << code;
      const FailingAllocation lacking(place, false);
      code = work();
    }
    EXPECT_NE(ContentOf(store_, kClassesRoot), before);
  }
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
  // A store that cannot be read is no unknown class.
  RecordingStore failing(store_);
  {
    const ScopedStore guard(failing);
    for (std::size_t place = 0; place < 3; ++place) {
      GUID none{};
      failing.FailAt(place, kInputOutputFailed);
      EXPECT_EQ(CLSIDFromProgID(u"Quorl.Math", &none), QUORL_CODE(0x800703F8)) << place;
      failing.FailAt(place, kInputOutputFailed);
      EXPECT_EQ(CoCreateInstance(&money.identifier, nullptr, 0, &IID_IUnknown, &out),
                QUORL_CODE(0x800703F8));
    }
    failing.FailAt(0, kAccessDenied);
    EXPECT_EQ(global(u"Quorl.Math", object), QUORL_CODE(0x80070005));
  }

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
  const std::string host = QUORL_BINARY_DIR "/examples/tour_c";
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
      "failure 1004 of Combo: La liste est fermée.\n");
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

// The type description is written from what type information tells, so what it has is told.
TEST_F(Component, TypeInfoTellsTheTypeDescription) {
  const std::string described = FileText(QUORL_SOURCE_DIR "/docs/quorl.idl");
  for (const ClassRow& row : frame::Catalogue()) {
    const auto object = library_.Make(row, IID_IDispatch);
    std::uint32_t count = 0;
    EXPECT_EQ(object.Get()->table->GetTypeInfoCount(object.Get(), &count), S_OK);
    void* none = nullptr;
    EXPECT_EQ(object.Get()->table->GetTypeInfo(object.Get(), count, 0, &none), DISP_E_BADINDEX);
    const auto info = TypeInfoOf(object);
    QuorlTypeAttributes attributes{};
    EXPECT_EQ(info.Get()->table->GetTypeAttributes(info.Get(), &attributes), S_OK);
    EXPECT_TRUE(attributes.class_identifier == row.identifier);
    for (const MemberRow& member : row.members) {
      const char16_t* name = member.name.data();
      std::int32_t id = 0;
      EXPECT_EQ(info.Get()->table->GetIDsOfNames(info.Get(), &name, 1, &id), S_OK);
      EXPECT_EQ(id, IdentifierOf(row, member));
    }
    for (std::uint32_t version = 0; version <= attributes.minor_version; ++version) {
      QuorlInterface known{};
      EXPECT_EQ(info.Get()->table->GetInterface(info.Get(), version, &known), S_OK);
      EXPECT_EQ(known.members, row.interfaces[version].members) << Utf8(Taken(known.name));
    }
    EXPECT_EQ(tools::TypeDescription(*LibraryOf(info).Get()), described)
        << "run tools/update_generated.sh";
  }
}

TEST_F(Component, TypeInfoRefusesWhatItHasNot) {
  const auto info = TypeInfoOf(library_.Make(u"Math"));
  const auto library = LibraryOf(info);
  const auto refused = [](const auto& from, auto slot, auto out, auto... places) {
    std::memset(&out, 0xFF, sizeof(out));
    EXPECT_EQ(slot(from.Get(), places..., &out), DISP_E_BADINDEX);
    EXPECT_EQ(std::memcmp(&out, "\0\0\0", 4), 0);
    EXPECT_EQ(slot(from.Get(), places..., nullptr), E_POINTER);
  };
  const QuorlTypeInfoTable& table = *info.Get()->table;
  Reference<QuorlTypeInfo> same;
  EXPECT_EQ(table.QueryInterface(info.Get(), &QUORL_IID_TYPE_INFO_2, same.Receive()), S_OK);
  EXPECT_EQ(same.Get(), info.Get());
  refused(info, table.GetFunction, QuorlFunction{}, 12);
  refused(info, table.GetArgument, QuorlArgument{}, 12, 0);
  refused(info, table.GetArgument, QuorlArgument{}, 0, 2);
  refused(info, table.GetTypeName, BSTR{}, 12, QUORL_RESULT);
  refused(info, table.GetTypeName, BSTR{}, 0, 2);
  refused(info, table.GetInterface, QuorlInterface{}, 5);
  EXPECT_EQ(table.GetDocumentation(info.Get(), 99, nullptr, nullptr), DISP_E_MEMBERNOTFOUND);
  const QuorlLibraryInfoTable& known = *library.Get()->table;
  refused(library, known.GetClass, info.Get(), 12);
  refused(library, known.GetEnumeration, QuorlEnumeration{}, 5);
  refused(library, known.GetEnumerator, QuorlEnumerator{}, 5, 0);
  refused(library, known.GetEnumerator, QuorlEnumerator{}, 0, 4);
  std::int32_t value = 0;
  EXPECT_EQ(known.FindEnumerator(library.Get(), u"hkey_current_USER", &value), S_OK);
  EXPECT_EQ(value, HKEY_CURRENT_USER);
  EXPECT_EQ(known.FindEnumerator(library.Get(), u"HKeyEnum", &value), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(known.FindEnumerator(library.Get(), nullptr, &value), E_POINTER);
  EXPECT_EQ(known.FindEnumerator(library.Get(), u"REG_SZ", nullptr), E_POINTER);
}

TEST(ComponentFiles, GeneratedTextsAreUpToDate) {
  const std::string root = QUORL_SOURCE_DIR;
  EXPECT_EQ(FileText(root + "/docs/quorl.json"), tools::CatalogueJson())
      << "run tools/update_generated.sh";
  const std::string header = FileText(root + "/quorl/abi/quorl.h");
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
  if (RunProgram("command -v nm").status != 0) GTEST_SKIP() << "there is no nm here";
  std::istringstream lines(OutputOf(std::string("nm -D --defined-only ") + kComponentPath));
  std::vector<std::string> names;
  for (std::string address, kind, name; lines >> address >> kind >> name;) names.push_back(name);
  EXPECT_EQ(names, (std::vector<std::string>{"DllCanUnloadNow", "DllGetClassObject",
                                             "DllRegisterServer", "DllUnregisterServer"}));
}

}  // namespace
}  // namespace quorl
