#include "oemadapter/settings/AdapterSettings.h"

#include "tests/oemadapter/support/RegistryTree.h"
#include "tests/support/FaultInjector.h"

#include <gmock/gmock.h>

namespace AdapterSettingsFaultsTests
{

namespace oem = velox::oemadapter;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;

class AdapterSettingsFaults : public testing::Test
{
protected:
    AdapterSettingsFaults()
    {
        WriteNumber(HKEY_LOCAL_MACHINE, AdapterKey, u"UserRecordings", 7);
    }
    ~AdapterSettingsFaults() override
    {
        RemoveAdapterKeys();
    }

    std::vector<std::string> problems;
};

TEST_F(AdapterSettingsFaults, AKeyThatCannotBeOpenedIsToldAndLeavesTheDefaults)
{
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::RegistryOpen);
    EXPECT_EQ(oem::ReadAdapterSettings(&problems).userRecordings, 3U);
    EXPECT_THAT(problems, ElementsAre("The settings cannot be read, error 5: their defaults hold."));
}

TEST_F(AdapterSettingsFaults, ValuesThatCannotBeReadAreToldAndLeaveTheDefaults)
{
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::RegistryQuery);
    EXPECT_EQ(oem::ReadAdapterSettings(&problems).userRecordings, 3U);
    EXPECT_EQ(problems.size(), 6U);
    EXPECT_THAT(problems, Each(HasSubstr(" cannot be read, error 5: its default holds.")));
}

} // namespace AdapterSettingsFaultsTests
