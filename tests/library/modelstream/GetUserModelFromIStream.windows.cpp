#include "tests/library/modelstream/RealStreamTest.h"

namespace GetUserModelFromIStreamOnRealTests
{

using GetUserModelFromIStreamOnRealStreams = RealStreamTest;

INSTANTIATE_TEST_SUITE_P(Kinds, GetUserModelFromIStreamOnRealStreams, testing::ValuesIn(RealStreamKinds));

TEST_P(GetUserModelFromIStreamOnRealStreams, GivesTheWholeContent)
{
    for (const std::string& content : {std::string("VWOV"), std::string("VWOV model"), "VWOV" + std::string(1U << 20, 'm')})
    {
        SCOPED_TRACE(content.size());
        EXPECT_EQ(Get(Create(content).get()), S_OK);
        EXPECT_TRUE(Model() == content);
    }
}

TEST_P(GetUserModelFromIStreamOnRealStreams, EmptyStreamGivesAnEmptyBlock)
{
    // S_OK or S_FALSE, as the stream reports a read at its end.
    EXPECT_TRUE(SUCCEEDED(Get(Create().get())));
    EXPECT_NE(model, nullptr);
    EXPECT_EQ(size, 0U);
}

} // namespace GetUserModelFromIStreamOnRealTests
