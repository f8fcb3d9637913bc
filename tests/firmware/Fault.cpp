#include "firmware/Fault.h"

#include <gmock/gmock.h>

namespace FaultTests
{

using testing::EndsWith;
using velox::firmware::FaultNames;

TEST(Fault, EveryOneHasANameAndASentence)
{
    for (std::size_t i = 0; i < FaultNames.size(); ++i)
    {
        EXPECT_EQ(static_cast<std::size_t>(FaultNames[i].fault), i + 1);
        EXPECT_FALSE(FaultNames[i].name.empty());
        EXPECT_THAT(std::string(FaultNames[i].sentence), EndsWith("."));
    }
    EXPECT_EQ(FaultNames.back().fault, velox::firmware::Fault::StalePattern);
}

} // namespace FaultTests
