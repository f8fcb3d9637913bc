#include "console/hosting/RecordingBuffer.h"

#include "console/text/CommandFailure.h"
#include "console/text/StatusText.h"

#include <mfapi.h>

#include <cstring>

namespace velox::console
{

namespace
{

void Check(HRESULT result)
{
    if (result != S_OK)
    {
        throw CommandFailure(ExitCode::LibraryFailure, "No buffer for a recording: " + ResultText(result) + ".",
                             "Is the recording very long? Is Media Foundation installed?");
    }
}

} // namespace

ComPointer<IMFMediaBuffer> MakeRecording(std::span<const float> samples)
{
    const auto size = static_cast<DWORD>(samples.size_bytes());
    IMFMediaBuffer* made = nullptr;
    Check(MFCreateMemoryBuffer(size, &made));
    ComPointer<IMFMediaBuffer> buffer(made);
    BYTE* bytes = nullptr;
    Check(buffer->Lock(&bytes, nullptr, nullptr));
    std::memcpy(bytes, samples.data(), size);
    Check(buffer->Unlock());
    Check(buffer->SetCurrentLength(size));
    return buffer;
}

} // namespace velox::console
