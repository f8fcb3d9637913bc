#include "library/modelstream/UserModelStream.h"
#include "tests/support/AdapterTest.h"
#include "tests/support/RealStream.h"

namespace
{

class GetUserModelFromIStreamOnRealStreams : public AdapterTest, public testing::WithParamInterface<RealStreamKind>
{
};

INSTANTIATE_TEST_SUITE_P(Kinds, GetUserModelFromIStreamOnRealStreams, testing::ValuesIn(RealStreamKinds));

TEST_P(GetUserModelFromIStreamOnRealStreams, GivesTheWholeContent)
{
    for (const std::string& content : {std::string("VWOV"), std::string("VWOV model"), "VWOV" + std::string(1U << 20, 'm')})
    {
        SCOPED_TRACE(content.size());
        const RealStream stream = GetParam().Create(content);
        uint8_t* data = nullptr;
        uint32_t size = 0;
        EXPECT_EQ(::GetUserModelFromIStream(stream.get(), data, size, &logger), S_OK);
        const std::unique_ptr<const uint8_t[]> model(data);
        EXPECT_TRUE(std::string(model.get(), model.get() + size) == content);
    }
}

TEST_P(GetUserModelFromIStreamOnRealStreams, EmptyStreamGivesAnEmptyBlock)
{
    const RealStream stream = GetParam().Create();
    uint8_t* data = nullptr;
    uint32_t size = 4711;
    // S_OK or S_FALSE, as the stream reports a read at its end.
    EXPECT_TRUE(SUCCEEDED(::GetUserModelFromIStream(stream.get(), data, size, &logger)));
    const std::unique_ptr<const uint8_t[]> model(data);
    EXPECT_NE(model, nullptr);
    EXPECT_EQ(size, 0U);
}

} // namespace
