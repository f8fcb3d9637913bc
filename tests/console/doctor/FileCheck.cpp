#include "console/doctor/FileCheck.h"

#include "engine/models/Population.h"
#include "tests/console/support/InspectionSamples.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace FileCheckTests
{

using namespace velox::console;
using InspectionSamples::Bytes;
using testing::HasSubstr;

Finding Check(std::string_view text)
{
    Findings findings;
    CheckThreshold({"pre.txt", true, text.size(), {text.begin(), text.end()}}, "The threshold", {"c.xml", &findings});
    EXPECT_EQ(findings.size(), 1U);
    return findings.at(0);
}

TEST(FileCheck, EveryModelIsGoodInItsPlaceOnly)
{
    const struct
    {
        std::string_view element;
        Bytes bytes;
        Tone tone;
        bool engineRefuses;
    } cases[]{
        {"keyphraseModel", InspectionSamples::FirmwareModel(), Tone::Good, false},
        {"keyphraseModel", InspectionSamples::PhraseModel(), Tone::Good, false},
        {"keyphraseModel", InspectionSamples::AcousticModel(), Tone::Bad, true},
        {"acousticModel", InspectionSamples::AcousticModel(), Tone::Good, false},
        {"acousticModel", InspectionSamples::FirmwareModel(), Tone::Bad, true},
        {"znormPopulation", InspectionSamples::Population(), Tone::Good, false},
        {"znormPopulation", InspectionSamples::AcousticModel(), Tone::Bad, true},
        {"fwBlob", InspectionSamples::FirmwareModel(), Tone::Good, false},
        {"fwBlob", InspectionSamples::UserModel(), Tone::Warning, false},
        {"fwBlob", InspectionSamples::Population(), Tone::Bad, false},
        {"fwBlob", InspectionSamples::FromText("another engine's"), Tone::Note, false},
    };
    for (const auto& own : cases)
    {
        const ModelVerdict verdict = CheckModelFile(own.element, Inspect(own.bytes));
        SCOPED_TRACE(testing::Message() << own.element << " " << verdict.message);
        EXPECT_EQ(verdict.tone, own.tone);
        EXPECT_EQ(verdict.engineRefuses, own.engineRefuses);
    }
}

TEST(FileCheck, DamagedModelIsRefusedWithThePlace)
{
    Bytes damaged = InspectionSamples::AcousticModel();
    damaged.pop_back();
    const ModelVerdict verdict = CheckModelFile("acousticModel", Inspect(damaged));
    EXPECT_EQ(verdict.tone, Tone::Bad);
    EXPECT_TRUE(verdict.engineRefuses);
    EXPECT_THAT(verdict.message, testing::HasSubstr("is damaged at 0x0008, Length"));
}

TEST(FileCheck, ModelsOfOnePhraseAgree)
{
    const Inspection phrase = Inspect(InspectionSamples::FirmwareModel());
    const Inspection acoustic = Inspect(InspectionSamples::AcousticModel());
    const Inspection population = Inspect(InspectionSamples::Population());
    EXPECT_EQ(CheckModelsAgree(phrase, acoustic, population).tone, Tone::Good);
    EXPECT_EQ(CheckModelsAgree({}, {}, {}).tone, Tone::Good);
}

TEST(FileCheck, PopulationOfAnotherPhraseCannotEnroll)
{
    velox::engine::Population other;
    other.hours = 1.0;
    other.peaks.push_back({-1.0F, {5, 5}, std::vector<velox::engine::MelFrame>(10)});
    const Inspection acoustic = Inspect(InspectionSamples::AcousticModel());
    const Inspection population = Inspect(WritePopulation(other));
    const ModelVerdict verdict = CheckModelsAgree({}, acoustic, population);
    EXPECT_EQ(verdict.tone, Tone::Bad);
    EXPECT_TRUE(verdict.engineRefuses);
    EXPECT_EQ(verdict.message, "acoustic model and population are of different phrases: 4 and 2 states.");
}

TEST(FileCheck, ModelsOfTwoEnginesAreWarnedOf)
{
    const Inspection acoustic = Inspect(InspectionSamples::AcousticModel());
    const Inspection foreign = Inspect(InspectionSamples::FromText("znorm 1033"));
    EXPECT_EQ(CheckModelsAgree({}, acoustic, foreign).tone, Tone::Warning);
    EXPECT_EQ(CheckModelsAgree(foreign, {}, foreign).tone, Tone::Good) << "all of another engine";
}

TEST(FileCheck, EachTextHasOneFindingWithItsLine)
{
    const struct
    {
        std::string_view text;
        Tone tone;
        int line;
        std::string_view message;
    } cases[]{{"100\n", Tone::Good, 1, "is 100, in the library 25600 (100)."},
              {"\n\n 0", Tone::Good, 3, "is 0, in the library 0 (0)."},
              {"255", Tone::Good, 1, "is 255,"},
              {"", Tone::Bad, 1, "counts as 0: the file holds no number: it is empty."},
              {"-0.5", Tone::Bad, 1, "is -0.5,"},
              {"255.5", Tone::Bad, 1, "is 255.5,"},
              {"1e9", Tone::Bad, 1, "The number does not fit into 32 bits."},
              {"100,5", Tone::Bad, 1, "is 100,"},
              {"100\nold: 90", Tone::Warning, 2, "is 100,"}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.text);
        const Finding finding = Check(own.text);
        EXPECT_EQ(finding.tone, own.tone);
        EXPECT_EQ(finding.file, "pre.txt");
        EXPECT_EQ(finding.line, own.line);
        EXPECT_THAT(finding.message, testing::StartsWith("The threshold "));
        EXPECT_THAT(finding.message, testing::HasSubstr(std::string(own.message)));
        EXPECT_TRUE(finding.failures.empty()); // the library takes every text
    }
}

