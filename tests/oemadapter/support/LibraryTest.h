#pragma once

#include "oemadapter/detector/KeywordLibrary.h"
#include "tests/oemadapter/support/DetectorTest.h"
#include "tests/support/HostStream.h"

#include <gmock/gmock.h>

#include <string_view>

/// The detector's library, as it stands within a call.
class LibraryTest : public DetectorTest
{
protected:
    LibraryTest()
    {
        NextProcess();
    }

    /// Another process begins, with a user of the detector.
    void NextProcess()
    {
        Restart();
        EXPECT_EQ(detector->AddUser(), S_OK);
        library.calls.clear();
    }

    /// Does something with the library, as a call of a method of this name.
    HRESULT Call(const std::function<HRESULT(velox::oemadapter::KeywordLibrary&)>& work)
    {
        return detector->Call("IThing::Method",
                              [&](velox::oemadapter::DetectorContents& inside) { return work(*inside.library); });
    }

    /// Arms this language with this stream's content.
    HRESULT Build(uint16_t language, IStream* stream)
    {
        return Call([&](velox::oemadapter::KeywordLibrary& mended) {
            const KeywordSelector selector{1, language};
            return mended.Build(stream, &selector, 1, &block);
        });
    }

    HRESULT Parse(IStream* stream, const std::vector<uint8_t>& result = ResultBlock())
    {
        return Call([&](velox::oemadapter::KeywordLibrary& mended) {
            return mended.Parse(stream, reinterpret_cast<const DetectionResult*>(result.data()), &detection);
        });
    }

    ~LibraryTest() override
    {
        block.reset(); // Before the base looks for what is left.
    }

    velox::oemadapter::TaskMemory<uint8_t> block;
    velox::oemadapter::Detection detection;
    HostStream empty = MakeHostStream();
};

/// A stream that holds this.
inline HostStream StreamOf(std::string_view content)
{
    HostStream stream = MakeHostStream();
    EXPECT_EQ(stream->Write(content.data(), static_cast<ULONG>(content.size()), nullptr), S_OK);
    return stream;
}
