#include "console/hosting/CapabilitiesCommand.h"

#include "tests/console/support/ProgramRun.h"
#include "tests/console/support/ToneProject.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace CapabilitiesCommandOnRealTests
{

using Json = nlohmann::json;
using testing::HasSubstr;

/// The program as a process.
class CapabilitiesCommand : public testing::Test
{
protected:
    ProgramRun Run() const
    {
        return RunVeloxKws({"capabilities", "--config", project.Configuration()});
    }

    ToneProject project;
};

TEST_F(CapabilitiesCommand, ListsLanguagesKeywordAndAudioFormat)
{
    project.AddItalian();
    const ProgramRun run = Run();
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(run.output, "Keyword ids:   1\n"
                          "User models:   yes\n"
                          "Audio:         16000 Hz, 1 channel, 16 bits\n"
                          "Languages:     1033 (en-US), 1040 (it-IT)\n"
                          "The detector serves 2 languages.\n");
}

TEST_F(CapabilitiesCommand, TheDocumentHasEachLanguage)
{
    const ProgramRun run = RunVeloxKws({"--json", "capabilities", "--config", project.Configuration()});
    const Json document = Json::parse(run.output);
    EXPECT_EQ(document["exitCode"], 0);
    EXPECT_EQ(document["facts"]["languages"], Json::array({1033}));
    EXPECT_EQ(document["facts"]["samplesPerSecond"], 16000);
}

TEST_F(CapabilitiesCommand, AFileThatIsNotWellFormedIsABadConfiguration)
{
    project.Write("configuration.xml", std::string("<a><b></a>"));
    const ProgramRun run = Run();
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.errors, HasSubstr("XML_ERROR_MISMATCHED_ELEMENT"));
}

TEST_F(CapabilitiesCommand, AFileWithoutALanguageIsABadConfiguration)
{
    project.Write("configuration.xml", std::string("<a/>"));
    const ProgramRun run = Run();
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.errors, HasSubstr("has no language"));
}

} // namespace CapabilitiesCommandOnRealTests
