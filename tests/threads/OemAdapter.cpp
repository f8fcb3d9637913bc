// The OEM adapter on many threads, over the library and an engine double that notices two calls at once: the adapter's one lock
// keeps them apart.
#include "oemadapter/adapter/OemAdapter.h"
#include "oemadapter/windows/ComPointer.h"
#include "oemadapter/windows/ProvisionalResultCodes.h"
#include "tests/oemadapter/support/Conversation.h"
#include "tests/oemadapter/support/LiveObjects.h"
#include "tests/oemadapter/support/LogText.h"
#include "tests/oemadapter/support/RegistryTree.h"
#include "tests/scripted-engine/ScriptedEngine.h"
#include "tests/support/HostStream.h"
#include "tests/support/TestConfiguration.h"
#include "tests/threads/AtOnce.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>

namespace
{

using testing::Each;
using velox::oemadapter::ComPointer;

constexpr int Rounds = 3;

class OemAdapter : public testing::Test
{
protected:
    OemAdapter()
    {
        RemoveAdapterKeys();
        // Settings take absolute paths of Windows alone; natively one is a name in the current folder.
        std::filesystem::current_path(folder.Path());
        WriteWholeFile("C:\\configuration.xml", ReadWholeFile(configuration.Path()));
        WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"ConfigurationFile", u"C:\\configuration.xml");
        WriteText(HKEY_LOCAL_MACHINE, AdapterKey, u"LogFile", log.Path());
        WriteNumber(HKEY_LOCAL_MACHINE, LibraryKey, u"LoggerLevel", 5);
        WriteNumber(HKEY_LOCAL_MACHINE, LibraryKey, u"LogToFile", 1);

        ScriptedEngine& engine = GetScriptedEngine();
        engine.Reset();
        engine.keepCalls = false;
        engine.lpeData = "VWOV model";
        engine.onCall = [this](const EngineCall& call) {
            Hear(call);
        };
    }

    ~OemAdapter() override
    {
        EXPECT_FALSE(twoCallsAtOnce);
        EXPECT_TRUE(GetScriptedEngine().openSessions.empty());
        GetScriptedEngine().Reset();
        RemoveAdapterKeys();
        std::filesystem::current_path(before);
    }

    /// The engine takes loudness for the key phrase. Whoever comes into a call of another's finds the mark of it.
    void Hear(const EngineCall& call)
    {
        twoCallsAtOnce = within.exchange(true) || twoCallsAtOnce;
        if (call.function == "VWoVFeedAudioFrame")
        {
            const int loudest = std::abs(int{*std::ranges::max_element(call.samples)});
            GetScriptedEngine().laterStep.scores = {static_cast<float>(loudest) / 32767.0F};
        }
        within = false;
    }

    template <typename Interface>
    ComPointer<Interface> Create(REFIID iid)
    {
        void* made = nullptr;
        EXPECT_EQ(velox::oemadapter::OemAdapter::Create(detector, iid, &made), S_OK);
        return ComPointer<Interface>(static_cast<Interface*>(made));
    }

    static Conversation Speak(IKeywordDetectorOemAdapter* first, IEventDetectorOemAdapter* second)
    {
        const HostStream stream = MakeHostStream();
        Conversation conversation;
        SpeakWithFirst(first, stream.get(), &conversation);
        SpeakWithSecond(second, stream.get(), &conversation);
        return conversation;
    }

    Conversation SpeakWithNewOnes()
    {
        const auto first = Create<IKeywordDetectorOemAdapter>(IID_IKeywordDetectorOemAdapter);
        const auto second = Create<IEventDetectorOemAdapter>(IID_IEventDetectorOemAdapter);
        return Speak(first.get(), second.get());
    }

    const std::filesystem::path before = std::filesystem::current_path();
    TemporaryFolder folder;
    TestConfiguration configuration;
    LogText log;
    std::atomic<bool> within = false;
    std::atomic<bool> twoCallsAtOnce = false;
    velox::oemadapter::Detector detector;
};

TEST_F(OemAdapter, OneObjectAnswersEightThreadsAsOne)
{
    const auto first = Create<IKeywordDetectorOemAdapter>(IID_IKeywordDetectorOemAdapter);
    void* other = nullptr;
    ASSERT_EQ(first->QueryInterface(IID_IEventDetectorOemAdapter, &other), S_OK);
    const ComPointer<IEventDetectorOemAdapter> second(static_cast<IEventDetectorOemAdapter*>(other));

    const Conversation alone = Speak(first.get(), second.get());
    EXPECT_THAT(alone.results,
                testing::ElementsAre(S_OK, S_OK, E_NO_MATCH, S_OK, S_OK, S_OK, S_OK, S_OK, S_OK, E_NO_MATCH, S_OK, S_OK, S_OK));
    EXPECT_THAT(AtOnce(Rounds, [&] { return Speak(first.get(), second.get()); }), Each(alone));
}

TEST_F(OemAdapter, EachOfEightThreadsMakesItsObjectsAndGetsWhatOneGets)
{
    const Conversation alone = SpeakWithNewOnes();
    const std::size_t objects = LivePlatformObjects();
    EXPECT_THAT(AtOnce(Rounds, [this] { return SpeakWithNewOnes(); }), Each(alone));
    EXPECT_EQ(detector.Users(), 0U);
    EXPECT_EQ(LivePlatformObjects(), objects);
}

} // namespace
