// velox-kws doctor as a process, and whether its words about the library are true.
#include "console/doctor/DoctorCommand.h"

#include "VeloxHwKwsImpl.h"
#include "tests/console/support/DoctorDefects.h"
#include "tests/console/support/ProgramRun.h"

#include <windows.h>

#include <objidl.h>
#include <shlwapi.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>

using namespace velox::console;
using nlohmann::json;

namespace
{

constexpr GUID Detector{0x00112233, 0x4455, 0x6677, {0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF}};
constexpr uint16_t Language = 1033;

class SilentLogger : public IVeloxKeywordDetectorLogger
{
public:
    void Log(uint32_t, uint32_t, const std::string&) override
    {
    }
    void LogWithStatus(uint32_t, uint32_t, const std::string&, int32_t) override
    {
    }
    void LogWithCode(uint32_t, uint32_t, const std::string&, uint32_t) override
    {
    }
    void LogFormat(uint32_t, uint32_t, const char*, ...) override
    {
    }
    void SetLevel(uint32_t) override
    {
    }
    void SetLogToFile(bool) override
    {
    }
};

/// The library on a project, without a user model.
class LibraryOn
{
public:
    explicit LibraryOn(const DoctorProject& project)
        : adapter(
              KeywordDetectorAdapterImplementation::CreateKeywordDetectorAdapterImpl(&logger, project.Path(), "test", Detector)),
          stream(SHCreateMemStream(nullptr, 0))
    {
    }
    LibraryOn(const LibraryOn&) = delete;
    LibraryOn& operator=(const LibraryOn&) = delete;
    ~LibraryOn()
    {
        stream->Release();
    }

    /// @param threshold  receives that of the armed block
    HRESULT Arm(int32_t* threshold = nullptr)
    {
        constexpr std::size_t ThresholdOffset = 24;
        const KeywordSelector selector{1, Language};
        uint8_t* block = nullptr;
        const HRESULT result = adapter->BuildArmingPatternData(stream, &selector, 1, &block);
        if (SUCCEEDED(result) && threshold != nullptr)
        {
            std::memcpy(threshold, block + ThresholdOffset, sizeof(*threshold));
        }
        CoTaskMemFree(block);
        return result;
    }

    HRESULT Announce()
    {
        int32_t userModels = 0;
        uint32_t* keywords = nullptr;
        uint32_t keywordCount = 0;
        uint16_t* languages = nullptr;
        uint32_t languageCount = 0;
        IMFMediaType* format = nullptr;
        const HRESULT result =
            adapter->GetCapabilities(&userModels, &keywords, &keywordCount, &languages, &languageCount, &format);
        CoTaskMemFree(keywords);
        CoTaskMemFree(languages);
        if (format != nullptr)
        {
            format->Release();
        }
        return result;
    }

private:
    SilentLogger logger;
    std::unique_ptr<KeywordDetectorAdapterImplementation::IVeloxKeywordDetectorAdapterImpl,
                    KeywordDetectorAdapterImplementation::AdapterCustomDeleter>
        adapter;
    IStream* stream;
};

bool Promises(const Findings& findings, Operation operation)
{
    return std::none_of(findings.begin(), findings.end(), [&](const Finding& finding) {
        return std::any_of(finding.failures.begin(), finding.failures.end(), [&](const Failure& failure) {
            return failure.operation == operation && (!failure.language || *failure.language == Language);
        });
    });
}

} // namespace

TEST(DoctorCommand, GoodConfigurationHasOneLineAndSucceeds)
{
    const DoctorProject project;
    const ProgramRun run = RunVeloxKws({"doctor", project.Path()});
    EXPECT_EQ(run.exitCode, 0) << run.output;
    EXPECT_THAT(run.output, testing::StartsWith("Nothing is wrong: 2 languages, "));
    EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 1);
    EXPECT_EQ(run.errors, "");
}

TEST(DoctorCommand, VerboseShowsEveryCheck)
{
    const DoctorProject project;
    const ProgramRun run = RunVeloxKws({"doctor", "--config", project.Path(), "--verbose"});
    for (const char* part : {"Language 1033 is English (United States).", "has all fifteen functions",
                             "frames of 160 samples (10 ms)", "The library was loaded, version ", "LoggerLevel is"})
    {
        EXPECT_THAT(run.output, testing::HasSubstr(part));
    }
}

TEST(DoctorCommand, ExitCodeFollowsFromTheWorstFinding)
{
    const DoctorProject project;
    project.WriteModel("pre_1033.txt", "100 per cent");
    EXPECT_EQ(RunVeloxKws({"doctor", project.Path()}).exitCode, 0) << "a warning";
    project.RemoveModel("pre_1033.txt");
    EXPECT_EQ(RunVeloxKws({"doctor", project.Path()}).exitCode, 1) << "an error";
    project.WriteXml("<keywords>");
    EXPECT_EQ(RunVeloxKws({"doctor", project.Path()}).exitCode, 4) << "no configuration";
    EXPECT_EQ(RunVeloxKws({"doctor", project.Path() + ".none"}).exitCode, 4);
}

TEST(DoctorCommand, DocumentHoldsEveryFinding)
{
    const DoctorProject project;
    project.RemoveModel("fw_1033.bin");
    const ProgramRun run = RunVeloxKws({"doctor", project.Path(), "--json"});
    const json document = json::parse(run.output);
    EXPECT_EQ(document["command"], "doctor");
    EXPECT_EQ(document["exitCode"], 1);
    const auto error = std::find_if(document["results"].begin(), document["results"].end(),
                                    [](const json& finding) { return finding["severity"] == "error"; });
    ASSERT_NE(error, document["results"].end());
    EXPECT_EQ((*error)["line"], 7);
    EXPECT_EQ((*error)["failures"], json::parse(R"([{"operation": "arming", "language": 1033}])"));
    EXPECT_THAT(document["verdict"], testing::HasSubstr("Fails for 1033 (en-US): arming."));
}

TEST(DoctorCommand, WhatDoctorSaysOfTheLibraryIsTrue)
{
    for (const DoctorDefect& defect : DoctorDefects())
    {
        SCOPED_TRACE(defect.name);
        const DoctorProject project;
        defect.damage(project);
        const Findings findings = project.Check().findings;
        LibraryOn library(project);
        EXPECT_EQ(SUCCEEDED(library.Announce()), Promises(findings, Operation::Capabilities));
        if (defect.name != "NoId" && defect.name != "IdIsNoNumber") // 1033 is no language any more
        {
            EXPECT_EQ(SUCCEEDED(library.Arm()), Promises(findings, Operation::Arming));
        }
    }
}

TEST(DoctorCommand, ThresholdsAreTheLibrarys)
{
    const struct
    {
        std::string_view text;
        int32_t q8;
    } cases[]{{"0.75", 192},
              {"-1.3", -333},
              {"0,75", 0},
              {"abc", 0},
              {"1e999", INT32_MAX},
              {"\xEF\xBB\xBF"
               "100",
               0}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.text);
        const DoctorProject project;
        project.WriteModel("pre_1033.txt", own.text);
        int32_t threshold = -1;
        ASSERT_EQ(LibraryOn(project).Arm(&threshold), S_OK);
        EXPECT_EQ(threshold, own.q8);
    }
}
