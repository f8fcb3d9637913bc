#include "tests/support/ScriptedRecording.h"

#include "tests/support/FaultInjector.h"

#include <cstring>
#include <utility>

namespace
{

std::vector<uint8_t> Bytes(const std::vector<float>& samples)
{
    std::vector<uint8_t> bytes(samples.size() * sizeof(float));
    if (!samples.empty())
    {
        std::memcpy(bytes.data(), samples.data(), bytes.size());
    }
    return bytes;
}

} // namespace

ScriptedRecording::ScriptedRecording(const std::vector<float>& samples) : ScriptedRecording(Bytes(samples))
{
}

ScriptedRecording::ScriptedRecording(std::vector<uint8_t> bytes) : content(std::move(bytes))
{
}

HRESULT ScriptedRecording::Begin(const char* operation, HRESULT scripted)
{
    const bool fails = FaultPlan::ShouldFail(FallibleCall::Buffer);
    const FaultPause pause;
    if (onCall)
    {
        onCall(operation);
    }
    return fails ? E_OUTOFMEMORY : scripted;
}

STDMETHODIMP ScriptedRecording::QueryInterface(REFIID, void** object)
{
    *object = nullptr;
    return E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) ScriptedRecording::AddRef()
{
    return 1;
}

STDMETHODIMP_(ULONG) ScriptedRecording::Release()
{
    return 1;
}

STDMETHODIMP ScriptedRecording::Lock(BYTE** bytes, DWORD* maxLength, DWORD* currentLength)
{
    const HRESULT result = Begin("Lock", lockResult);
    if (FAILED(result))
    {
        return result;
    }
    ++locks;
    *bytes = content.data();
    const auto length = static_cast<DWORD>(content.size());
    for (DWORD* target : {maxLength, currentLength})
    {
        if (target != nullptr)
        {
            *target = length;
        }
    }
    return result;
}

STDMETHODIMP ScriptedRecording::Unlock()
{
    const HRESULT result = Begin("Unlock", unlockResult);
    if (OpenLocks() == 0)
    {
        unlockedWithoutLock = true;
        return E_UNEXPECTED;
    }
    ++unlocks;
    return result;
}

STDMETHODIMP ScriptedRecording::GetCurrentLength(DWORD* length)
{
    *length = static_cast<DWORD>(content.size());
    return S_OK;
}

STDMETHODIMP ScriptedRecording::SetCurrentLength(DWORD)
{
    return E_NOTIMPL;
}

STDMETHODIMP ScriptedRecording::GetMaxLength(DWORD* length)
{
    *length = static_cast<DWORD>(content.size());
    return S_OK;
}
