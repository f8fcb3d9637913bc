// Writes the document of each command, and of failures, into the folder that VELOX_DOCUMENTS names; check-documents compares them
// with the schema. Without the folder each is parsed only.
#include "tests/console/support/ProgramRun.h"
#include "tests/console/support/ToneProject.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <fstream>

namespace DocumentsOnRealTests
{

class Documents : public testing::Test
{
protected:
    /// Runs the program with --json. @param name  of the document's file
    void Keep(const std::string& name, int exitCode, std::vector<std::string> arguments)
    {
        SCOPED_TRACE(name);
        arguments.emplace_back("--json");
        const ProgramRun run = RunVeloxKws(arguments);
        EXPECT_EQ(run.exitCode, exitCode) << run.output;
        EXPECT_EQ(nlohmann::json::parse(run.output)["exitCode"], exitCode);
        if (const char* folder = std::getenv("VELOX_DOCUMENTS"))
        {
            std::ofstream(std::string(folder) + "/" + name + ".json", std::ios::binary) << run.output;
        }
    }

    std::string Take(int number) const
    {
        return project.Record("take " + std::to_string(number) + ".wav",
                              TinyLanguage::SayPhrase({0.15, 0.4, 3300.0}, static_cast<uint64_t>(number)));
    }

    std::string config{"--config"};
    ToneProject project;
};

TEST_F(Documents, OfCommandsThatSucceed)
{
    const std::string file = project.Configuration();
    Keep("capabilities", 0, {"capabilities", config, file});
    Keep("verify", 0, {"verify", config, file, "en-US", Take(1)});
    Keep("enroll", 0, {"enroll", config, file, "en-US", Take(1), Take(2), "--model", project.File("user.vwov")});
    Keep("arm", 0, {"arm", config, file, "en-US", "--model", project.File("user.vwov"), "--out", project.File("pattern.bin")});
    Keep("doctor", 0, {"doctor", file});
    Keep("inspect", 0, {"inspect", project.File("pattern.bin")});
    Keep("listen", 0, {"listen", config, file, "--pattern", project.File("pattern.bin"), Take(3)});
}

TEST_F(Documents, OfCommandsThatRefuseOrFail)
{
    const std::string file = project.Configuration();
    project.Write("text.wav", std::string("no sound"));
    const std::string silence = project.Record("silence.wav", std::vector<float>(32000, 0.0F));
    const std::string pattern = project.File("pattern.bin");
    Keep("arm-everybody", 0, {"arm", config, file, "en-US", "--out", pattern});
    Keep("verify-refused", 1, {"verify", config, file, "en-US", Take(1), silence});
    Keep("verify-unreadable", 3, {"verify", config, file, "en-US", project.File("text.wav")});
    Keep("enroll-refused", 1, {"enroll", config, file, "en-US", silence, "--model", project.File("user.vwov")});
    Keep("arm-no-language", 4, {"arm", config, file, "de-DE", "--out", project.File("pattern.bin")});
    Keep("doctor-no-configuration", 4, {"doctor", project.File("none.xml")});
    Keep("inspect-unknown", 3, {"inspect", file});
    Keep("inspect-difference", 1, {"inspect", project.File("kp.bin"), project.File("am.bin")});
    project.Write("pre_1033.txt", std::string("0,75"));
    Keep("doctor-findings", 1, {"doctor", file});
    Keep("inspect-damaged", 1, {"inspect", project.File("pre_1033.txt")});
    Keep("listen-no-such-microphone", 3, {"listen", config, file, "--pattern", pattern, "--microphone", "no such one"});
    Keep("no-command", 2, {});
    Keep("no-configuration", 4, {"capabilities", config, project.File("none.xml")});
}

} // namespace DocumentsOnRealTests
