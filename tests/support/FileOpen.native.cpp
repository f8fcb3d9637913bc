// The functions that open and close files: fopen is TinyXML-2's, fopen64 the C++ runtime's file streams'.
#include "tests/support/FileOpen.h"

#include "tests/support/FaultInjector.h"
#include "tests/support/NextDefinition.h"

#include <cerrno>
#include <cstdio>
#include <functional>
#include <map>
#include <set>
#include <utility>

namespace
{

using Open = FILE*(const char*, const char*);
using Close = int(FILE*);

/// Never destroyed: files are closed until the very end of the process.
std::set<FILE*>& Files()
{
    static auto* const files = new std::set<FILE*>;
    return *files;
}

std::map<std::string, std::string, std::less<>>& ContentsInMemory()
{
    static auto* const contents = new std::map<std::string, std::string, std::less<>>;
    return *contents;
}

FILE* OpenInMemory(const char* path, const char* mode)
{
    std::string& content = ContentsInMemory().find(path)->second;
    return fmemopen(content.data(), content.size(), mode);
}

FILE* OpenFile(Open* next, const char* path, const char* mode)
{
    if (FaultPlan::ShouldFail(FallibleCall::FileOpen))
    {
        errno = EMFILE;
        return nullptr;
    }
    const FaultPause pause;
    FILE* file = next(path, mode);
    if (file != nullptr)
    {
        Files().insert(file);
    }
    return file;
}

} // namespace

std::size_t OpenFiles()
{
    return Files().size();
}

void CloseOpenFiles()
{
    while (!Files().empty())
    {
        fclose(*Files().begin());
    }
}

void KeepInMemory(const std::string& path, std::string bytes)
{
    ContentsInMemory()[path] = std::move(bytes);
}

extern "C" FILE* fopen(const char* path, const char* mode)
{
    static Open* const next = NextDefinition<Open>("fopen");
    return OpenFile(ContentsInMemory().contains(path) ? OpenInMemory : next, path, mode);
}

extern "C" FILE* fopen64(const char* path, const char* mode)
{
    static Open* const next = NextDefinition<Open>("fopen64");
    return OpenFile(next, path, mode);
}

extern "C" int fclose(FILE* file)
{
    static Close* const next = NextDefinition<Close>("fclose");
    Files().erase(file);
    return next(file);
}
