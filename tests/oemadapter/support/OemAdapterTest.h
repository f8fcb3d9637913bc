#pragma once

#include "oemadapter/adapter/OemAdapter.h"
#include "tests/oemadapter/support/DetectorTest.h"
#include "tests/oemadapter/support/LibraryTest.h"
#include "tests/oemadapter/support/PcmTake.h"

#include <cstring>
#include <string>

constexpr uint16_t English = 1033;
constexpr uint16_t Italian = 1040;

/// The event of these tests' settings.
constexpr GUID EventId{0x01020304, 0x0506, 0x0708, {0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F, 0x10}};
constexpr GUID ProviderId{0x11121314, 0x1516, 0x1718, {0x19, 0x1A, 0x1B, 0x1C, 0x1D, 0x1E, 0x1F, 0x20}};

/// A COM object over the library's double, and both its interfaces.
class OemAdapterTest : public DetectorTest
{
protected:
    OemAdapterTest()
    {
        WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"EventId", u"{01020304-0506-0708-090A-0B0C0D0E0F10}");
        WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"EventProviderId", u"{11121314-1516-1718-191A-1B1C1D1E1F20}");
        WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"EventName", u"Good morning");
        WriteNumber(HKEY_LOCAL_MACHINE, AdapterKey, u"UserRecordings", 5);
        CreateAdapter();
    }

    ~OemAdapterTest() override
    {
        ReleaseAdapter();
    }

    void CreateAdapter()
    {
        void* made = nullptr;
        ASSERT_EQ(velox::oemadapter::OemAdapter::Create(*detector, IID_IKeywordDetectorOemAdapter, &made), S_OK);
        keyword = static_cast<IKeywordDetectorOemAdapter*>(made);
        ASSERT_EQ(keyword->QueryInterface(IID_IEventDetectorOemAdapter, &made), S_OK);
        event = static_cast<IEventDetectorOemAdapter*>(made);
        library.calls.clear();
    }

    void ReleaseAdapter()
    {
        if (keyword != nullptr)
        {
            keyword->Release();
            event->Release();
            keyword = nullptr;
        }
    }

    /// Another process begins.
    void NextProcess()
    {
        ReleaseAdapter();
        Restart();
        CreateAdapter();
    }

    static DETECTIONEVENTSELECTOR Selector(LANGID language = English)
    {
        DETECTIONEVENTSELECTOR selector{};
        selector.Event.EventId = EventId;
        selector.Event.ProviderId = ProviderId;
        selector.LangId = language;
        return selector;
    }

    IKeywordDetectorOemAdapter* keyword = nullptr;
    IEventDetectorOemAdapter* event = nullptr;
    HostStream empty = MakeHostStream();
};

/// What an arming pattern of the library's double holds, which is then freed.
inline std::string TakeModel(SOUNDDETECTOR_PATTERNHEADER* pattern)
{
    const velox::oemadapter::TaskMemory<SOUNDDETECTOR_PATTERNHEADER> owned(pattern);
    const auto* bytes = reinterpret_cast<const char*>(pattern);
    return {bytes + 44, bytes + pattern->Size};
}

inline SOUNDDETECTOR_PATTERNHEADER* AsResult(std::vector<uint8_t>& block)
{
    return reinterpret_cast<SOUNDDETECTOR_PATTERNHEADER*>(block.data());
}

/// Text of the wide debug output, which is then freed.
inline std::string TakeText(WCHAR* text)
{
    const velox::oemadapter::TaskMemory<WCHAR> owned(text);
    std::string narrow;
    for (; *text != 0; ++text)
    {
        narrow += static_cast<char>(*text);
    }
    return narrow;
}
