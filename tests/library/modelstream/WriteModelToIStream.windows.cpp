#include "library/modelstream/UserModelStream.h"
#include "tests/support/AdapterTest.h"
#include "tests/support/RealStream.h"

namespace
{

class WriteModelToIStreamOnRealStreams : public AdapterTest, public testing::WithParamInterface<RealStreamKind>
{
protected:
    HRESULT Write(const std::string& model, IStream* stream)
    {
        const std::vector<uint8_t> data(model.begin(), model.end());
        return ::WriteModelToIStream(stream, data.data(), static_cast<uint32_t>(data.size()), &logger);
    }
};

/// What a write into such a stream gives: the commit's result or else the revert's. Wine's shell stream can do neither.
HRESULT CommitOrRevert(const RealStreamKind& kind)
{
    const RealStream stream = kind.Create();
    const HRESULT committed = stream->Commit(STGC_OVERWRITE);
    return SUCCEEDED(committed) ? committed : stream->Revert();
}

INSTANTIATE_TEST_SUITE_P(Kinds, WriteModelToIStreamOnRealStreams, testing::ValuesIn(RealStreamKinds));

TEST_P(WriteModelToIStreamOnRealStreams, ReplacesTheContent)
{
    for (const std::string_view former : {"", "short", "VWOV, and a former content that is longer than the model"})
    {
        SCOPED_TRACE(former);
        const RealStream stream = GetParam().Create(former);
        EXPECT_EQ(Write("VWOV model", stream.get()), CommitOrRevert(GetParam()));
        EXPECT_EQ(ContentOf(stream.get()), "VWOV model");
    }
}

TEST_P(WriteModelToIStreamOnRealStreams, WrittenModelIsFoundAndReadBack)
{
    for (const std::string& written : {std::string("VWOV"), std::string("VWOV model"), "VWOV" + std::string(1U << 20, 'm')})
    {
        SCOPED_TRACE(written.size());
        const RealStream stream = GetParam().Create("a former content");
        EXPECT_EQ(Write(written, stream.get()), CommitOrRevert(GetParam()));
        EXPECT_TRUE(SUCCEEDED(::CheckIStreamForUserModel(stream.get(), &logger)));

        uint8_t* data = nullptr;
        uint32_t size = 0;
        EXPECT_EQ(::GetUserModelFromIStream(stream.get(), data, size, &logger), S_OK);
        const std::unique_ptr<const uint8_t[]> model(data);
        EXPECT_TRUE(std::string(model.get(), model.get() + size) == written);
    }
}

} // namespace
