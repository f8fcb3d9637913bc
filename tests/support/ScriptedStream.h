#pragma once

#include <windows.h>

#include <objidl.h>

#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A stream in memory that keeps what was called and answers as it is told. It lives on the stack of a test, whatever its
/// reference count. Its calls count as FallibleCall::Stream.
class ScriptedStream : public IStream
{
public:
    explicit ScriptedStream(std::string_view content = {});

    /// The n-th call of an operation ("Read", "Seek", ...), counted from 1, does nothing and returns `result`.
    void Answer(const std::string& operation, int n, HRESULT result);

    /// Most bytes that one Read or Write moves; `shortResult` is what it then returns.
    uint32_t mostBytes = std::numeric_limits<uint32_t>::max();
    HRESULT shortResult = S_OK;

    /// What Read and Write report as moved, whatever they moved, also in a call that Answer has taken over.
    std::optional<uint32_t> claimedCount;

    /// End position that Seek reports instead of the content's length; 0: the content's length.
    uint64_t reportedEnd = 0;

    std::string Content() const;

    /// What was called, for example "Seek(0, SET, no position)", "Read(5)", "SetSize(12)", "Commit(1)", "Revert()".
    std::vector<std::string> calls;

    STDMETHODIMP QueryInterface(REFIID, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP Read(void* target, ULONG size, ULONG* count) override;
    STDMETHODIMP Write(const void* source, ULONG size, ULONG* count) override;
    STDMETHODIMP Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPosition) override;
    STDMETHODIMP SetSize(ULARGE_INTEGER size) override;
    STDMETHODIMP CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override;
    STDMETHODIMP Commit(DWORD flags) override;
    STDMETHODIMP Revert() override;
    STDMETHODIMP LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override;
    STDMETHODIMP UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override;
    STDMETHODIMP Stat(STATSTG*, DWORD) override;
    STDMETHODIMP Clone(IStream**) override;

private:
    /// Keeps the call; true when it is to return `*result` at once.
    bool Begin(const std::string& operation, const std::string& arguments, HRESULT* result);

    /// Begins a Read or Write that tells its caller how much was moved.
    bool BeginTransfer(const std::string& operation, ULONG size, ULONG* count, HRESULT* result);

    HRESULT EndTransfer(std::size_t moved, ULONG size, ULONG* count);

    std::vector<uint8_t> content;
    std::size_t position = 0;
    std::map<std::string, int> callCounts;
    std::map<std::pair<std::string, int>, HRESULT> answers;
};
