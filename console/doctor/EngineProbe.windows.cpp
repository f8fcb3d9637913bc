#include "console/doctor/EngineCheck.h"
#include "console/text/Utf8Path.h"

#include <windows.h>

#include <fmt/format.h>

#include <cstring>
#include <memory>
#include <type_traits>

namespace velox::console
{

namespace
{

constexpr DWORD LongestPath = 32768;

struct DllUnloader
{
    void operator()(HMODULE dll) const
    {
        FreeLibrary(dll);
    }
};
using Dll = std::unique_ptr<std::remove_pointer_t<HMODULE>, DllUnloader>;

/// @return null when the DLL does not export it
template <typename Function>
Function FindFunction(const Dll& dll, std::string_view name)
{
    Function function = nullptr;
    const FARPROC found = GetProcAddress(dll.get(), std::string(name).c_str());
    static_assert(sizeof(function) == sizeof(found));
    std::memcpy(&function, &found, sizeof(function));
    return function;
}

std::string LoadErrorText(DWORD error)
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

/// Loads a DLL as Windows finds it. @param facts  also tell where one lies that cannot be loaded
Dll Load(const wchar_t* name, DllFacts* facts)
{
    Dll dll(LoadLibraryW(name));
    const DWORD error = dll ? ERROR_SUCCESS : GetLastError();
    std::wstring path(LongestPath, L'\0');
    path.resize(dll ? GetModuleFileNameW(dll.get(), path.data(), LongestPath)
                    : SearchPathW(nullptr, name, nullptr, LongestPath, path.data(), nullptr));
    *facts = {Utf8(name), Utf8(path), path.empty() ? std::string() : FileVersionOf(path), dll != nullptr,
              dll ? std::string() : LoadErrorText(error)};
    return dll;
}

FrameSizeFacts AskFrameSize(const Dll& engine)
{
    constexpr uint32_t FrameSizeOutput = 5;
    const auto initSession = FindFunction<uint32_t (*)(uint32_t*)>(engine, "VWoVInitSession");
    const auto getIntOutput = FindFunction<uint32_t (*)(uint32_t, uint32_t, int32_t*, uint32_t*)>(engine, "VWoVGetIntOutput");
    const auto destroySession = FindFunction<uint32_t (*)(uint32_t)>(engine, "VWoVDestroySession");
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

std::string FileVersionOf(const std::wstring& path)
{
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(path.c_str(), &ignored);
    std::vector<uint8_t> resource(size);
    void* block = nullptr;
    UINT length = 0;
    VS_FIXEDFILEINFO info{};
    if (size == 0 || GetFileVersionInfoW(path.c_str(), 0, size, resource.data()) == 0 ||
        VerQueryValueW(resource.data(), L"\\", &block, &length) == 0 || length < sizeof(info))
    {
        return {};
    }
    std::memcpy(&info, block, sizeof(info));
    return fmt::format("{}.{}.{}.{}", HIWORD(info.dwFileVersionMS), LOWORD(info.dwFileVersionMS), HIWORD(info.dwFileVersionLS),
                       LOWORD(info.dwFileVersionLS));
}

EngineFacts ProbeEngine()
{
    EngineFacts facts;
    const Dll engine = Load(L"VeloxWovSDK.dll", &facts.engine);
    for (const std::string_view name : EngineFunctions)
    {
        if (engine && FindFunction<FARPROC>(engine, name) == nullptr)
        {
            facts.missingFunctions.emplace_back(name);
        }
    }
    if (engine && facts.missingFunctions.empty())
    {
        facts.frameSize = AskFrameSize(engine);
        Load(L"VeloxHwKwsImpl.dll", &facts.library);
    }
    return facts;
}

} // namespace velox::console
