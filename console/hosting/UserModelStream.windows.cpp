#include "console/hosting/UserModelStream.h"

#include "console/text/CommandFailure.h"
#include "console/text/StatusText.h"
#include "console/text/Utf8Path.h"

#include <shlwapi.h>

namespace velox::console
{

namespace
{

void Check(HRESULT result, const char* what)
{
    if (result != S_OK)
    {
        throw CommandFailure(ExitCode::LibraryFailure, std::string(what) + " failed: " + ResultText(result) + ".",
                             "Is memory short? Run the command again.");
    }
}

} // namespace

oemadapter::ComPointer<IStream> OpenUserModel(const std::filesystem::path& file)
{
    IStream* stream = nullptr;
    if (const HRESULT result = SHCreateStreamOnFileEx(file.wstring().c_str(), STGM_READ | STGM_SHARE_DENY_WRITE,
                                                      FILE_ATTRIBUTE_NORMAL, FALSE, nullptr, &stream);
        result != S_OK)
    {
        throw CommandFailure(ExitCode::BadInput,
                             "The user model " + Utf8(file) + " cannot be opened: " + ResultText(result) + ".",
                             "Check the name, or make the model with velox-kws enroll.");
    }
    return oemadapter::ComPointer<IStream>(stream);
}

oemadapter::ComPointer<IStream> EmptyStream()
{
    IStream* stream = nullptr;
    Check(CreateStreamOnHGlobal(nullptr, TRUE, &stream), "Making a stream");
    return oemadapter::ComPointer<IStream>(stream);
}

std::vector<uint8_t> Content(IStream* stream)
{
    STATSTG status{};
    Check(stream->Stat(&status, STATFLAG_NONAME), "Asking the stream for its size");
    std::vector<uint8_t> bytes(static_cast<std::size_t>(status.cbSize.QuadPart));
    Check(stream->Seek({}, STREAM_SEEK_SET, nullptr), "Seeking in the stream");
    ULONG read = 0;
    Check(stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &read), "Reading the stream");
    bytes.resize(read);
    return bytes;
}

} // namespace velox::console
