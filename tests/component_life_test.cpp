// The component as a whole: factories and the life of objects, registration, what hosts can look
// up, the library's file, the host examples.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
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
    Reference<QuorlSupportErrorInfo> support;
    EXPECT_EQ(table.QueryInterface(object.Get(), &IID_ISupportErrorInfo, support.Receive()), S_OK);
    const auto& supports = *support.Get()->table;
    EXPECT_EQ(supports.InterfaceSupportsErrorInfo(support.Get(), &row.identifier), S_FALSE);
    for (const auto& [identifier, members] : row.interfaces) {
      EXPECT_EQ(library_.Make(row, identifier).Get()->table, &table) << Utf8(row.name);
      EXPECT_EQ(supports.InterfaceSupportsErrorInfo(support.Get(), &identifier), S_OK);
      Reference<QuorlDispatch> same;
      EXPECT_EQ(supports.QueryInterface(support.Get(), &identifier, same.Receive()), S_OK);
      EXPECT_EQ(same.Get(), object.Get());
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
  const GUID& money = frame::FindClass(u"Money")->identifier;
  const GUID& interface = math.CurrentInterface();
  RecordingStore failing(store_);
  const ScopedStore guard(failing);
  const auto regional = library_.Factory(*frame::FindClass(u"Regional"));
  const auto create = [&](void* outer, const GUID* identifier, void** out) {
    failing.FailAt(0, identifier == &IID_IUnknown ? kAccessDenied : kDone);
    return regional.Get()->table->CreateInstance(regional.Get(), outer, identifier, out);
  };
  const auto ask = [&](const GUID* row, const GUID* identifier, void** out) {
    return library_.get_class_object(row, identifier, out);
  };
  const std::pair<std::function<HRESULT(void**)>, HRESULT> cases[] = {
      {std::bind_front(ask, &interface, &IID_IClassFactory), CLASS_E_CLASSNOTAVAILABLE},
      {std::bind_front(ask, &math.identifier, &interface), E_NOINTERFACE},
      {std::bind_front(ask, &money, &QUORL_IID_GLOBAL_FACTORY), E_NOINTERFACE},
      {std::bind_front(ask, nullptr, &interface), E_POINTER},
      {std::bind_front(ask, &math.identifier, nullptr), E_POINTER},
      {std::bind_front(create, &failing, &IID_IUnknown), CLASS_E_NOAGGREGATION},
      {std::bind_front(create, nullptr, &IID_IErrorInfo), E_NOINTERFACE},
      {std::bind_front(create, nullptr, nullptr), E_POINTER},
      // A failure while the instance is made is one of a call through a table.
      {std::bind_front(create, nullptr, &IID_IUnknown), QUORL_CODE(0x800A0005)},
  };
  for (const auto& [call, code] : cases) {
    void* out = &out;
    EXPECT_EQ(call(&out), code) << &call - &cases[0].first;
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(call(nullptr), E_POINTER);
  }
  EXPECT_EQ(TakenErrorInfo().source, u"qlWinRegistry");
}

TEST_F(Component, StaysLoadedAsLongAsAHostUsesIt) {
  const ClassRow& row = *frame::FindClass(u"RollBuffer");
  const auto lock = [&](std::int32_t on) {
    const auto factory = library_.Factory(row);
    EXPECT_EQ(library_.can_unload_now(), S_FALSE);
    return factory.Get()->table->LockServer(factory.Get(), on);
  };
  EXPECT_EQ(lock(0), E_UNEXPECTED);
  EXPECT_EQ(library_.can_unload_now(), S_OK);
  EXPECT_EQ(lock(1), S_OK);
  EXPECT_EQ(library_.can_unload_now(), S_FALSE);
  EXPECT_EQ(lock(0), S_OK);
  EXPECT_EQ(library_.can_unload_now(), S_OK);
  auto object = library_.Make(u"RollBuffer");
  auto library = LibraryOf(TypeInfoOf(object));
  std::thread([&] { Reference<QuorlDispatch>::Adopt(object.Detach()); }).join();
  EXPECT_EQ(library_.can_unload_now(), S_FALSE);
  library = {};
  EXPECT_EQ(library_.can_unload_now(), S_OK);
}

