#include "oemadapter/settings/RegistryKey.h"

#include "tests/oemadapter/support/Environment.native.h"
#include "tests/oemadapter/support/RegistryTree.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/RegistryDouble.h"

#include <gtest/gtest.h>

namespace RegistryKeyFaultsTests
{

class RegistryKeyFaults : public testing::Test
{
protected:
    RegistryKeyFaults()
    {
        WriteNumber(HKEY_LOCAL_MACHINE, AdapterKey, u"Some", 1);
    }
    ~RegistryKeyFaults() override
    {
        RemoveAdapterKeys();
    }

    velox::oemadapter::RegistryKey key;
    velox::oemadapter::RegistryValue value{REG_NONE, {4, 7}};
};

TEST_F(RegistryKeyFaults, AKeyThatCannotBeOpenedLeavesNoneOpen)
{
    ASSERT_EQ(key.Open(HKEY_LOCAL_MACHINE, AdapterKey, KEY_QUERY_VALUE), ERROR_SUCCESS);
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::RegistryOpen);
    EXPECT_EQ(key.Open(HKEY_LOCAL_MACHINE, AdapterKey, KEY_QUERY_VALUE), ERROR_ACCESS_DENIED);
    EXPECT_EQ(OpenRegistryKeys(), 0U);
}

TEST_F(RegistryKeyFaults, AKeyOfAllUsersIsNotMadeWithoutTheRight)
{
    EXPECT_EQ(key.Make(HKEY_LOCAL_MACHINE, AdapterKey, KEY_SET_VALUE), ERROR_ACCESS_DENIED);
    EXPECT_EQ(OpenRegistryKeys(), 0U);
}

TEST_F(RegistryKeyFaults, AValueThatCannotBeReadIsLeftAlone)
{
    ASSERT_EQ(key.Open(HKEY_LOCAL_MACHINE, AdapterKey, KEY_QUERY_VALUE), ERROR_SUCCESS);
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::RegistryQuery);
    EXPECT_EQ(key.Read(L"Some", &value), ERROR_ACCESS_DENIED);
    EXPECT_EQ(value.bytes.size(), 2U);
}

TEST_F(RegistryKeyFaults, AKeyThatCannotBeAskedIsNotEmpty)
{
    ASSERT_EQ(key.Open(HKEY_LOCAL_MACHINE, AdapterKey, KEY_QUERY_VALUE), ERROR_SUCCESS);
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::RegistryQuery);
    EXPECT_FALSE(key.IsEmpty());
}

TEST_F(RegistryKeyFaults, VariablesThatCannotBeExpandedStayAsTheyAre)
{
    for (const Expansion fault : {Expansion::Fails, Expansion::Grows})
    {
        expansion = fault;
        EXPECT_EQ(velox::oemadapter::ExpandVariables(u"%ProgramData%\\log"), u"%ProgramData%\\log");
    }
    expansion = Expansion::Works;
    EXPECT_NE(velox::oemadapter::ExpandVariables(u"%ProgramData%\\log"), u"%ProgramData%\\log");
}

} // namespace RegistryKeyFaultsTests
