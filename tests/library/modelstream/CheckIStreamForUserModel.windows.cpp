#include "tests/library/modelstream/RealStreamTest.h"

namespace CheckIStreamForUserModelOnRealTests
{

using CheckIStreamForUserModelOnRealStreams = RealStreamTest;

INSTANTIATE_TEST_SUITE_P(Kinds, CheckIStreamForUserModelOnRealStreams, testing::ValuesIn(RealStreamKinds));

TEST_P(CheckIStreamForUserModelOnRealStreams, ModelIsFoundByItsFirstFourBytes)
{
    // A bare magic gives S_OK or S_FALSE, as the stream reports a short read.
    EXPECT_TRUE(SUCCEEDED(Check(Create("VWOV").get())));
    EXPECT_EQ(Check(Create("VWOV and the rest").get()), S_OK);
    for (const std::string_view content :
         {"", "V", "VW", "VWO", "#WOV and the rest", "V#OV and the rest", "VW#V and the rest", "VWO# and the rest"})
    {
        SCOPED_TRACE(content);
        EXPECT_EQ(Check(Create(content).get()), E_FAIL);
    }
}

} // namespace CheckIStreamForUserModelOnRealTests
