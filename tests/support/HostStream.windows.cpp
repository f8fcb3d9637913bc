#include "tests/support/HostStream.h"

#include <objbase.h>

#include <stdexcept>

HostStream MakeHostStream()
{
    IStream* stream = nullptr;
    if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, &stream)))
    {
        throw std::runtime_error("the stream cannot be made");
    }
    return {stream, [](IStream* released) {
                released->Release();
            }};
}
