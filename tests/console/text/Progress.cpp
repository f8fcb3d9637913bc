#include "console/text/Progress.h"

#include "console/text/CommandFailure.h"
#include "console/text/Interruption.h"

#include <gmock/gmock.h>

#include <sstream>

namespace ProgressTests
{

using namespace std::chrono_literals;
using testing::HasSubstr;

namespace console = velox::console;

class Progress : public testing::Test
{
protected:
    Progress()
        : progress(
              &terminal, [this] { return now; }, &lines)
    {
        progress.Begin("Training");
    }

    ~Progress() override
    {
        console::ForgetInterruption();
    }

    std::string Drawn()
    {
        std::string drawn = terminal.str();
        terminal.str("");
        return drawn;
    }

    std::chrono::steady_clock::time_point now{};
    std::ostringstream terminal;
    std::ostringstream lines;
    console::Progress progress;
};

TEST_F(Progress, ShortWorkShowsNothing)
{
    now += 900ms;
    progress.Update(0.9);
    progress.Update(1.0);
    EXPECT_EQ(Drawn(), "");
}

TEST_F(Progress, LongWorkShowsTheShareAndTheTimeLeft)
{
    now += 2s;
    progress.Update(0.25);
    EXPECT_EQ(Drawn(), "\rTraining [######                  ]  25 %, 6 s left");
    now += 200s;
    progress.Update(0.5);
    EXPECT_THAT(Drawn(), HasSubstr(" 50 %, 3 min 22 s left"));
}

TEST_F(Progress, TheBarIsDrawnTenTimesASecondAtMost)
{
    now += 2s;
    progress.Update(0.25);
    Drawn();
    now += 50ms;
    progress.Update(0.26);
    EXPECT_EQ(Drawn(), "");
    now += 50ms;
    progress.Update(0.27);
    EXPECT_NE(Drawn(), "");
}

TEST_F(Progress, TheEndWipesTheBarAway)
{
    now += 2s;
    progress.Update(0.5);
    Drawn();
    progress.Update(1.0);
    EXPECT_EQ(Drawn(), "\r" + std::string(51, ' ') + "\r");
}

TEST_F(Progress, AStatusIsShownAtOnceAndThenTenTimesASecondAtMost)
{
    progress.Status([] { return "-32 dB"; });
    EXPECT_EQ(Drawn(), "\r-32 dB");
    now += 99ms;
    progress.Status([]() -> std::string {
        ADD_FAILURE() << "it is not time";
        return {};
    });
    now += 1ms;
    progress.Status([] { return "0 dB"; });
    EXPECT_EQ(Drawn(), "\r0 dB  ") << "what is left of the one before is wiped away";
}

TEST_F(Progress, ALineThatStaysStandsClearOfTheStatus)
{
    progress.Status([] { return "-32 dB"; });
    Drawn();
    progress.Say("detected");
    EXPECT_EQ(Drawn(), "\r      \r");
    EXPECT_EQ(lines.str(), "detected\n");
}

TEST_F(Progress, WithoutATerminalThereAreLinesAlone)
{
    console::Progress bare(
        nullptr, [this] { return now; }, &lines);
    bare.Status([]() -> std::string {
        ADD_FAILURE() << "nobody sees it";
        return {};
    });
    bare.Say("detected");
    EXPECT_EQ(lines.str(), "detected\n");
    console::Progress(nullptr).Say("nobody hears it");
}

TEST_F(Progress, CtrlCStopsTheWork)
{
    EXPECT_TRUE(progress.Continue(0.1));
    console::RequestInterruption();
    EXPECT_FALSE(progress.Continue(0.2));
    try
    {
        progress.Update(0.3);
        ADD_FAILURE() << "it went on";
    }
    catch (const console::CommandFailure& failure)
    {
        EXPECT_EQ(failure.exitCode, console::ExitCode::Interrupted);
    }
}

} // namespace ProgressTests
