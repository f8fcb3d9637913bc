#include "oemadapter/server/ClassFactory.h"
#include "oemadapter/server/Module.h"
#include "oemadapter/server/Registration.h"
#include "oemadapter/settings/DetectorId.h"
#include "oemadapter/settings/ModulePath.h"
#include "oemadapter/windows/ComPointer.h"

#include <windows.h>

#include <objbase.h>
#include <olectl.h>

#include <new>

// What the module exports (VeloxOemAdapter.def), and what the system's loader calls. No exception leaves.

using namespace velox::oemadapter;

namespace
{

template <typename Work>
HRESULT WithoutExceptions(Work work) noexcept
try
{
    return work();
}
catch (const std::bad_alloc&)
{
    return E_OUTOFMEMORY;
}
catch (...)
{
    return E_UNEXPECTED;
}

} // namespace

/// @return S_OK; CLASS_E_CLASSNOTAVAILABLE for another class; E_NOINTERFACE; E_POINTER; E_OUTOFMEMORY
STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, LPVOID* object)
{
    return WithoutExceptions([&]() -> HRESULT {
        if (object == nullptr)
        {
            return E_POINTER;
        }
        *object = nullptr;
        if (classId != DetectorId)
        {
            return CLASS_E_CLASSNOTAVAILABLE;
        }
        const ComPointer<IClassFactory> factory(new ClassFactory(TheModule()));
        return factory->QueryInterface(iid, object);
    });
}

/// @return S_OK; S_FALSE while an object or a factory is held, or the module is locked
STDAPI DllCanUnloadNow()
{
    return WithoutExceptions([] { return TheModule().IsInUse() ? S_FALSE : S_OK; });
}

/// @return as RegisterServer; E_UNEXPECTED when the module's path is not known
STDAPI DllRegisterServer()
{
    return WithoutExceptions([] {
        const WideText path = ModulePath();
        return path.empty() ? E_UNEXPECTED : RegisterServer(path);
    });
}

/// @return as UnregisterServer
STDAPI DllUnregisterServer()
{
    return WithoutExceptions([] { return UnregisterServer(); });
}

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);

BOOL WINAPI DllMain(HINSTANCE /*instance*/, DWORD reason, LPVOID reserved)
{
    const bool processEnds = reserved != nullptr;
    if (reason == DLL_PROCESS_DETACH && !processEnds)
    {
        EndModule();
    }
    return TRUE;
}
