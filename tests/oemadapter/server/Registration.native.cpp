#include "oemadapter/server/Registration.h"

#include "oemadapter/settings/RegistryKey.h"
#include "tests/oemadapter/support/RegistrationTest.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/RegistryDouble.h"

#include <new>

namespace RegistrationFaultsTests
{

using velox::oemadapter::RegisterServer;
using velox::oemadapter::UnregisterServer;
using velox::oemadapter::WideText;

class RegistrationFaults : public RegistrationTest
{
protected:
    static void MakeEmptyKey(const WideText& path)
    {
        velox::oemadapter::RegistryKey key;
        EXPECT_EQ(key.Make(HKEY_LOCAL_MACHINE, path, KEY_QUERY_VALUE), ERROR_SUCCESS);
    }
};

/// A key and a value for each of three.
constexpr uint64_t Changes = 6;

TEST_F(RegistrationFaults, FailsWholeAndLeavesNoKeyWhereNoneWas)
{
    for (uint64_t call = 1; call <= Changes; ++call)
    {
        SCOPED_TRACE(call);
        {
            const FaultPlan plan = FaultPlan::Nth(call, FallibleCall::RegistryChange);
            EXPECT_EQ(RegisterServer(ModuleFile), E_ACCESSDENIED);
        }
        EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, ClassKey));
        EXPECT_EQ(OpenRegistryKeys(), 0U);
    }
    const FaultPlan plan = FaultPlan::Nth(Changes + 1, FallibleCall::RegistryChange);
    EXPECT_EQ(RegisterServer(ModuleFile), S_OK);
}

TEST_F(RegistrationFaults, FailsWholeAndPutsAnEarlierOneBack)
{
    constexpr const char16_t* Earlier = u"D:\\old.dll";
    EXPECT_EQ(RegisterServer(Earlier), S_OK);
    for (uint64_t call = 1; call <= Changes; ++call)
    {
        SCOPED_TRACE(call);
        const FaultPlan plan = FaultPlan::Nth(call, FallibleCall::RegistryChange);
        EXPECT_EQ(RegisterServer(ModuleFile), E_ACCESSDENIED);
        ExpectRegistered(Earlier);
    }
}

TEST_F(RegistrationFaults, FailsWholeAroundWhatIsForeign)
{
    const std::u16string foreign = std::u16string(ClassKey) + u"\\Foreign";
    WriteText(HKEY_LOCAL_MACHINE, foreign, u"", u"value");
    for (uint64_t call = 1; call <= Changes; ++call)
    {
        SCOPED_TRACE(call);
        const FaultPlan plan = FaultPlan::Nth(call, FallibleCall::RegistryChange);
        EXPECT_EQ(RegisterServer(ModuleFile), E_ACCESSDENIED);
        EXPECT_EQ(ReadText(HKEY_LOCAL_MACHINE, ClassKey, u""), std::nullopt);
        EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, ServerKey));
        EXPECT_EQ(ReadText(HKEY_LOCAL_MACHINE, foreign, u""), u"value");
    }
}

TEST_F(RegistrationFaults, WithoutMemoryNothingIsWritten)
{
    uint64_t allocations = 0;
    {
        const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::Allocation);
        EXPECT_THROW(RegisterServer(ModuleFile), std::bad_alloc);
    }
    {
        const FaultPlan plan = FaultPlan(FaultPlan::Nth(1'000'000, FallibleCall::Allocation));
        EXPECT_EQ(RegisterServer(ModuleFile), S_OK);
        allocations = plan.Calls();
    }
    for (uint64_t call = 1; call <= allocations; ++call)
    {
        SCOPED_TRACE(call);
        EXPECT_EQ(UnregisterServer(), S_OK);
        const FaultPlan plan = FaultPlan::Nth(call, FallibleCall::Allocation);
        EXPECT_THROW(RegisterServer(ModuleFile), std::bad_alloc);
        EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, ClassKey));
    }
}

TEST_F(RegistrationFaults, ThatCannotBeTakenBackGivesTheRegistrysFailure)
{
    EXPECT_EQ(RegisterServer(ModuleFile), S_OK);
    // Three values, then two keys; what can be taken back is.
    for (uint64_t call = 1; call <= 5; ++call)
    {
        SCOPED_TRACE(call);
        EXPECT_EQ(RegisterServer(ModuleFile), S_OK);
        const FaultPlan plan = FaultPlan::Nth(call, FallibleCall::RegistryChange);
        EXPECT_EQ(UnregisterServer(), call == 5 || HasKey(HKEY_LOCAL_MACHINE, ClassKey) ? E_ACCESSDENIED : S_OK);
        EXPECT_TRUE(HasKey(HKEY_LOCAL_MACHINE, ClassKey));
    }
    EXPECT_EQ(UnregisterServer(), S_OK);
    EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, ClassKey));
}

TEST_F(RegistrationFaults, WhoseKeysCannotBeOpenedIsNotTakenBackSilently)
{
    for (uint64_t call = 1; call <= 5; ++call)
    {
        SCOPED_TRACE(call);
        EXPECT_EQ(RegisterServer(ModuleFile), S_OK);
        const FaultPlan plan = FaultPlan::Nth(call, FallibleCall::RegistryOpen);
        EXPECT_EQ(UnregisterServer(), E_ACCESSDENIED);
    }
}

TEST_F(RegistrationFaults, FailsWholeAndLeavesEmptyKeysThatWereThere)
{
    MakeEmptyKey(ServerKey);
    for (uint64_t call = 1; call <= Changes; ++call)
    {
        SCOPED_TRACE(call);
        const FaultPlan plan = FaultPlan::Nth(call, FallibleCall::RegistryChange);
        EXPECT_EQ(RegisterServer(ModuleFile), E_ACCESSDENIED);
        EXPECT_TRUE(HasKey(HKEY_LOCAL_MACHINE, ServerKey));
    }
    RemoveAdapterKeys();
    MakeEmptyKey(ClassKey);
    const FaultPlan plan = FaultPlan::Nth(Changes, FallibleCall::RegistryChange);
    EXPECT_EQ(RegisterServer(ModuleFile), E_ACCESSDENIED);
    EXPECT_TRUE(HasKey(HKEY_LOCAL_MACHINE, ClassKey));
    EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, ServerKey));
}

} // namespace RegistrationFaultsTests
