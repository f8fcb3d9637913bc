#include "oemadapter/server/Module.h"
#include "oemadapter/settings/DetectorId.h"
#include "tests/oemadapter/support/Environment.native.h"
#include "tests/oemadapter/support/RegistrationTest.h"
#include "tests/support/FaultInjector.h"

#include <windows.h>

#include <objbase.h>
#include <olectl.h>

namespace EntryPointsFaultsTests
{

class EntryPointsFaults : public RegistrationTest
{
};

TEST_F(EntryPointsFaults, NoExceptionLeaves)
{
    velox::oemadapter::EndModule();
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::Allocation);
    void* object = nullptr;
    EXPECT_EQ(DllGetClassObject(velox::oemadapter::DetectorId, IID_IClassFactory, &object), E_OUTOFMEMORY);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(DllCanUnloadNow(), E_OUTOFMEMORY);
    EXPECT_EQ(DllRegisterServer(), E_OUTOFMEMORY);
    EXPECT_EQ(DllUnregisterServer(), E_OUTOFMEMORY);
}

TEST_F(EntryPointsFaults, AModuleOfUnknownPathIsNotRegistered)
{
    modulePath.reset();
    EXPECT_EQ(DllRegisterServer(), E_UNEXPECTED);
    modulePath = DefaultModulePath;
    EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, ClassKey));
}

} // namespace EntryPointsFaultsTests
