#include "tests/library/configuration/Lines.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

namespace GetPlatformConstraintsFaultsTests
{

using testing::ElementsAre;
using testing::IsEmpty;

using GetPlatformConstraintsFaults = ReaderTest;

TEST_F(GetPlatformConstraintsFaults, FileThatCannotBeOpenedFailsAndLeavesTheText)
{
    const FaultPlan plan(FaultPlan::Nth(2, FallibleCall::FileOpen));
    std::string constraints = "old";
    EXPECT_EQ(reader.GetPlatformConstraints(&constraints), E_FAIL);
    EXPECT_EQ(constraints, "old");
    EXPECT_THAT(logger.lines, ElementsAre(ConfigurationLines::ConstraintsNotOpened));
}

TEST_F(GetPlatformConstraintsFaults, FailedReadGivesAnEmptyLineIsKept)
{
    configuration.WriteXml("<keywords constraints='" + configuration.Directory() +
                           "'/>"); // a directory opens, but cannot be read
    std::string constraints = "old";
    EXPECT_EQ(reader.GetPlatformConstraints(&constraints), S_OK);
    EXPECT_EQ(constraints, "");
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetPlatformConstraintsFaults, CarriageReturnStaysWhereItIsNoPartOfTheLineEnd)
{
    WriteWholeFile(configuration.ConstraintsPath(), "memory=160k\r\nsecond line\r\n");
    std::string constraints;
    EXPECT_EQ(reader.GetPlatformConstraints(&constraints), S_OK);
    EXPECT_EQ(constraints, "memory=160k\r");
}

} // namespace GetPlatformConstraintsFaultsTests
