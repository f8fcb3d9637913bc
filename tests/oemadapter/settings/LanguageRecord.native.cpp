#include "oemadapter/settings/LanguageRecord.h"

#include "tests/oemadapter/support/RegistryTree.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/RegistryDouble.h"

#include <gtest/gtest.h>

namespace LanguageRecordFaultsTests
{

using velox::oemadapter::ReadLastLanguage;
using velox::oemadapter::WriteLastLanguage;

class LanguageRecordFaults : public testing::Test
{
protected:
    LanguageRecordFaults()
    {
        WriteNumber(HKEY_CURRENT_USER, UserKey, u"LastLanguage", 1033);
    }
    ~LanguageRecordFaults() override
    {
        RemoveAdapterKeys();
    }
};

TEST_F(LanguageRecordFaults, ThatCannotBeReadIsNone)
{
    for (const FallibleCall call : {FallibleCall::RegistryOpen, FallibleCall::RegistryQuery})
    {
        const FaultPlan plan = FaultPlan::From(1, call);
        EXPECT_EQ(ReadLastLanguage(), std::nullopt);
        EXPECT_EQ(OpenRegistryKeys(), 0U);
    }
}

TEST_F(LanguageRecordFaults, ThatCannotBeWrittenGivesTheRegistrysError)
{
    for (const uint64_t call : {1U, 2U})
    {
        const FaultPlan plan = FaultPlan::Nth(call, FallibleCall::RegistryChange);
        EXPECT_EQ(WriteLastLanguage(1040), ERROR_ACCESS_DENIED);
        EXPECT_EQ(OpenRegistryKeys(), 0U);
    }
    EXPECT_EQ(ReadLastLanguage(), 1033);
}

TEST_F(LanguageRecordFaults, TheSameLanguageIsNotWrittenAgain)
{
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::RegistryChange);
    EXPECT_EQ(WriteLastLanguage(1033), ERROR_SUCCESS);
    EXPECT_EQ(plan.Calls(), 0U);
}

} // namespace LanguageRecordFaultsTests
