#include "console/languages/MakeLanguageCommand.h"

#include "console/text/Utf8Path.h"
#include "tests/console/support/LanguageMaterialFolder.h"
#include "tests/console/support/ProgramRun.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <windows.h>

#include <filesystem>

namespace MakeLanguageCommandOnRealTests
{

using testing::HasSubstr;
using velox::console::PathFromUtf8;
using Json = nlohmann::ordered_json;
using Arguments = std::vector<std::string>;

class MakeLanguageCommand : public testing::Test
{
protected:
    Arguments Line(const Arguments& more = {}) const
    {
        Arguments line{"make-language", "en-US",
                       "--phrase",      folder.Path("takes"),
                       "--background",  folder.Path("other"),
                       "--out",         folder.Path("models"),
                       "--config",      folder.Path("config.xml"),
                       "--copies",      "1"};
        line.insert(line.end(), more.begin(), more.end());
        return line;
    }

    LanguageMaterialFolder folder;
};

/// The program as a process that can be ended.
class RunningProgram
{
public:
    explicit RunningProgram(const Arguments& arguments)
    {
        std::wstring path(MAX_PATH, L'\0');
        path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
        std::wstring line = L"\"" + (std::filesystem::path(path).parent_path() / L"velox-kws.exe").wstring() + L"\"";
        for (const std::string& argument : arguments)
        {
            line += L" \"" + PathFromUtf8(argument).wstring() + L"\"";
        }
        STARTUPINFOW start{};
        start.cb = sizeof(start);
        EXPECT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process));
    }
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    ~RunningProgram()
    {
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }

    bool RunsFor(DWORD milliseconds) const
    {
        return WaitForSingleObject(process.hProcess, milliseconds) == WAIT_TIMEOUT;
    }
    void Kill() const
    {
        TerminateProcess(process.hProcess, 1);
        WaitForSingleObject(process.hProcess, INFINITE);
    }

private:
    PROCESS_INFORMATION process{};
};

TEST_F(MakeLanguageCommand, MakesALanguageThatTheLibraryTakes)
{
    const ProgramRun made = RunVeloxKws(Line({"--batches", "120", "--json"}));
    ASSERT_EQ(made.exitCode, 0) << made.output << made.errors;
    const Json document = Json::parse(made.output);
    EXPECT_EQ(document["command"], "make-language");
    EXPECT_EQ(document["facts"]["language"], 1033);
    EXPECT_EQ(document["facts"]["takes"], 8);
    EXPECT_TRUE(document["results"].empty());
    EXPECT_EQ(document["error"], nullptr);
    EXPECT_EQ(made.errors, "");

    const std::string configuration = folder.Path("config.xml");
    EXPECT_EQ(RunVeloxKws({"capabilities", "--config", configuration}).exitCode, 0);
    const ProgramRun armed = RunVeloxKws({"arm", "en-US", "--config", configuration, "--out", folder.Path("pattern.bin")});
    EXPECT_EQ(armed.exitCode, 0) << armed.output << armed.errors;

    const ProgramRun again = RunVeloxKws(Line({"--batches", "2"}));
    EXPECT_EQ(again.exitCode, 4);
    EXPECT_THAT(again.errors, HasSubstr("has the language 1033 (en-US) already"));
}

TEST_F(MakeLanguageCommand, RefusesWithACodeForEachCauseAndLeavesNothing)
{
    const struct
    {
        Arguments line;
        int exitCode;
        std::string message;
    } cases[]{{{"make-language", "en-US"}, 2, "required"},
              {Line({"--false-alarms-per-hour", "0"}), 2, "--false-alarms-per-hour"},
              {Line({"--name", "a/b"}), 2, "use the letters"},
              {{"make-language", "en-US", "--phrase", folder.Path("none"), "--background", folder.Path("other"), "--out",
                folder.Path("models"), "--config", folder.Path("config.xml")},
               3,
               "There is no folder"},
              {{"make-language", "en-US", "--phrase", folder.Path("takes"), "--background", folder.Path("other"), "--out",
                folder.Path("other\\0.wav"), "--config", folder.Path("config.xml")},
               2,
               "is a file, and no folder"}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.message);
        const ProgramRun run = RunVeloxKws(own.line);
        EXPECT_EQ(run.exitCode, own.exitCode);
        EXPECT_THAT(run.errors, HasSubstr(own.message));
        EXPECT_TRUE(folder.HoldsOnlyMaterial());
    }
}