TEST_F(Component, CanBeUnloadedAndLoadedAgain) {
  const ClassRow& row = *frame::FindClass(u"Regional");
  for (int round = 0; round < 3; ++round) {
    const Library library;
    const auto factory = library.Factory<QuorlGlobalFactory>(row, QUORL_IID_GLOBAL_FACTORY);
    Reference<QuorlDispatch> regional;
    EXPECT_EQ(factory.Get()->table->GetGlobalObject(factory.Get(), regional.Receive()), S_OK);
    // Long enough to have memory of its own, which has to go with the library.
    const Variant text = String(99, u'x');
    EXPECT_EQ(CallNamed(regional.Get(), u"SetRegional", DISPATCH_METHOD, {}, {0, text}).code, S_OK);
    // A host that releases it once too often does no harm.
    EXPECT_EQ(regional.Get()->table->Release(regional.Get()), 1u);
    EXPECT_EQ(regional.Get()->table->Release(regional.Get()), 0u);
    regional.Get()->table->AddRef(regional.Get());
    regional.Get()->table->AddRef(regional.Get());
    EXPECT_EQ(CallNamed(regional.Get(), u"NumDecimalChar", DISPATCH_PROPERTYGET, {}).value, text);
    // The factory and its other interface are one object.
    Reference<QuorlClassFactory> other;
    Reference<QuorlGlobalFactory> back;
    EXPECT_EQ(
        factory.Get()->table->QueryInterface(factory.Get(), &IID_IClassFactory, other.Receive()),
        S_OK);
    EXPECT_EQ(
        other.Get()->table->QueryInterface(other.Get(), &QUORL_IID_GLOBAL_FACTORY, back.Receive()),
        S_OK);
    EXPECT_EQ(back.Get(), factory.Get());
  }
}

// ------------------------------------------------------------------------------------ registration

