#include "tests/support/ScriptedStream.h"

#include "tests/support/FaultInjector.h"

#include <algorithm>
#include <cstring>

namespace
{

std::string SeekArguments(LARGE_INTEGER move, DWORD origin, const ULARGE_INTEGER* newPosition)
{
    const FaultPause pause;
    const char* originName = origin == STREAM_SEEK_SET ? "SET" : origin == STREAM_SEEK_CUR ? "CUR" : "END";
    return std::to_string(move.QuadPart) + ", " + originName + (newPosition == nullptr ? ", no position" : "");
}

} // namespace

ScriptedStream::ScriptedStream(std::string_view bytes) : content(bytes.begin(), bytes.end())
{
}

void ScriptedStream::Answer(const std::string& operation, int n, HRESULT result)
{
    answers[{operation, n}] = result;
}

std::string ScriptedStream::Content() const
{
    return {content.begin(), content.end()};
}

bool ScriptedStream::Begin(const std::string& operation, const std::string& arguments, HRESULT* result)
{
    const bool fails = FaultPlan::ShouldFail(FallibleCall::Stream);
    const FaultPause pause;
    calls.push_back(operation + "(" + arguments + ")");
    const int n = ++callCounts[operation];
    if (const auto answer = answers.find({operation, n}); answer != answers.end())
    {
        *result = answer->second;
        return true;
    }
    *result = STG_E_MEDIUMFULL;
    return fails;
}

bool ScriptedStream::BeginTransfer(const std::string& operation, ULONG size, ULONG* count, HRESULT* result)
{
    if (count != nullptr && claimedCount)
    {
        *count = *claimedCount;
    }
    return Begin(operation, std::to_string(size), result);
}

HRESULT ScriptedStream::EndTransfer(std::size_t moved, ULONG size, ULONG* count)
{
    position += moved;
    if (count != nullptr && !claimedCount)
    {
        *count = static_cast<ULONG>(moved);
    }
    return moved == size ? S_OK : shortResult;
}

STDMETHODIMP ScriptedStream::QueryInterface(REFIID, void** object)
{
    *object = nullptr;
    return E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) ScriptedStream::AddRef()
{
    return 1;
}

STDMETHODIMP_(ULONG) ScriptedStream::Release()
{
    return 1;
}

STDMETHODIMP ScriptedStream::Read(void* target, ULONG size, ULONG* count)
{
    HRESULT result = S_OK;
    if (BeginTransfer("Read", size, count, &result))
    {
        return result;
    }
    const std::size_t available = content.size() - std::min(position, content.size());
    const std::size_t moved = std::min<std::size_t>({size, available, mostBytes});
    if (moved > 0)
    {
        std::memcpy(target, content.data() + position, moved);
    }
    return EndTransfer(moved, size, count);
}

STDMETHODIMP ScriptedStream::Write(const void* source, ULONG size, ULONG* count)
{
    HRESULT result = S_OK;
    if (BeginTransfer("Write", size, count, &result))
    {
        return result;
    }
    const FaultPause pause;
    const std::size_t moved = std::min<std::size_t>(size, mostBytes);
    content.resize(std::max(content.size(), position + moved));
    if (moved > 0)
    {
        std::memcpy(content.data() + position, source, moved);
    }
    return EndTransfer(moved, size, count);
}

STDMETHODIMP ScriptedStream::Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPosition)
{
    HRESULT result = S_OK;
    if (Begin("Seek", SeekArguments(move, origin, newPosition), &result))
    {
        return result;
    }
    const auto base = static_cast<LONGLONG>(origin == STREAM_SEEK_SET   ? 0
                                            : origin == STREAM_SEEK_CUR ? position
                                                                        : content.size());
    position = static_cast<std::size_t>(base + move.QuadPart);
    if (newPosition != nullptr)
    {
        newPosition->QuadPart = origin == STREAM_SEEK_END && reportedEnd != 0 ? reportedEnd : position;
    }
    return S_OK;
}

STDMETHODIMP ScriptedStream::SetSize(ULARGE_INTEGER size)
{
    HRESULT result = S_OK;
    if (Begin("SetSize", std::to_string(size.QuadPart), &result))
    {
        return result;
    }
    const FaultPause pause;
    content.resize(static_cast<std::size_t>(size.QuadPart));
    return S_OK;
}

STDMETHODIMP ScriptedStream::Commit(DWORD flags)
{
    HRESULT result = S_OK;
    return Begin("Commit", std::to_string(flags), &result) ? result : S_OK;
}

STDMETHODIMP ScriptedStream::Revert()
{
    HRESULT result = S_OK;
    return Begin("Revert", "", &result) ? result : S_OK;
}

STDMETHODIMP ScriptedStream::CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*)
{
    return E_NOTIMPL;
}

STDMETHODIMP ScriptedStream::LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD)
{
    return E_NOTIMPL;
}

STDMETHODIMP ScriptedStream::UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD)
{
    return E_NOTIMPL;
}

STDMETHODIMP ScriptedStream::Stat(STATSTG*, DWORD)
{
    return E_NOTIMPL;
}

STDMETHODIMP ScriptedStream::Clone(IStream**)
{
    return E_NOTIMPL;
}
