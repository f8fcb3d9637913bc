#pragma once

#include "tests/library/modelstream/StreamTest.h"
#include "tests/support/RealStream.h"

/// The room's operations with each kind of stream that the platform makes.
class RealStreamTest : public StreamTest, public testing::WithParamInterface<RealStreamKind>
{
protected:
    static RealStream Create(std::string_view content = {})
    {
        return GetParam().Create(content);
    }
};
