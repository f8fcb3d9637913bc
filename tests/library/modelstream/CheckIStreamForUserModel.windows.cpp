#include "library/modelstream/UserModelStream.h"
#include "tests/support/AdapterTest.h"
#include "tests/support/RealStream.h"

namespace
{

class CheckIStreamForUserModelOnRealStreams : public AdapterTest, public testing::WithParamInterface<RealStreamKind>
{
protected:
    HRESULT Check(std::string_view content)
    {
        const RealStream stream = GetParam().Create(content);
        return ::CheckIStreamForUserModel(stream.get(), &logger);
    }
};

INSTANTIATE_TEST_SUITE_P(Kinds, CheckIStreamForUserModelOnRealStreams, testing::ValuesIn(RealStreamKinds));

TEST_P(CheckIStreamForUserModelOnRealStreams, EmptyStreamHoldsNoModel)
{
    EXPECT_EQ(Check(""), E_FAIL);
}

TEST_P(CheckIStreamForUserModelOnRealStreams, BareMagicIsAModel)
{
    // S_OK or S_FALSE, as the stream reports a short read.
    EXPECT_TRUE(SUCCEEDED(Check("VWOV")));
}

TEST_P(CheckIStreamForUserModelOnRealStreams, ModelIsFound)
{
    EXPECT_EQ(Check("VWOV and the rest"), S_OK);
}

TEST_P(CheckIStreamForUserModelOnRealStreams, PrefixOfTheMagicIsNoModel)
{
    for (const std::string_view content : {"V", "VW", "VWO"})
    {
        SCOPED_TRACE(content);
        EXPECT_EQ(Check(content), E_FAIL);
    }
}

TEST_P(CheckIStreamForUserModelOnRealStreams, EveryByteOfTheMagicCounts)
{
    for (std::size_t i = 0; i < 4; ++i)
    {
        SCOPED_TRACE(i);
        std::string content = "VWOV and the rest";
        content[i] = '#';
        EXPECT_EQ(Check(content), E_FAIL);
    }
}

} // namespace
