#pragma once

// Export decoration of the few symbols that leave VeloxHwKwsImpl.dll. It is empty for callers: functions called through an
// import library need no decoration, and the interfaces cross the boundary through their virtual tables alone.
#if defined(_WIN32) && defined(VELOX_HWKWS_BUILDING_DLL)
#define VELOX_EXPORT __declspec(dllexport)
#else
#define VELOX_EXPORT
#endif

// The records and vtables that cross the boundary, and the registry view, are those of 64-bit Windows.
static_assert(sizeof(void*) == 8, "VeloxHwKwsImpl.dll is a 64-bit library");
