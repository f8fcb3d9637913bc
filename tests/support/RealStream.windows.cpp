#include "tests/support/RealStream.h"

#include <shlwapi.h>

#include <stdexcept>

namespace
{

void Require(bool succeeded, const char* what)
{
    if (!succeeded)
    {
        throw std::runtime_error(what);
    }
}

IStream* OnGlobalMemory()
{
    IStream* stream = nullptr;
    return SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, &stream)) ? stream : nullptr;
}

IStream* OnShellMemory()
{
    return SHCreateMemStream(nullptr, 0);
}

} // namespace

const std::array<RealStreamKind, 2> RealStreamKinds{RealStreamKind{"CreateStreamOnHGlobal", OnGlobalMemory},
                                                    RealStreamKind{"SHCreateMemStream", OnShellMemory}};

RealStream RealStreamKind::Create(std::string_view content) const
{
    RealStream stream(create());
    Require(stream != nullptr, "no stream");
    ULONG written = 0;
    Require(SUCCEEDED(stream->Write(content.data(), static_cast<ULONG>(content.size()), &written)) && written == content.size(),
            "the stream cannot be filled");
    return stream;
}

std::string ContentOf(IStream* stream)
{
    ULARGE_INTEGER end{};
    Require(SUCCEEDED(stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_END, &end)) &&
                SUCCEEDED(stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr)),
            "the stream cannot seek");
    std::string content(static_cast<std::size_t>(end.QuadPart), '\0');
    ULONG count = 0;
    Require(SUCCEEDED(stream->Read(content.data(), static_cast<ULONG>(content.size()), &count)) && count == content.size(),
            "the stream cannot be read");
    return content;
}
