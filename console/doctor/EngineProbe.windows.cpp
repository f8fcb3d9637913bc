#include "console/doctor/EngineProbe.h"

#include "console/text/Utf8Path.h"

#include <windows.h>

#include <fmt/format.h>

#include <cstring>
#include <iterator>

namespace velox::console
{

namespace
{

constexpr uint32_t FrameSizeOutput = 5;

/// A DLL that stays loaded as long as this lives.
class LoadedDll
{
public:
    explicit LoadedDll(const std::wstring& name)
        : module(LoadLibraryW(name.c_str())), error(module == nullptr ? GetLastError() : 0)
    {
    }
    LoadedDll(const LoadedDll&) = delete;
    LoadedDll& operator=(const LoadedDll&) = delete;
    ~LoadedDll()
    {
        if (module != nullptr)
        {
            FreeLibrary(module);
        }
    }

    bool IsLoaded() const
    {
        return module != nullptr;
    }
    DWORD Error() const
    {
        return error;
    }
    std::wstring Path() const
    {
        std::wstring path(32768, L'\0');
        path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
        return path;
    }

    /// @return null when the DLL does not export it
    template <typename Function>
    Function Find(const char* name) const
    {
        Function function = nullptr;
        const FARPROC found = GetProcAddress(module, name);
        static_assert(sizeof(function) == sizeof(found));
        std::memcpy(&function, &found, sizeof(function));
        return function;
    }

private:
    HMODULE module;
    DWORD error;
};

std::string ErrorText(DWORD error)
{
    switch (error)
    {
    case ERROR_BAD_EXE_FORMAT:
        return "it is not a DLL for 64-bit Windows.";
    case ERROR_MOD_NOT_FOUND:
        return "a DLL that it needs was not found.";
    case ERROR_PROC_NOT_FOUND:
        return "a function that it needs is missing in another DLL.";
    default:
        return fmt::format("Windows reports error {}.", error);
    }
}

std::string FileVersion(const std::wstring& path)
{
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(path.c_str(), &ignored);
    std::vector<uint8_t> resource(size);
    void* block = nullptr;
    UINT length = 0;
    if (size == 0 || GetFileVersionInfoW(path.c_str(), 0, size, resource.data()) == 0 ||
        VerQueryValueW(resource.data(), L"\\", &block, &length) == 0 || length < sizeof(VS_FIXEDFILEINFO))
    {
        return {};
    }
    VS_FIXEDFILEINFO info{};
    std::memcpy(&info, block, sizeof(info));
    return fmt::format("{}.{}.{}.{}", HIWORD(info.dwFileVersionMS), LOWORD(info.dwFileVersionMS), HIWORD(info.dwFileVersionLS),
                       LOWORD(info.dwFileVersionLS));
}

/// Where Windows would load it from, though it cannot; empty when it is nowhere.
std::wstring SearchedPath(const std::wstring& name)
{
    std::wstring path(32768, L'\0');
    path.resize(SearchPathW(nullptr, name.c_str(), nullptr, static_cast<DWORD>(path.size()), path.data(), nullptr));
    return path;
}

DllFacts FactsOf(const std::wstring& name, const LoadedDll& dll)
{
    const std::wstring path = dll.IsLoaded() ? dll.Path() : SearchedPath(name);
    return {Utf8(name), Utf8(path), path.empty() ? std::string() : FileVersion(path), dll.IsLoaded(),
            dll.IsLoaded() ? std::string() : ErrorText(dll.Error())};
}

FrameSizeFacts AskFrameSize(const LoadedDll& engine)
{
    const auto initSession = engine.Find<uint32_t (*)(uint32_t*)>("VWoVInitSession");
    const auto getIntOutput = engine.Find<uint32_t (*)(uint32_t, uint32_t, int32_t*, uint32_t*)>("VWoVGetIntOutput");
    const auto destroySession = engine.Find<uint32_t (*)(uint32_t)>("VWoVDestroySession");
    FrameSizeFacts facts;
    uint32_t session = 0;
    facts.status = initSession(&session);
    if (facts.status != 0)
    {
        return facts;
    }
    facts.status = getIntOutput(session, FrameSizeOutput, nullptr, &facts.count);
    if (facts.status == 0 && facts.count == 1)
    {
        uint32_t count = 1;
        facts.status = getIntOutput(session, FrameSizeOutput, &facts.samples, &count);
    }
    destroySession(session);
    return facts;
}

} // namespace

EngineFacts ProbeEngine()
{
    const std::wstring engineName = L"VeloxWovSDK.dll";
    const std::wstring libraryName = L"VeloxHwKwsImpl.dll";
    const LoadedDll engine(engineName);
    EngineFacts facts;
    facts.engine = FactsOf(engineName, engine);
    if (!engine.IsLoaded())
    {
        return facts;
    }
    for (const std::string_view name : EngineFunctions)
    {
        if (engine.Find<FARPROC>(std::string(name).c_str()) == nullptr)
        {
            facts.missingFunctions.emplace_back(name);
        }
    }
    if (facts.missingFunctions.empty())
    {
        facts.frameSize = AskFrameSize(engine);
        const LoadedDll library(libraryName);
        facts.library = FactsOf(libraryName, library);
    }
    return facts;
}

} // namespace velox::console
