#pragma once

#include "oemadapter/detector/Detector.h"
#include "tests/oemadapter/support/LiveObjects.h"
#include "tests/oemadapter/support/LogText.h"
#include "tests/oemadapter/support/RegistryTree.h"
#include "tests/oemadapter/support/ResultBlock.h"
#include "tests/oemadapter/support/ScriptedLibrary.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

constexpr const char16_t* ConfigurationFile = u"C:\\Velox\\configuration.xml";

/// The result code of a processing failure, as Windows names it.
constexpr auto GenFailure = static_cast<HRESULT>(0x8007001FU);

/// A detector over the library's double, with settings and a log of its own. In the end nothing may be left of what the
/// platform's doubles handed out, and no object of the library.
class DetectorTest : public testing::Test
{
protected:
    DetectorTest()
    {
        RemoveAdapterKeys();
        library.Reset();
        WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"ConfigurationFile", ConfigurationFile);
        WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"LogFile", log.Path());
    }

    ~DetectorTest() override
    {
        detector.reset();
        EXPECT_EQ(library.objects, 0);
        EXPECT_EQ(LivePlatformObjects(), liveBefore);
        library.Reset();
        RemoveAdapterKeys();
    }

    /// Another process begins: nothing that the detector remembers is left.
    void Restart()
    {
        detector = std::make_unique<velox::oemadapter::Detector>();
        library.calls.clear();
    }

    ScriptedLibrary& library = GetScriptedLibrary();
    std::size_t liveBefore = LivePlatformObjects();
    LogText log;
    std::unique_ptr<velox::oemadapter::Detector> detector = std::make_unique<velox::oemadapter::Detector>();
};
