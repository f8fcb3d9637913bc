#pragma once

#include "oemadapter/windows/WideText.h"

#include <windows.h>

namespace velox::oemadapter
{

/// Registers the adapter's class for every user: under HKLM\SOFTWARE\Classes\CLSID\{...} its name, under InprocServer32 below it
/// the module's full path and ThreadingModel, Both.
///
/// @param modulePath  full path of the adapter's DLL
/// @return S_OK, or the failure of the registry: then it is as it was before
/// @throws std::bad_alloc
HRESULT RegisterServer(const WideText& modulePath);

/// Removes what RegisterServer writes, and nothing else: a key in which something else lies stays.
/// @return S_OK, also when nothing is there; else the failure of the registry
/// @throws std::bad_alloc
HRESULT UnregisterServer();

} // namespace velox::oemadapter
