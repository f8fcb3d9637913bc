#include "oemadapter/server/Module.h"
#include "oemadapter/settings/DetectorId.h"
#include "oemadapter/settings/ModulePath.h"
#include "oemadapter/windows/KeywordDetectorOemAdapter.h"
#include "tests/oemadapter/support/DetectorTest.h"
#include "tests/oemadapter/support/RegistrationTest.h"

#include <windows.h>

#include <objbase.h>
#include <olectl.h>

namespace EntryPointsTests
{

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);

class EntryPoints : public DetectorTest
{
protected:
    ~EntryPoints() override
    {
        velox::oemadapter::EndModule();
    }

    RegistryAdministrator administrator;
};

TEST_F(EntryPoints, TheClassObjectIsAFactoryOfAdapters)
{
    void* object = nullptr;
    ASSERT_EQ(DllGetClassObject(velox::oemadapter::DetectorId, IID_IClassFactory, &object), S_OK);
    auto* const factory = static_cast<IClassFactory*>(object);
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IKeywordDetectorOemAdapter, &object), S_OK);
    EXPECT_EQ(factory->Release(), 0U);
    EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
    EXPECT_EQ(static_cast<IUnknown*>(object)->Release(), 0U);
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

TEST_F(EntryPoints, AFactoryThatIsHeldOrALockKeepsTheModule)
{
    void* object = nullptr;
    ASSERT_EQ(DllGetClassObject(velox::oemadapter::DetectorId, IID_IClassFactory, &object), S_OK);
    auto* const factory = static_cast<IClassFactory*>(object);
    EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    factory->AddRef();
    factory->Release();
    EXPECT_EQ(factory->LockServer(FALSE), S_OK);
    factory->Release();
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

TEST_F(EntryPoints, ThereIsNoOtherClassAndNoOtherInterface)
{
    void* object = &library;
    EXPECT_EQ(DllGetClassObject(IID_IClassFactory, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    object = &library;
    EXPECT_EQ(DllGetClassObject(velox::oemadapter::DetectorId, IID_IKeywordDetectorOemAdapter, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(DllGetClassObject(velox::oemadapter::DetectorId, IID_IClassFactory, nullptr), E_POINTER);
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

TEST_F(EntryPoints, RegisterTheModuleThatTheyLieInAndTakeItBack)
{
    EXPECT_EQ(DllRegisterServer(), S_OK);
    EXPECT_EQ(ReadText(HKEY_LOCAL_MACHINE, ServerKey, u""), velox::oemadapter::ModulePath());
    EXPECT_EQ(DllUnregisterServer(), S_OK);
    EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, ClassKey));
}

TEST_F(EntryPoints, TheModulesEndClosesTheLibraryUnlessTheProcessEnds)
{
    EXPECT_EQ(velox::oemadapter::TheModule().detector.AddUser(), S_OK);
    velox::oemadapter::TheModule().detector.RemoveUser();
    EXPECT_EQ(DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr), TRUE);
    EXPECT_EQ(DllMain(nullptr, DLL_PROCESS_DETACH, &library), TRUE);
    EXPECT_EQ(library.objects, 1);
    EXPECT_EQ(DllMain(nullptr, DLL_PROCESS_DETACH, nullptr), TRUE);
    EXPECT_EQ(library.objects, 0);
}

} // namespace EntryPointsTests
