#pragma once

#include <windows.h>

struct IStream;

struct IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(const IID& iid, void** object) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;
};