TEST_F(Component, RegistersEveryClassAndUndoesItWhole) {
  EXPECT_EQ(library_.unregister_server(), S_OK);
  Save(store_, kClassesRoot, "CLSID\\{other}\\ProgID", "", "Other.Class");
  Save(store_, kClassesRoot, "Other.Class", "", "x");
  const std::string others = ContentOf(store_, kClassesRoot);
  EXPECT_EQ(library_.register_server(), S_OK);
  EXPECT_EQ(library_.register_server(), S_OK);
  std::string registered = ContentOf(store_, kClassesRoot);
  std::erase(registered, '\0');
  EXPECT_EQ(std::ranges::count(registered, '['), 153);
  const std::string id = "{E60E8228-F086-4E47-989B-00E97C56E134}";
  const std::string key = "[CLSID\\" + id;
  const std::string library = "\\TypeLib]\n   = 1:{F9B439FC-91D9-4814-8FA0-62AB9D090FA0}\n";
  const std::string face = "[Interface\\{1BBE009C-0AB9-4BF7-8DB3-A21948ACF351}";
  for (const std::string& part :
       {"[Quorl.Regional]\n   = 1:Quorl.Regional\n[Quorl.Regional\\Clsid]\n   = 1:" + id + "\n",
        key + "]\n   = 1:Quorl.Regional\n" + key + "\\Global]\n   = 1:\n" + key +
            "\\InprocServer32]\n   = 1:" + kComponentPath + "\n  ThreadingModel = 1:Apartment\n" +
            key + "\\ProgID]\n   = 1:Quorl.Regional\n" + key + library + key +
            "\\VERSION]\n   = 1:1.2\n",
        face + "]\n   = 1:Regional___v0\n" + face + library,
        std::string("[Interface\\{9F592C2F-6699-4520-A781-44B57C1C5F1E}]\n   = 1:_Regional\n"),
        std::string("[TypeLib\\{F9B439FC-91D9-4814-8FA0-62AB9D090FA0}]\n   = 1:Quorl\n")}) {
    EXPECT_NE(registered.find(part), std::string::npos) << part << registered;
  }
  EXPECT_EQ(library_.unregister_server(), S_OK);
  EXPECT_EQ(ContentOf(store_, kClassesRoot), others);
  EXPECT_EQ(store_.OpenKeyCount(), 0);
  EXPECT_EQ(ContentOf(store_, kDynData), ContentOf(store_, kUsers));
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
  const ClassRow& money = *frame::FindClass(u"Money");
  const String path = Utf16(kComponentPath);
  const auto global = [](const String& progid) {
    Reference<QuorlDispatch> object;
    const HRESULT code = QuorlGlobalObject(progid.c_str(), object.Receive());
    return std::pair(code, object.Get());
  };
  const auto create = [&](void* outer = nullptr) {
    Reference<QuorlDispatch> object;
    const HRESULT code =
        CoCreateInstance(&money.identifier, outer, 0, &money.CurrentInterface(), object.Receive());
    EXPECT_EQ(object.Get() != nullptr, code == S_OK);
    return code;
  };
  EXPECT_EQ(global(u"Quorl.Math").first, CO_E_CLASSSTRING);
  EXPECT_EQ(create(), REGDB_E_CLASSNOTREG);
  EXPECT_EQ(QuorlRegister(u"/nowhere/libquorl.so"), QUORL_E_NOTLOADABLE);
  EXPECT_EQ(QuorlRegister(nullptr), E_POINTER);
  ASSERT_EQ(QuorlRegister(path.c_str()), S_OK);
  GUID identifier{};
  {
    // A store that cannot be read is no unknown class.
    RecordingStore failing(store_);
    const ScopedStore guard(failing);
    for (std::size_t place = 0; place < 3; ++place) {
      failing.FailAt(place, kInputOutputFailed);
      EXPECT_EQ(CLSIDFromProgID(u"Quorl.Math", &identifier), QUORL_CODE(0x800703F8)) << place;
      failing.FailAt(place, kInputOutputFailed);
      EXPECT_EQ(create(), QUORL_CODE(0x800703F8));
    }
    failing.FailAt(0, kAccessDenied);
    EXPECT_EQ(global(u"Quorl.Math").first, QUORL_CODE(0x80070005));
  }
  const std::pair<const char16_t*, HRESULT> names[] = {{u"Quorl.Nothing", CO_E_CLASSSTRING},
                                                       {u"Quorl.Money\\Clsid", CO_E_CLASSSTRING},
                                                       {u"", CO_E_CLASSSTRING},
                                                       {nullptr, E_POINTER},
                                                       {u"quorl.MONEY", S_OK}};
  for (const auto& [name, code] : names) EXPECT_EQ(CLSIDFromProgID(name, &identifier), code);
  EXPECT_TRUE(identifier == money.identifier);
  EXPECT_EQ(CLSIDFromProgID(u"Quorl.Money", nullptr), E_POINTER);
  EXPECT_EQ(create(), S_OK);
  EXPECT_EQ(create(&identifier), CLASS_E_NOAGGREGATION);
  for (const ClassRow& row : frame::Catalogue()) {
    const bool is_global = row.kind == frame::ClassKind::kGlobal;
    const auto [code, object] = global(u"Quorl." + String(row.name));
    EXPECT_EQ(code, is_global ? S_OK : CLASS_E_CLASSNOTAVAILABLE) << Utf8(row.name);
    EXPECT_EQ(object != nullptr, is_global);
    EXPECT_EQ(object, global(u"Quorl." + String(row.name)).second);
    EXPECT_EQ(library_.can_unload_now(), S_OK);
  }
  Save(store_, kClassesRoot, "CLSID\\{0553AA64-C47C-467D-B2DD-13C658FBCA74}\\InprocServer32", "",
       "/nowhere%20else");
  EXPECT_EQ(create(), QUORL_E_NOTLOADABLE);
  EXPECT_EQ(QuorlUnregister(path.c_str()), S_OK);
  EXPECT_EQ(global(u"Quorl.Math").first, CO_E_CLASSSTRING);
}

