#include "console/doctor/SystemCheck.h"

#include "console/text/Utf8Path.h"

#include <windows.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <sstream>
#include <type_traits>

namespace velox::console
{

namespace
{

/// The functions that the library imports from the engine, each behind "VWoV".
constexpr const char* EngineFunctions =
    "DestroySession FeedAudioFrame FinalizeEnrollment FinalizeEnrollmentUtterance Flush GetIntOutput GetScores Init InitSession "
    "PrepareLpeData SetAttribute SetBinAttribute SetModel StartEnrollment StartEnrollmentUtterance";

// Closing none does nothing.
using Dll = std::shared_ptr<std::remove_pointer_t<HMODULE>>;
using Key = std::shared_ptr<std::remove_pointer_t<HKEY>>;

/// @return null when the engine does not export it
template <typename Function>
Function FindFunction(const Dll& engine, const std::string& name)
{
    Function function = nullptr;
    const FARPROC found = GetProcAddress(engine.get(), ("VWoV" + name).c_str());
    static_assert(sizeof(function) == sizeof(found));
    std::memcpy(&function, &found, sizeof(function));
    return function;
}

std::string LoadErrorText(DWORD error)
{
    return error == ERROR_BAD_EXE_FORMAT   ? "it is not a DLL for 64-bit Windows."
           : error == ERROR_MOD_NOT_FOUND  ? "a DLL that it needs was not found."
           : error == ERROR_PROC_NOT_FOUND ? "a function that it needs is missing in another DLL."
                                           : fmt::format("Windows reports error {}.", error);
}

/// Loads a DLL as Windows finds it. @param facts  also tell where one lies that cannot be loaded
Dll Load(const wchar_t* name, DllFacts* facts)
{
    constexpr DWORD LongestPath = 32768;
    HMODULE loaded = LoadLibraryW(name);
    const DWORD error = GetLastError();
    Dll dll(loaded, FreeLibrary);
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
    const auto initSession = FindFunction<uint32_t (*)(uint32_t*)>(engine, "InitSession");
    const auto getIntOutput = FindFunction<uint32_t (*)(uint32_t, uint32_t, int32_t*, uint32_t*)>(engine, "GetIntOutput");
    const auto destroySession = FindFunction<uint32_t (*)(uint32_t)>(engine, "DestroySession");
    FrameSizeFacts facts;
    uint32_t session = 0;
    facts.status = initSession(&session);
    if (facts.status == 0)
    {
        facts.status = getIntOutput(session, FrameSizeOutput, nullptr, &facts.count);
        if (uint32_t count = 1; facts.status == 0 && facts.count == 1)
        {
            facts.status = getIntOutput(session, FrameSizeOutput, &facts.samples, &count);
        }
        destroySession(session);
    }
    return facts;
}

/// @return null when the key is not there, or may not be read
Key OpenSettings(REGSAM view)
{
    HKEY key = nullptr;
    RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Velox\\KeywordDetectorAdapter", 0, KEY_QUERY_VALUE | view, &key);
    return Key(key, RegCloseKey);
}

std::vector<RegistryValue> ValuesOf(const Key& key)
{
    constexpr DWORD LongestName = 16384;
    constexpr DWORD LongestValue = 64; // a longer one counts by being longer than the library reads
    std::vector<RegistryValue> values;
    std::wstring name(LongestName, L'\0');
    LSTATUS status = key ? ERROR_SUCCESS : ERROR_NO_MORE_ITEMS;
    for (DWORD i = 0; status == ERROR_SUCCESS || status == ERROR_MORE_DATA; ++i)
    {
        DWORD nameLength = LongestName;
        DWORD size = LongestValue;
        DWORD type = 0;
        std::vector<uint8_t> bytes(LongestValue);
        status = RegEnumValueW(key.get(), i, name.data(), &nameLength, nullptr, &type, bytes.data(), &size);
        if (status == ERROR_SUCCESS || status == ERROR_MORE_DATA)
        {
            bytes.resize(std::min(size, LongestValue));
            values.push_back({Utf8(name.substr(0, nameLength)), type, std::move(bytes)});
        }
    }
    return values;
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
    std::istringstream names(EngineFunctions);
    for (std::string name; names >> name;)
    {
        if (engine && FindFunction<FARPROC>(engine, name) == nullptr)
        {
            facts.missingFunctions.push_back("VWoV" + name);
        }
    }
    if (engine && facts.missingFunctions.empty())
    {
        facts.frameSize = AskFrameSize(engine);
        Load(L"VeloxHwKwsImpl.dll", &facts.library);
    }
    return facts;
}

RegistrySettings ReadSettingsKey()
{
    const Key key = OpenSettings(KEY_WOW64_64KEY);
    RegistrySettings settings{key != nullptr, ValuesOf(key)};
    for (const RegistryValue& value : ValuesOf(OpenSettings(KEY_WOW64_32KEY)))
    {
        settings.valuesOf32Bit.push_back(value.name);
    }
    return settings;
}

} // namespace velox::console
