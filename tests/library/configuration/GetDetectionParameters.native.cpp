#include "tests/support/FaultInjector.h"
#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

namespace
{

using testing::ElementsAre;

const LogLine NotOpened = Log(2, 1, "[ReadThresholdFile] Failed to open threshold file.");
const LogLine NotRead = Log(2, 1, "[GetDetectionParameters] Failed to read threshold file.");

class GetDetectionParametersFaults : public ReaderTest
{
protected:
    VELOX_WOV_DETECTION_PARAMETERS parameters{4711, 4711, 4711};
};

struct OpenCase
{
    uint64_t failing;
    int32_t predefined;
    int32_t userDefined;
};

TEST_F(GetDetectionParametersFaults, ThresholdFileThatCannotBeOpenedFailsAndKeepsTheFieldsBefore)
{
    // The first open is the configuration file's. The last is the second read of the user-defined threshold.
    for (const OpenCase& variant : {OpenCase{2, 4711, 4711}, OpenCase{3, 192, 4711}, OpenCase{4, 192, 128}})
    {
        SCOPED_TRACE(variant.failing);
        parameters = {4711, 4711, 4711};
        const FaultPlan plan(FaultPlan::Nth(variant.failing, FallibleCall::FileOpen));
        EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), E_FAIL);
        EXPECT_EQ(plan.Calls(), variant.failing);
        EXPECT_EQ(parameters.qualityThreshold, 10);
        EXPECT_EQ(parameters.preDefinedKpdSensitivity, variant.predefined);
        EXPECT_EQ(parameters.userDefinedKpdSensitivity, variant.userDefined);
        EXPECT_THAT(logger.Take(), ElementsAre(NotOpened, NotRead));
    }
}

TEST_F(GetDetectionParametersFaults, UserDefinedFileThatGoesAwayBetweenItsTwoReadsFailsIsKept)
{
    // A pipe in the file's place: it is removed once the first read has opened it, before that read can end.
    configuration.RemoveFile("kpd_user_1033.txt");
    const std::string path = configuration.Directory() + "\\kpd_user_1033.txt";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::thread writer([&path] {
        const int pipe = open(path.c_str(), O_WRONLY);
        unlink(path.c_str());
        EXPECT_EQ(write(pipe, "0.25\n", 5), 5);
        close(pipe);
    });
    EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), E_FAIL);
    writer.join();
    EXPECT_EQ(parameters.qualityThreshold, 10);
    EXPECT_EQ(parameters.preDefinedKpdSensitivity, 192);
    EXPECT_EQ(parameters.userDefinedKpdSensitivity, 64);
    EXPECT_THAT(logger.lines, ElementsAre(NotOpened, NotRead));
}

} // namespace
