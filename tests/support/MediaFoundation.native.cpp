#include "tests/support/MediaFoundation.h"

#include "tests/support/AudioFormat.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/ReferenceCounted.h"

#include <mferror.h>

#include <atomic>
#include <cstring>

namespace
{

std::atomic<std::size_t> liveTypes = 0;

/// A media type that keeps the wave format it was made from and its count of references, and can do nothing else.
class MediaType final : public ReferenceCounted<IMFMediaType>
{
public:
    MediaType()
    {
        ++liveTypes;
    }

    WAVEFORMATEX format{};
    uint32_t formatSize = 0;

    STDMETHODIMP QueryInterface(REFIID, void** object) override
    {
        *object = nullptr;
        return E_NOINTERFACE;
    }

    // clang-format off: one line for each operation that nobody here calls.
    STDMETHODIMP GetItem(REFGUID, PROPVARIANT*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetItemType(REFGUID, MF_ATTRIBUTE_TYPE*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP CompareItem(REFGUID, REFPROPVARIANT, BOOL*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP Compare(IMFAttributes*, MF_ATTRIBUTES_MATCH_TYPE, BOOL*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetUINT32(REFGUID, UINT32*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetUINT64(REFGUID, UINT64*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetDouble(REFGUID, double*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetGUID(REFGUID, GUID*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetStringLength(REFGUID, UINT32*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetString(REFGUID, LPWSTR, UINT32, UINT32*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetAllocatedString(REFGUID, LPWSTR*, UINT32*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetBlobSize(REFGUID, UINT32*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetBlob(REFGUID, UINT8*, UINT32, UINT32*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetAllocatedBlob(REFGUID, UINT8**, UINT32*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetUnknown(REFGUID, REFIID, LPVOID*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP SetItem(REFGUID, REFPROPVARIANT) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP DeleteItem(REFGUID) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP DeleteAllItems() override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP SetUINT32(REFGUID, UINT32) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP SetUINT64(REFGUID, UINT64) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP SetDouble(REFGUID, double) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP SetGUID(REFGUID, REFGUID) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP SetString(REFGUID, LPCWSTR) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP SetBlob(REFGUID, const UINT8*, UINT32) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP SetUnknown(REFGUID, IUnknown*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP LockStore() override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP UnlockStore() override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetCount(UINT32*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetItemByIndex(UINT32, GUID*, PROPVARIANT*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP CopyAllItems(IMFAttributes*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetMajorType(GUID*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP IsCompressedFormat(BOOL*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP IsEqual(IMFMediaType*, DWORD*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP GetRepresentation(GUID, LPVOID*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP FreeRepresentation(GUID, LPVOID) override
    {
        return E_NOTIMPL;
    }
    // clang-format on

private:
    ~MediaType()
    {
        --liveTypes;
    }
};

} // namespace

std::size_t LiveMediaTypes()
{
    return liveTypes;
}

uint32_t WaveFormatSize(IMFMediaType* mediaType)
{
    return static_cast<MediaType*>(mediaType)->formatSize;
}

WAVEFORMATEX ReadAudioFormat(IMFMediaType* mediaType)
{
    return static_cast<MediaType*>(mediaType)->format;
}

HRESULT WINAPI MFCreateMediaType(IMFMediaType** type)
{
    if (FaultPlan::ShouldFail(FallibleCall::CreateMediaType))
    {
        return E_OUTOFMEMORY;
    }
    const FaultPause pause;
    *type = new MediaType;
    return S_OK;
}

HRESULT WINAPI MFInitMediaTypeFromWaveFormatEx(IMFMediaType* mediaType, const WAVEFORMATEX* format, UINT32 size)
{
    if (FaultPlan::ShouldFail(FallibleCall::InitMediaType))
    {
        return MF_E_INVALIDMEDIATYPE;
    }
    if (mediaType == nullptr || format == nullptr)
    {
        return E_POINTER;
    }
    if (size < sizeof(WAVEFORMATEX))
    {
        return E_INVALIDARG;
    }
    auto* type = static_cast<MediaType*>(mediaType);
    std::memcpy(&type->format, format, sizeof(WAVEFORMATEX));
    type->formatSize = size;
    return S_OK;
}