// The two libraries are copied to a folder whose name has to be escaped.
TEST(ComponentProcess, IsFoundWhereverItsTwoLibrariesAre) {
  const std::string folder = testing::TempDir() + "quorl été 100%";
  const auto shell = [&](const std::string& command) {
    const ProgramResult result = RunProgram("f='" + folder + "'; " + command + " 2>&1");
    EXPECT_EQ(result.status, 0) << command;
    return result.output;
  };
  ASSERT_EQ(
      shell("rm -rf \"$f\"; mkdir -p \"$f\" && cp -P " QUORL_BINARY_DIR "/libquorl*.so* \"$f\""),
      "");
  const auto run = [&] {
    MemoryStore store;
    const ScopedStore guard(store);
    const std::string path = folder + "/libquorl.so";
    {
      const Library library(path);
      const auto object = library.Make(u"Money");
      if (library.register_server() != S_OK) std::exit(2);
    }
    // It has left the process.
    if (dlopen(path.c_str(), RTLD_NOLOAD | RTLD_NOW) != nullptr) std::exit(5);
    const std::string kept = Load(
        store, kClassesRoot, "CLSID\\{0553AA64-C47C-467D-B2DD-13C658FBCA74}\\InprocServer32", "");
    if (kept != testing::TempDir() + "quorl %C3%A9t%C3%A9 100%25/libquorl.so" + '\0') {
      std::fprintf(stderr, "%s", kept.c_str());
      std::exit(3);
    }
    Reference<QuorlDispatch> math;
    std::exit(QuorlGlobalObject(u"Quorl.Math", math.Receive()) == S_OK ? 0 : 4);
  };
  EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
  EXPECT_EQ(shell("cd \"$f\" && LD_LIBRARY_PATH=. " QUORL_BINARY_DIR
                  "/examples/tour_c ./libquorl.so | tail -1"),
            "failure 1004 of Combo: La liste est fermée.\n");
  shell("rm -rf \"$f\"");
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
      EXPECT_EQ(id, member.identifier);
    }
    for (std::uint32_t version = 0; version <= attributes.minor_version; ++version) {
      QuorlInterface known{};
      EXPECT_EQ(info.Get()->table->GetInterface(info.Get(), version, &known), S_OK);
      const String name = Taken(known.name);
      EXPECT_EQ(known.members, row.interfaces[version].members) << Utf8(name);
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
  refused(info, table.GetFunction, QuorlFunction{}, 12U);
  refused(info, table.GetArgument, QuorlArgument{}, 12U, 0U);
  refused(info, table.GetArgument, QuorlArgument{}, 0U, 2U);
  refused(info, table.GetTypeName, BSTR{}, 12U, QUORL_RESULT);
  refused(info, table.GetTypeName, BSTR{}, 0U, 2U);
  refused(info, table.GetInterface, QuorlInterface{}, 5U);
  EXPECT_EQ(table.GetDocumentation(info.Get(), 99, nullptr, nullptr), DISP_E_MEMBERNOTFOUND);
  const QuorlLibraryInfoTable& known = *library.Get()->table;
  refused(library, known.GetClass, info.Get(), 12U);
  refused(library, known.GetEnumeration, QuorlEnumeration{}, 5U);
  refused(library, known.GetEnumerator, QuorlEnumerator{}, 5U, 0U);
  refused(library, known.GetEnumerator, QuorlEnumerator{}, 0U, 4U);
  std::int32_t value = 0;
  EXPECT_EQ(known.FindEnumerator(library.Get(), u"hkey_current_USER", &value), S_OK);
  EXPECT_EQ(value, HKEY_CURRENT_USER);
  EXPECT_EQ(known.FindEnumerator(library.Get(), u"HKeyEnum", &value), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(known.FindEnumerator(library.Get(), nullptr, &value), E_POINTER);
  EXPECT_EQ(known.FindEnumerator(library.Get(), u"REG_SZ", nullptr), E_POINTER);
}

TEST(ComponentFiles, VersionsHaveNumbersOfAnyLength) {
  const std::vector<frame::InterfaceRow> versions(112);
  ClassRow row = *frame::FindClass(u"Math");
  row.interfaces = versions;
  EXPECT_EQ(frame::VersionText(row.MinorVersion()), u"1.111");
  EXPECT_EQ(frame::InterfaceName(row, 10), u"Math___v10");
  EXPECT_EQ(frame::InterfaceName(row, 111), u"_Math");
}

TEST(ComponentFiles, GeneratedTextsAreUpToDate) {
  const std::string header = FileText(QUORL_SOURCE_DIR "/quorl/abi/quorl.h");
  const std::size_t begin = header.find("/* begin generated */\n") + 22;
  const std::pair<std::string, std::string> texts[] = {
      {FileText(QUORL_SOURCE_DIR "/docs/quorl.json"), tools::CatalogueJson()},
      {FileText(QUORL_SOURCE_DIR "/docs/quorl.classes"), tools::ClassList()},
      {header.substr(begin, header.find("/* end generated */") - begin), tools::HeaderTables()}};
  for (const auto& [text, now] : texts) EXPECT_EQ(text, now) << "run tools/update_generated.sh";
}

}  // namespace
}  // namespace quorl
