#include "console/doctor/Bundle.h"

#include "console/text/Utf8Path.h"
#include "engine/models/Blob.h"
#include "tests/console/support/DoctorProject.h"
#include "tests/console/support/InspectionSamples.h"

#include <gmock/gmock.h>

#include <fmt/format.h>

#include <utf8.h>

namespace BundleTests
{

using namespace velox::console;
using testing::HasSubstr;
using testing::Not;

/// A bundle of a project, and what it is made of.
class Bundle : public testing::Test
{
protected:
    std::string Make(const std::vector<std::filesystem::path>& logs = {})
    {
        ConfigurationCheck check = project.Check();
        const Report report = ReportOf(std::move(check.findings), check.languages);
        return BundleText({"Windows 10.0", report, PathFromUtf8(project.Path()), check.files, settings, dlls, logs});
    }

    DoctorProject project;
    RegistrySettings settings{true, {{"LoggerLevel", 4, {5, 0, 0, 0}}}, {"LogToFile"}};
    EngineFacts dlls{{"VeloxHwKwsImpl.dll", "C:\\VeloxHwKwsImpl.dll", "1.2.3.4", true, ""},
                     {"VeloxWovSDK.dll", "", "", false, "a DLL that it needs was not found."}};
};

TEST_F(Bundle, SaysFirstWhatItHoldsAndThatNoVoiceIsInIt)
{
    const std::string text = Make();
    EXPECT_THAT(text, testing::StartsWith("velox-kws support bundle\n"));
    EXPECT_LT(text.find("no voice"), text.find("== "));
}

TEST_F(Bundle, HoldsVersionsSettingsFindingsConfigurationAndFiles)
{
    project.WriteModel("pre_1033.txt", "0.75");
    project.RemoveModel("fw_1040.bin");
    const std::string text = Make();
    for (const char* part :
         {"velox-kws " VELOX_VERSION "\nWindows 10.0\n", "VeloxHwKwsImpl.dll: C:\\VeloxHwKwsImpl.dll, version 1.2.3.4, loaded",
          "VeloxWovSDK.dll: not found, version unknown, not loaded: a DLL that it needs", "LoggerLevel, type 4: 05 00 00 00",
          "LogToFile in the 32-bit view", "good: Language 1033 is English (United States).", "fix: Put the file there",
          "<fwBlob>fw_1040.bin</fwBlob>", "fw_1040.bin: does not exist", "pre_1033.txt: 4 bytes, CRC-32 0x",
          ", threshold 192 (0.75)", "acoustic model\n", "== Findings =="})
    {
        EXPECT_THAT(text, HasSubstr(part));
    }
    const auto model = InspectionSamples::AcousticModel();
    EXPECT_THAT(text, HasSubstr(fmt::format("{} bytes, CRC-32 0x{:08X}", model.size(), velox::engine::Crc32(model))));
}

TEST_F(Bundle, HoldsNothingOfAModelOrOfAThresholdThatIsNone)
{
    const std::string secret = "what a closed model holds";
    project.WriteModel("kp_1033.bin", secret);
    project.WriteModel("fw_1033.bin", "VWOV" + secret);
    project.WriteModel("pre_1033.txt", secret);
    project.WriteModel("user_1033.txt", "0,75 " + secret);
    WriteWholeFile(project.ConstraintsPath(), "RIFF\x01\x02 closed\nmore");
    const std::string text = Make();
    EXPECT_THAT(text, Not(HasSubstr("closed")));
    EXPECT_THAT(text, Not(HasSubstr("VWOV")));
}

TEST_F(Bundle, IsMadeOfABrokenConfigurationToo)
{
    project.WriteXml("<keywords>\n <broken");
    EXPECT_THAT(Make(), HasSubstr("error: An element is not written as XML wants it."));
    EXPECT_THAT(Make(), HasSubstr("<keywords>\n <broken"));
    project.WriteXml(std::string("\xFF\xFE<\0k\0>\0", 8));
    EXPECT_THAT(Make(), HasSubstr("<k>"));
    EXPECT_TRUE(utf8::is_valid(Make()));
}

TEST_F(Bundle, DoesNotShowAConfigurationThatIsNone)
{
    const std::string block = std::string("<\0\0\0", 4) + "voice";
    project.WriteXml(block); // as long as a result block's size says
    EXPECT_THAT(Make(), Not(HasSubstr("voice\n")));
    for (const std::string& other : {std::string("RIFF....WAVEvoice<"), std::string("VWOV voice"), std::string()})
    {
        SCOPED_TRACE(other);
        project.WriteXml(other);
        EXPECT_THAT(Make(), HasSubstr("not shown, since it does not begin as XML."));
        EXPECT_THAT(Make(), Not(HasSubstr("voice\n")));
        EXPECT_THAT(Make(), Not(HasSubstr("WAVE")));
    }
}

TEST_F(Bundle, HoldsTheLast200LinesOfTheLogsThatAreThere)
{
    std::string lines;
    for (int i = 1; i <= 300; ++i)
    {
        lines += fmt::format("information {}\n", i);
    }
    const std::string log = project.Directory() + "/velox-kws.log";
    WriteWholeFile(log, lines);
    const std::string text = Make({PathFromUtf8(log), PathFromUtf8(log + ".none"), {}});
    EXPECT_THAT(text, HasSubstr("velox-kws.log ==\n\ninformation 101\ninformation 102\n"));
    EXPECT_THAT(text, testing::EndsWith("information 300\n"));
    EXPECT_THAT(text, Not(HasSubstr(".none")));
    WriteWholeFile(log, "information 1\ninformation 2\n");
    EXPECT_THAT(Make({PathFromUtf8(log)}), testing::EndsWith("\n\ninformation 1\ninformation 2\n"));
}

} // namespace BundleTests
