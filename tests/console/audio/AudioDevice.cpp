#include "console/audio/AudioDevice.h"

#include "console/pages/ReportText.h"
#include "console/text/CommandFailure.h"

#include <gmock/gmock.h>

namespace AudioDeviceTests
{

using namespace velox::console;
using testing::HasSubstr;

const std::vector<AudioDevice> Devices{{0, "Line In", "MME", 44100, 2, false},
                                       {2, "Mikrofon (USB für Łukasz)", "MME", 16000, 1, true},
                                       {5, "Headset microphone", "MME", 48000, 1, false}};

CommandFailure FailureOf(std::span<const AudioDevice> devices, const std::string& name)
{
    try
    {
        ChooseDevice(devices, name);
    }
    catch (const CommandFailure& failure)
    {
        return failure;
    }
    return {ExitCode::Success, "there is one"};
}

TEST(AudioDevice, APartOfTheNameChoosesTheFirstThatHasIt)
{
    for (const auto& [name, number] : {std::pair("", 2), {"line", 0}, {"MIKRO", 2}, {"Łukasz", 2}, {"mi", 2}, {"microphone", 5}})
    {
        EXPECT_EQ(ChooseDevice(Devices, name).number, number) << name;
    }
}

TEST(AudioDevice, WithoutADefaultTheFirstOneIsHeard)
{
    EXPECT_EQ(ChooseDevice(std::span(Devices).last(1), "").number, 5);
}

TEST(AudioDevice, ANameThatNoneHasIsRefusedWithThoseThatThereAre)
{
    const CommandFailure failure = FailureOf(Devices, "camera");
    EXPECT_EQ(failure.exitCode, ExitCode::BadInput);
    EXPECT_STREQ(failure.what(), "No microphone has \"camera\" in its name.");
    EXPECT_EQ(failure.fix, "There are: Line In, Mikrofon (USB für Łukasz), Headset microphone.");
}

TEST(AudioDevice, NoMicrophoneIsAnErrorThatSaysWhatToDo)
{
    const CommandFailure failure = FailureOf({}, "");
    EXPECT_EQ(failure.exitCode, ExitCode::BadInput);
    EXPECT_STREQ(failure.what(), "There is no microphone.");
    EXPECT_THAT(failure.fix, HasSubstr("Plug one in"));
    EXPECT_THROW(DeviceReport({}), CommandFailure);
}

TEST(AudioDevice, TheReportIsATable)
{
    const Report report = DeviceReport(Devices);
    EXPECT_EQ(ReportText(report, false, false), "Microphones\n"
                                                "                                        Host  Rate      Channels\n"
                                                "    Line In                             MME   44100 Hz  2\n"
                                                "    Mikrofon (USB für Łukasz)  default  MME   16000 Hz  1\n"
                                                "    Headset microphone                  MME   48000 Hz  1\n");
    EXPECT_EQ(report.verdict, "3 microphones; without a name \"Mikrofon (USB für Łukasz)\" is heard.");
}

} // namespace AudioDeviceTests
