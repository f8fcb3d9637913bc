#include "tests/library/modelstream/RealStreamTest.h"

namespace WriteModelToIStreamOnRealTests
{

using WriteModelToIStreamOnRealStreams = RealStreamTest;

/// What a write into such a stream gives: the commit's result or else the revert's. Wine's shell stream can do neither.
HRESULT CommitOrRevert(const RealStreamKind& kind)
{
    const RealStream stream = kind.Create();
    const HRESULT committed = stream->Commit(STGC_OVERWRITE);
    return SUCCEEDED(committed) ? committed : stream->Revert();
}

INSTANTIATE_TEST_SUITE_P(Kinds, WriteModelToIStreamOnRealStreams, testing::ValuesIn(RealStreamKinds));

TEST_P(WriteModelToIStreamOnRealStreams, ReplacesTheContentWhichIsFoundAndReadBack)
{
    for (const std::string_view former : {"", "short", "VWOV, and a former content that is longer than the model"})
    {
        for (const std::string& written : {std::string("VWOV"), std::string("VWOV model"), "VWOV" + std::string(1U << 20, 'm')})
        {
            SCOPED_TRACE(testing::Message() << written.size() << " bytes over " << former);
            const RealStream stream = Create(former);
            EXPECT_EQ(Write(written, stream.get()), CommitOrRevert(GetParam()));
            EXPECT_TRUE(ContentOf(stream.get()) == written);
            EXPECT_TRUE(SUCCEEDED(Check(stream.get())));
            EXPECT_EQ(Get(stream.get()), S_OK);
            EXPECT_TRUE(Model() == written);
        }
    }
}

} // namespace WriteModelToIStreamOnRealTests
