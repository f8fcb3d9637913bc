#pragma once

#include <dlfcn.h>

/// The definition of a function that the caller's own one hides, by its linker name: the sanitizer runtime's, or the system's.
template <typename Function>
Function* NextDefinition(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
