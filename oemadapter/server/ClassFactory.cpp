#include "oemadapter/server/ClassFactory.h"

#include "oemadapter/adapter/OemAdapter.h"

namespace velox::oemadapter
{

ClassFactory::ClassFactory(Module& owner) : module(owner)
{
    ++module.factories;
}

ClassFactory::~ClassFactory()
{
    --module.factories;
}

STDMETHODIMP ClassFactory::QueryInterface(REFIID iid, void** object)
{
    if (object == nullptr)
    {
        return E_POINTER;
    }
    if (iid != IID_IUnknown && iid != IID_IClassFactory)
    {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) ClassFactory::AddRef()
{
    return ++references;
}

STDMETHODIMP_(ULONG) ClassFactory::Release()
{
    const ULONG left = --references;
    if (left == 0)
    {
        delete this;
    }
    return left;
}

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object)
{
    if (object == nullptr)
    {
        return E_POINTER;
    }
    *object = nullptr;
    if (outer != nullptr)
    {
        return CLASS_E_NOAGGREGATION;
    }
    return OemAdapter::Create(module.detector, iid, object);
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock)
{
    lock != FALSE ? ++module.locks : --module.locks;
    return S_OK;
}

} // namespace velox::oemadapter
