#include "oemadapter/adapter/OemAdapter.h"

#include <objbase.h>
#include <objidl.h>

#include <new>

namespace velox::oemadapter
{

HRESULT OemAdapter::Create(Detector& detector, REFIID iid, void** object) noexcept
{
    if (object == nullptr)
    {
        return E_POINTER;
    }
    *object = nullptr;
    if (const HRESULT result = detector.AddUser(); FAILED(result))
    {
        return result;
    }
    auto* const made = new (std::nothrow) OemAdapter(detector);
    if (made == nullptr)
    {
        detector.RemoveUser();
        return E_OUTOFMEMORY;
    }
    const ComPointer<IKeywordDetectorOemAdapter> adapter(made);
    IUnknown* marshaler = nullptr;
    if (const HRESULT result = CoCreateFreeThreadedMarshaler(adapter.get(), &marshaler); FAILED(result))
    {
        return result;
    }
    made->marshaler.reset(marshaler);
    return adapter->QueryInterface(iid, object);
}

OemAdapter::OemAdapter(Detector& usedDetector) : detector(usedDetector), use(usedDetector)
{
}

STDMETHODIMP OemAdapter::QueryInterface(REFIID iid, void** object)
{
    if (object == nullptr)
    {
        return E_POINTER;
    }
    *object = nullptr;
    if (iid == IID_IMarshal)
    {
        return marshaler->QueryInterface(iid, object);
    }
    if (iid == IID_IUnknown || iid == IID_IKeywordDetectorOemAdapter)
    {
        *object = static_cast<IKeywordDetectorOemAdapter*>(this);
    }
    else if (iid == IID_IEventDetectorOemAdapter)
    {
        *object = static_cast<IEventDetectorOemAdapter*>(this);
    }
    else
    {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) OemAdapter::AddRef()
{
    return ++references;
}

STDMETHODIMP_(ULONG) OemAdapter::Release()
{
    const ULONG left = --references;
    if (left == 0)
    {
        delete this;
    }
    return left;
}

} // namespace velox::oemadapter
