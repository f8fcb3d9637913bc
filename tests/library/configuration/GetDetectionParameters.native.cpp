#include "tests/library/configuration/GetDetectionParameters.h"
#include "tests/support/FaultInjector.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

namespace GetDetectionParametersFaultsTests
{

using namespace ConfigurationLines;
using testing::ElementsAre;

using GetDetectionParametersFaults = DetectionParametersTest;

TEST_F(GetDetectionParametersFaults, ThresholdFileThatCannotBeOpenedFailsAndKeepsTheFieldsBefore)
{
    struct Case
    {
        uint64_t failing;
        int32_t predefined, userDefined;
    };
    // The first open is the configuration file's. The last is the second read of the user-defined threshold.
    for (const Case& row : {Case{2, 4711, 4711}, Case{3, 192, 4711}, Case{4, 192, 128}})
    {
        SCOPED_TRACE(row.failing);
        parameters = {4711, 4711, 4711};
        const FaultPlan plan(FaultPlan::Nth(row.failing, FallibleCall::FileOpen));
        EXPECT_EQ(reader.GetDetectionParameters(1033, &parameters), E_FAIL);
        EXPECT_EQ(plan.Calls(), row.failing);
        ExpectFields(10, row.predefined, row.userDefined);
        EXPECT_THAT(logger.Take(), ElementsAre(ThresholdNotOpened, ThresholdNotRead));
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
    ExpectFields(10, 192, 64);
    EXPECT_THAT(logger.lines, ElementsAre(ThresholdNotOpened, ThresholdNotRead));
}

} // namespace GetDetectionParametersFaultsTests
