#include "tests/oemadapter/support/LiveObjects.native.h"
#include "tests/support/AudioFormat.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/ReferenceCounted.h"

#include <windows.h>

#include <mfapi.h>
#include <objbase.h>

#include <vector>

namespace
{

/// Its calls count as FallibleCall::Buffer.
class MemoryBuffer final : public ReferenceCounted<IMFMediaBuffer>
{
public:
    explicit MemoryBuffer(DWORD size) : content(size)
    {
        ++liveObjects;
    }

    STDMETHODIMP QueryInterface(REFIID, void** object) override
    {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP Lock(BYTE** bytes, DWORD* maxLength, DWORD* currentLength) override
    {
        if (FaultPlan::ShouldFail(FallibleCall::Buffer))
        {
            return E_OUTOFMEMORY;
        }
        *bytes = content.data();
        if (maxLength != nullptr)
        {
            *maxLength = static_cast<DWORD>(content.size());
        }
        if (currentLength != nullptr)
        {
            *currentLength = length;
        }
        return S_OK;
    }
    STDMETHODIMP Unlock() override
    {
        return FaultPlan::ShouldFail(FallibleCall::Buffer) ? E_UNEXPECTED : S_OK;
    }
    STDMETHODIMP GetCurrentLength(DWORD* currentLength) override
    {
        *currentLength = length;
        return S_OK;
    }
    STDMETHODIMP SetCurrentLength(DWORD newLength) override
    {
        if (FaultPlan::ShouldFail(FallibleCall::Buffer) || newLength > content.size())
        {
            return E_INVALIDARG;
        }
        length = newLength;
        return S_OK;
    }
    STDMETHODIMP GetMaxLength(DWORD* maxLength) override
    {
        *maxLength = static_cast<DWORD>(content.size());
        return S_OK;
    }

private:
    ~MemoryBuffer()
    {
        --liveObjects;
    }

    std::vector<BYTE> content;
    DWORD length = 0;
};

} // namespace

HRESULT WINAPI MFCreateMemoryBuffer(DWORD size, IMFMediaBuffer** buffer)
{
    if (FaultPlan::ShouldFail(FallibleCall::CreateBuffer))
    {
        return E_OUTOFMEMORY;
    }
    const FaultPause pause;
    *buffer = new MemoryBuffer(size);
    return S_OK;
}

HRESULT WINAPI MFCreateWaveFormatExFromMFMediaType(IMFMediaType* mediaType, WAVEFORMATEX** format, UINT32* size, UINT32 flags)
{
    if (flags != MFWaveFormatExConvertFlag_Normal)
    {
        return E_INVALIDARG;
    }
    auto* const made = FaultPlan::ShouldFail(FallibleCall::CreateWaveFormat)
                           ? nullptr
                           : static_cast<WAVEFORMATEX*>(CoTaskMemAlloc(sizeof(WAVEFORMATEX)));
    if (made == nullptr)
    {
        return E_OUTOFMEMORY;
    }
    *made = ReadAudioFormat(mediaType);
    *format = made;
    *size = sizeof(WAVEFORMATEX);
    return S_OK;
}
