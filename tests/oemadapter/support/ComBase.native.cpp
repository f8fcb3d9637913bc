// COM's own functions and names, as far as the adapter needs them.
#include "tests/oemadapter/support/LiveObjects.native.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/ReferenceCounted.h"
#include "tests/support/ScriptedStream.h"

#include <windows.h>

#include <objbase.h>

#include <algorithm>
#include <cstdio>

extern "C"
{
    const IID IID_IUnknown{0x00000000, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
    const IID IID_IClassFactory{0x00000001, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
    const IID IID_IMarshal{0x00000003, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
}

namespace
{

/// What a marshaler gives out: an interface of the outer object, whose references it counts.
class OuterInterface final : public IUnknown
{
public:
    explicit OuterInterface(IUnknown* outerObject) : outer(outerObject)
    {
    }
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override
    {
        return outer->QueryInterface(iid, object);
    }
    STDMETHODIMP_(ULONG) AddRef() override
    {
        return outer->AddRef();
    }
    STDMETHODIMP_(ULONG) Release() override
    {
        return outer->Release();
    }

private:
    IUnknown* outer;
};

/// The object that is aggregated; its own references are those of whoever aggregates it.
class Marshaler final : public ReferenceCounted<IUnknown>
{
public:
    explicit Marshaler(IUnknown* outerObject) : marshal(outerObject)
    {
        ++liveObjects;
    }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override
    {
        *object = iid == IID_IMarshal ? &marshal : nullptr;
        return *object == nullptr ? E_NOINTERFACE : (marshal.AddRef(), S_OK);
    }

private:
    ~Marshaler()
    {
        --liveObjects;
    }

    OuterInterface marshal;
};

class MemoryStream final : public ReferenceCounted<ScriptedStream>
{
public:
    MemoryStream()
    {
        ++liveObjects;
    }
    ~MemoryStream()
    {
        --liveObjects;
    }

private:
};

/// "{3B0E9B6C-5C1D-4A57-8E07-61C2A94D7F25}"
constexpr const char* GuidFormat = "{%8x-%4hx-%4hx-%2hhx%2hhx-%2hhx%2hhx%2hhx%2hhx%2hhx%2hhx}";
constexpr std::size_t GuidLength = 38;

} // namespace

HRESULT WINAPI CoCreateFreeThreadedMarshaler(IUnknown* outer, IUnknown** marshaler)
{
    if (FaultPlan::ShouldFail(FallibleCall::CreateMarshaler))
    {
        return E_OUTOFMEMORY;
    }
    const FaultPause pause;
    *marshaler = new Marshaler(outer);
    return S_OK;
}

HRESULT WINAPI CreateStreamOnHGlobal(HGLOBAL memory, BOOL deletes, IStream** stream)
{
    if (FaultPlan::ShouldFail(FallibleCall::CreateStream))
    {
        return E_OUTOFMEMORY;
    }
    if (memory != nullptr || deletes == FALSE)
    {
        return E_INVALIDARG;
    }
    const FaultPause pause;
    *stream = new MemoryStream;
    return S_OK;
}

HRESULT WINAPI IIDFromString(LPCOLESTR text, LPIID iid)
{
    const FaultPause pause;
    std::string narrow;
    for (; *text != 0; ++text)
    {
        narrow += static_cast<char>(*text);
    }
    IID read{};
    BYTE* const last = read.Data4;
    const int fields = std::sscanf(narrow.c_str(), GuidFormat, &read.Data1, &read.Data2, &read.Data3, last, last + 1, last + 2,
                                   last + 3, last + 4, last + 5, last + 6, last + 7);
    if (narrow.size() != GuidLength || fields != 11)
    {
        return E_INVALIDARG;
    }
    *iid = read;
    return S_OK;
}

INT WINAPI StringFromGUID2(REFGUID guid, LPOLESTR text, INT room)
{
    char narrow[GuidLength + 1];
    const BYTE* const last = guid.Data4;
    std::snprintf(narrow, sizeof(narrow), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", guid.Data1, guid.Data2,
                  guid.Data3, last[0], last[1], last[2], last[3], last[4], last[5], last[6], last[7]);
    if (room < static_cast<INT>(sizeof(narrow)))
    {
        return 0;
    }
    std::copy_n(narrow, sizeof(narrow), text);
    return static_cast<INT>(sizeof(narrow));
}
