#include "tests/oemadapter/com/ComHost.h"

#include "tests/oemadapter/support/OemAdapterOutputs.h"
#include "tests/support/PlatformObjects.h"

#include <cstdlib>

namespace
{

using velox::oemadapter::ComPointer;

std::filesystem::path ProgramFolder()
{
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return std::filesystem::path(path).parent_path();
}

/// One of the adapter's own functions for its registration.
HRESULT CallServer(const char* function)
{
    const HMODULE server =
        LoadLibraryExW((ServerFolder() / "VeloxOemAdapter.dll").c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (server == nullptr)
    {
        return HRESULT_FROM_WIN32(GetLastError());
    }
    const auto called = reinterpret_cast<HRESULT(WINAPI*)()>(reinterpret_cast<void*>(GetProcAddress(server, function)));
    const HRESULT result = called == nullptr ? E_NOTIMPL : called();
    FreeLibrary(server);
    return result;
}

} // namespace

std::filesystem::path ServerFolder()
{
    return ProgramFolder().parent_path() / "com-server";
}

ComHost::ComHost()
{
    // The engine's script, which it takes when it is loaded.
    _putenv("VELOX_SCRIPTED_ENGINE=levels");
    RemoveAdapterKeys();
    for (const std::string id : {"1033", "1040"})
    {
        for (const std::string name : {"kp_", "am_", "zn_", "fw_"})
        {
            configuration.WriteFile(name + id + ".bin", name + id + " model");
        }
    }
    WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"ConfigurationFile", std::filesystem::path(configuration.Path()).u16string());
    WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"LogFile", logFile.u16string());
    EXPECT_EQ(CallServer("DllRegisterServer"), S_OK);
}

ComHost::~ComHost()
{
    EXPECT_EQ(CallServer("DllUnregisterServer"), S_OK);
    EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, ClassKey));
    RemoveAdapterKeys();
}

Conversation Converse()
{
    Conversation conversation;
    const PlatformObjects::Owned<IStream> stream = PlatformObjects::NewStream();
    const auto first = CreateAdapter<IKeywordDetectorOemAdapter>(IID_IKeywordDetectorOemAdapter);
    if (first == nullptr)
    {
        return conversation;
    }
    SpeakWithFirst(first.get(), stream.get(), &conversation);
    const auto second = CreateAdapter<IEventDetectorOemAdapter>(IID_IEventDetectorOemAdapter);
    SpeakWithSecond(second.get(), stream.get(), &conversation);
    return conversation;
}

HRESULT Arm()
{
    const auto adapter = CreateAdapter<IKeywordDetectorOemAdapter>(IID_IKeywordDetectorOemAdapter);
    const PlatformObjects::Owned<IStream> stream = PlatformObjects::NewStream();
    KEYWORDSELECTOR selector{KwVoiceAssistant, 1033};
    SOUNDDETECTOR_PATTERNHEADER* pattern = nullptr;
    const HRESULT result = adapter->BuildArmingPatternData(stream.get(), &selector, 1, &pattern);
    CoTaskMemFree(pattern);
    return result;
}

HRESULT CreateUseAndRelease()
{
    void* made = nullptr;
    if (const HRESULT result =
            CoCreateInstance(velox::oemadapter::DetectorId, nullptr, CLSCTX_INPROC_SERVER, IID_IEventDetectorOemAdapter, &made);
        FAILED(result))
    {
        return result;
    }
    const ComPointer<IEventDetectorOemAdapter> adapter(static_cast<IEventDetectorOemAdapter*>(made));
    std::vector<uint8_t> block = ResultBlock();
    EventDetection detection;
    return detection.Parse(adapter.get(), nullptr, reinterpret_cast<SOUNDDETECTOR_PATTERNHEADER*>(block.data()));
}
