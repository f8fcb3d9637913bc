#pragma once

#include "oemadapter/server/Module.h"

#include <windows.h>

#include <unknwn.h>

#include <atomic>

namespace velox::oemadapter
{

/// Makes the adapter's COM objects. The module stays loaded as long as a factory is held.
class ClassFactory final : public IClassFactory
{
public:
    explicit ClassFactory(Module& owner);
    ClassFactory(const ClassFactory&) = delete;
    ClassFactory& operator=(const ClassFactory&) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;

    /// @return CLASS_E_NOAGGREGATION for an outer object; else as OemAdapter::Create
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
    STDMETHODIMP LockServer(BOOL lock) override;

private:
    ~ClassFactory();

    std::atomic<ULONG> references = 1;
    Module& module;
};

} // namespace velox::oemadapter
