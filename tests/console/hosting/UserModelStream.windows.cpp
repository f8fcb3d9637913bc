#include "console/hosting/UserModelStream.h"

#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace UserModelStreamOnRealTests
{

using namespace velox::console;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(UserModelStream, AFileIsReadFromItsBeginning)
{
    const TemporaryFolder folder;
    WriteWholeFile(folder.Path() + "\\user.vwov", "VWOV");
    const velox::oemadapter::ComPointer<IStream> stream = OpenUserModel(PathFromUtf8(folder.Path() + "\\user.vwov"));
    EXPECT_THAT(Content(stream.get()), ElementsAre('V', 'W', 'O', 'V'));
    EXPECT_THAT(Content(stream.get()), ElementsAre('V', 'W', 'O', 'V')) << "wherever it was left";
    ULONG written = 0;
    EXPECT_NE(stream->Write("x", 1, &written), S_OK) << "it is for reading";
}

TEST(UserModelStream, AFileThatIsNotThereIsNamed)
{
    const TemporaryFolder folder;
    try
    {
        OpenUserModel(PathFromUtf8(folder.Path() + "\\none.vwov"));
        ADD_FAILURE();
    }
    catch (const CommandFailure& failure)
    {
        EXPECT_EQ(failure.exitCode, ExitCode::BadInput);
        EXPECT_THAT(failure.what(), HasSubstr("none.vwov cannot be opened"));
    }
}

TEST(UserModelStream, WhoNeverEnrolledHasAnEmptyOneThatCanBeWritten)
{
    const velox::oemadapter::ComPointer<IStream> stream = EmptyStream();
    EXPECT_THAT(Content(stream.get()), IsEmpty());
    ASSERT_EQ(stream->Write("ab", 2, nullptr), S_OK);
    EXPECT_THAT(Content(stream.get()), ElementsAre('a', 'b'));
}

} // namespace UserModelStreamOnRealTests