TEST(FileCheck, WhatIsNotGoodHasItsEffectAndItsFix)
{
    for (const std::string_view text : {"", "abc", "-1", "256", "100,5", "100 old"})
    {
        SCOPED_TRACE(text);
        const Finding finding = Check(text);
        EXPECT_NE(finding.effect, "");
        EXPECT_NE(finding.fix, "");
    }
}

TEST(FileCheck, AFileIsReadWhole)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path() + "/threshold.txt";
    WriteWholeFile(path, "100");
    const NamedFile file = ReadNamedFile(path);
    EXPECT_TRUE(file.readable);
    EXPECT_EQ(file.path, path);
    EXPECT_EQ(file.size, 3U);
    EXPECT_EQ(file.bytes, (std::vector<uint8_t>{'1', '0', '0'}));
}

TEST(FileCheck, AFileBeyondTheBoundIsMeasuredOnly)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path() + "/large.bin";
    WriteWholeFile(path, "x");
    std::filesystem::resize_file(path, NamedFile::LargestInspected + 1);
    const NamedFile file = ReadNamedFile(path);
    EXPECT_TRUE(file.readable);
    EXPECT_EQ(file.size, NamedFile::LargestInspected + 1);
    EXPECT_TRUE(file.bytes.empty());
}

TEST(FileCheck, WhyItCannotBeReadIsTold)
{
    const TemporaryFolder folder;
    const struct
    {
        std::string path;
        std::string why;
    } cases[]{{folder.Path() + "/none.bin", "does not exist"},
              {folder.Path(), "is a folder"},
              {folder.Path() + "/f\xC3\xBCr.bin", "characters beyond ASCII"}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.path);
        EXPECT_FALSE(ReadNamedFile(own.path).readable);
        const Absence absence = WhyNotReadable(own.path);
        EXPECT_THAT(absence.why, HasSubstr(own.why));
        EXPECT_NE(absence.fix, "");
    }
}

TEST(FileCheck, DrivesAndSharesAreWholePaths)
{
    for (const std::string_view path : {"C:\\a.bin", "c:/a.bin", "\\\\server\\a.bin", "//server/a.bin"})
    {
        EXPECT_TRUE(IsAbsolute(path)) << path;
    }
    for (const std::string_view path : {"", "a.bin", "C:", "C:a.bin", "models\\a.bin", "1:\\a.bin"})
    {
        EXPECT_FALSE(IsAbsolute(path)) << path;
    }
}

TEST(FileCheck, AsciiEndsAt127)
{
    EXPECT_TRUE(IsAscii("a\x7F"));
    EXPECT_FALSE(IsAscii("a\x80"));
}

} // namespace FileCheckTests
