// Library objects on threads of their own, over an engine for each thread: what they have in common is the library's, and the
// platform's.
#include "tests/scripted-engine/ScriptedEngine.h"
#include "tests/support/Registry.h"
#include "tests/support/TestConfiguration.h"
#include "tests/threads/AtOnce.h"
#include "tests/threads/Conversation.h"

#include <gmock/gmock.h>

namespace
{

using testing::ElementsAre;
using testing::EndsWith;

class Library : public testing::Test
{
protected:
    Library()
    {
        RemoveSettingsKey();
        WriteSettingsDword(L"LoggerLevel", 5);
        WriteSettingsDword(L"SDKLoggerLevel", 2);
    }

    ~Library() override
    {
        RemoveSettingsKey();
    }

    /// With an engine that hears the key phrase in everything.
    std::pair<Answers, std::vector<std::string>> ConverseWithThreadsEngine() const
    {
        ScriptedEngine& engine = GetScriptedEngine();
        engine.Reset();
        engine.laterStep.scores = {0.875F};
        Answers answers = Converse(configuration.Path(), {std::vector<float>(1600, 0.25F), std::vector<float>(1000, 0.5F)});
        return {std::move(answers), engine.Take()};
    }

    TestConfiguration configuration;
};

TEST_F(Library, EachOfEightObjectsGetsWhatOneGets)
{
    constexpr int Rounds = 10;
    const auto alone = ConverseWithThreadsEngine();
    EXPECT_THAT(alone.first.results, ElementsAre(S_OK, S_OK, S_OK, S_OK, S_OK, S_OK));
    EXPECT_THAT(alone.first.outputs, ElementsAre(EndsWith("firmware 1033"), EndsWith("VWOV lpe data"), "1 1033 1 1000 2000"));
    const auto together = AtOnce(Rounds, [this] { return ConverseWithThreadsEngine(); });
    EXPECT_EQ(together.size(), std::size_t{Threads * Rounds});
    EXPECT_THAT(together, testing::Each(alone));
}

} // namespace