TEST_F(MakeLanguageCommand, AMalformedConfigurationIsTold)
{
    WriteWholeFile(folder.Path("config.xml"), "<a>");
    const ProgramRun run = RunVeloxKws(Line({"--json"}));
    EXPECT_EQ(run.exitCode, 4);
    const Json document = Json::parse(run.output);
    EXPECT_THAT(document["error"]["message"].get<std::string>(), HasSubstr("cannot be used: An element is closed by"));
    EXPECT_EQ(ReadWholeFile(folder.Path("config.xml")), "<a>");
}

TEST_F(MakeLanguageCommand, KilledWhileItWritesItLeavesNoConfigurationWithoutItsFiles)
{
    const std::filesystem::path models = PathFromUtf8(folder.Path("models"));
    const std::filesystem::path configuration = PathFromUtf8(folder.Path("config.xml"));
    const auto writes = [&] {
        return std::filesystem::exists(models / ".velox-kws-journal") || std::filesystem::exists(models / "kp_1033.bin");
    };
    const RunningProgram program(Line({"--batches", "2"}));
    while (!writes() && program.RunsFor(0))
    {
    }
    program.Kill();
    ASSERT_TRUE(writes());
    for (const std::string name :
         {"kp_1033.bin", "am_1033.bin", "zn_1033.bin", "fw_1033.bin", "kpd_pre_1033.txt", "kpd_user_1033.txt"})
    {
        EXPECT_TRUE(!std::filesystem::exists(configuration) || std::filesystem::exists(models / name)) << name;
    }
    // The next one makes everything whole, and clears the rest away.
    const ProgramRun next = RunVeloxKws(Line({"--batches", "120", "--replace"}));
    EXPECT_EQ(next.exitCode, 0) << next.errors;
    EXPECT_TRUE(std::filesystem::exists(configuration));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(models), {}), 7);
}

TEST_F(MakeLanguageCommand, AFolderThatTheLibraryCannotOpenIsRefusedFirst)
{
    if (GetACP() == CP_UTF8)
    {
        GTEST_SKIP() << "This code page has all letters.";
    }
    Arguments line = Line({"--batches", "2"});
    line[7] = folder.Path("mod\xC3\xA8les \xE6\x97\xA5");
    const ProgramRun run = RunVeloxKws(line);
    EXPECT_EQ(run.exitCode, 4) << run.output << run.errors;
    EXPECT_THAT(run.errors, HasSubstr("its code page lacks letters of this path"));
    EXPECT_TRUE(folder.HoldsOnlyMaterial());
}

TEST_F(MakeLanguageCommand, ALanguageThatTheLibraryCannotUseIsNotCalledLearned)
{
    // The library opens the constraints of a configuration with every operation.
    const std::string before = "<keywords constraints=\"none\\constraints.txt\"/>";
    WriteWholeFile(folder.Path("config.xml"), before);
    const ProgramRun run = RunVeloxKws(Line({"--batches", "2", "--json"}));
    EXPECT_EQ(run.exitCode, 4);
    const Json document = Json::parse(run.output);
    EXPECT_THAT(document["error"]["message"].get<std::string>(), HasSubstr("learned, but cannot be used"));
    EXPECT_EQ(document["verdict"].get<std::string>().find("learned and stands"), std::string::npos);
    EXPECT_EQ(ReadWholeFile(folder.Path("config.xml")), before);
    EXPECT_FALSE(std::filesystem::exists(PathFromUtf8(folder.Path("models"))));
}

TEST_F(MakeLanguageCommand, ThePageHasTheCurveOfTheMisses)
{
    folder.AddVoices(3);
    const ProgramRun run = RunVeloxKws(Line({"--batches", "120", "--report", folder.Path("page.html")}));
    ASSERT_EQ(run.exitCode, 0) << run.output << run.errors;
    EXPECT_THAT(run.output, HasSubstr("of 14 takes of 7 voices; that leaves"));
    EXPECT_THAT(ReadWholeFile(folder.Path("page.html")), HasSubstr("Misses"));
}

} // namespace MakeLanguageCommandOnRealTests
