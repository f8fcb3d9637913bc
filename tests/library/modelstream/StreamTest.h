#pragma once

#include "library/modelstream/UserModelStream.h"
#include "tests/library/modelstream/Lines.h"
#include "tests/support/RecordingLogger.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

/// The room's operations, called with a logger.
class StreamTest : public testing::Test
{
protected:
    HRESULT Check(IStream* stream)
    {
        return CheckIStreamForUserModel(stream, &logger);
    }

    /// Reads the model; the block comes to `model`, or stays when the output was left alone.
    HRESULT Get(IStream* stream)
    {
        uint8_t before = 0;
        uint8_t* data = &before;
        const HRESULT result = GetUserModelFromIStream(stream, data, size, &logger);
        untouched = data == &before;
        if (!untouched)
        {
            model.reset(data);
        }
        return result;
    }

    HRESULT Write(const std::string& content, IStream* stream)
    {
        // A block of exactly the model's length, so that a read beyond it does not pass unseen.
        const std::vector<uint8_t> data(content.begin(), content.end());
        return WriteModelToIStream(stream, data.data(), static_cast<uint32_t>(data.size()), &logger);
    }

    std::string Model() const
    {
        return {model.get(), model.get() + size};
    }

    RecordingLogger logger;
    std::unique_ptr<uint8_t[]> model;
    uint32_t size = 4711;
    bool untouched = true;
};
