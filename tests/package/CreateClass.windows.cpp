// create-class: makes the adapter's object as Windows does, by its registration, asks it through both interfaces what it can
// detect, and tells which DLLs were loaded for it. Ends with 1 when a call fails.
#include "oemadapter/settings/DetectorId.h"
#include "oemadapter/windows/ComPointer.h"
#include "oemadapter/windows/EventDetectorOemAdapter.h"
#include "oemadapter/windows/KeywordDetectorOemAdapter.h"
#include "oemadapter/windows/TaskMemory.h"

#include <windows.h>

#include <objbase.h>

#include <array>
#include <cstdio>
#include <span>

using namespace velox::oemadapter;

namespace
{

bool Succeeded(const char* call, HRESULT result)
{
    std::printf("%s: 0x%08lX\n", call, static_cast<unsigned long>(result));
    return SUCCEEDED(result);
}

void PrintLanguages(const LANGID* ids, ULONG count)
{
    for (const LANGID id : std::span(ids, count))
    {
        std::printf("  language %u\n", id);
    }
}

bool AskFirstGeneration(IKeywordDetectorOemAdapter* adapter)
{
    BOOL supportsUserModels = FALSE;
    KEYWORDID* keywords = nullptr;
    ULONG keywordCount = 0;
    LANGID* languages = nullptr;
    ULONG languageCount = 0;
    IMFMediaType* format = nullptr;
    const HRESULT result =
        adapter->GetCapabilities(&supportsUserModels, &keywords, &keywordCount, &languages, &languageCount, &format);
    const TaskMemory<KEYWORDID> keywordOwner(keywords);
    const TaskMemory<LANGID> languageOwner(languages);
    const ComPointer<IMFMediaType> formatOwner(format);
    PrintLanguages(languages, languageCount);
    return Succeeded("IKeywordDetectorOemAdapter::GetCapabilities", result);
}

bool AskSecondGeneration(IKeywordDetectorOemAdapter* adapter)
{
    void* object = nullptr;
    if (!Succeeded("IEventDetectorOemAdapter", adapter->QueryInterface(IID_IEventDetectorOemAdapter, &object)))
    {
        return false;
    }
    const ComPointer<IEventDetectorOemAdapter> events(static_cast<IEventDetectorOemAdapter*>(object));
    EVENTFEATURES features{};
    LANGID* languages = nullptr;
    ULONG languageCount = 0;
    ULONG recordingCount = 0;
    WAVEFORMATEX* format = nullptr;
    const HRESULT result = events->GetCapabilities(&features, &languages, &languageCount, &recordingCount, &format);
    const TaskMemory<LANGID> languageOwner(languages);
    const TaskMemory<WAVEFORMATEX> formatOwner(format);
    PrintLanguages(languages, languageCount);
    return Succeeded("IEventDetectorOemAdapter::GetCapabilities", result);
}

void PrintModules()
{
    for (const char* name : {"VeloxOemAdapter.dll", "VeloxHwKwsImpl.dll", "VeloxWovSDK.dll"})
    {
        std::array<char, MAX_PATH> path{};
        if (const HMODULE module = GetModuleHandleA(name); module != nullptr)
        {
            GetModuleFileNameA(module, path.data(), static_cast<DWORD>(path.size()));
        }
        std::printf("%s: %s\n", name, path.data());
    }
}

bool AskAdapter()
{
    void* object = nullptr;
    if (!Succeeded("CoCreateInstance",
                   CoCreateInstance(DetectorId, nullptr, CLSCTX_INPROC_SERVER, IID_IKeywordDetectorOemAdapter, &object)))
    {
        return false;
    }
    const ComPointer<IKeywordDetectorOemAdapter> adapter(static_cast<IKeywordDetectorOemAdapter*>(object));
    PrintModules();
    return AskFirstGeneration(adapter.get()) && AskSecondGeneration(adapter.get());
}

} // namespace

int main()
{
    if (!Succeeded("CoInitializeEx", CoInitializeEx(nullptr, COINIT_MULTITHREADED)))
    {
        return 1;
    }
    const bool answered = AskAdapter();
    CoUninitialize();
    return answered ? 0 : 1;
}
