#include "tests/oemadapter/support/LibraryTest.h"
#include "tests/support/FaultInjector.h"

namespace ArmingFaultsTests
{

using testing::HasSubstr;

class ArmingFaults : public LibraryTest
{
};

TEST_F(ArmingFaults, ALanguageThatCannotBeRecordedIsOnlyLogged)
{
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::RegistryChange);
    EXPECT_EQ(Build(1033, empty.get()), S_OK);
    EXPECT_NE(block, nullptr);
    EXPECT_THAT(log.Read(), HasSubstr("3 adapter IThing::Method The language cannot be recorded, error 5"));
}

} // namespace ArmingFaultsTests
