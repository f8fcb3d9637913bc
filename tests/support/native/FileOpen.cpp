// The functions that open files: fopen is TinyXML-2's, fopen64 the C++ runtime's file streams'.
#include "FaultInjector.h"
#include "NextDefinition.h"

#include <cerrno>
#include <cstdio>

namespace
{

using Open = FILE*(const char*, const char*);

FILE* OpenFile(Open* next, const char* path, const char* mode)
{
    if (FaultPlan::ShouldFail(FallibleCall::FileOpen))
    {
        errno = EMFILE;
        return nullptr;
    }
    const FaultPause pause;
    return next(path, mode);
}

} // namespace

extern "C" FILE* fopen(const char* path, const char* mode)
{
    static Open* const next = NextDefinition<Open>("fopen");
    return OpenFile(next, path, mode);
}

extern "C" FILE* fopen64(const char* path, const char* mode)
{
    static Open* const next = NextDefinition<Open>("fopen64");
    return OpenFile(next, path, mode);
}
