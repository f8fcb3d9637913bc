#include "library/configuration/ConfigurationDocument.h"

#include "tests/support/FaultInjector.h"
#include "tests/support/FileOpen.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <new>

namespace ConfigurationDocumentFaultsTests
{

using testing::ElementsAre;
using testing::IsEmpty;

class ConfigurationDocumentFaults : public testing::Test
{
protected:
    ConfigurationDocumentFaults()
    {
        WriteWholeFile(path, "<keywords><language/></keywords>");
    }
    HRESULT Load()
    {
        return LoadDocument(&document, path, &logger, "[Op] %s: %s");
    }
    TemporaryFolder folder;
    const std::string path = folder.Path() + "/configuration.xml";
    RecordingLogger logger;
    tinyxml2::XMLDocument document;
};

TEST_F(ConfigurationDocumentFaults, FileThatCannotBeOpenedIsReportedAsAbsent)
{
    const FaultPlan plan(FaultPlan::Nth(1, FallibleCall::FileOpen));
    EXPECT_EQ(Load(), E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(2, 1, "[Op] " + path + ": XML_ERROR_FILE_NOT_FOUND")));
}

TEST_F(ConfigurationDocumentFaults, DirectoryInsteadOfTheFileCannotBeRead)
{
    EXPECT_EQ(LoadDocument(&document, folder.Path(), &logger, "%s: %s"), E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(2, 1, folder.Path() + ": XML_ERROR_FILE_READ_ERROR")));
}

TEST_F(ConfigurationDocumentFaults, AllocationThatFailsInTheParserLosesTheOpenFileIsKept)
{
    const std::size_t before = OpenFiles();
    {
        const FaultPlan plan(FaultPlan::Nth(1, FallibleCall::Allocation));
        EXPECT_THROW(Load(), std::bad_alloc);
    }
    EXPECT_EQ(OpenFiles(), before + 1);
    EXPECT_THAT(logger.lines, IsEmpty());

    EXPECT_EQ(Load(), S_OK);
    EXPECT_EQ(OpenFiles(), before + 1);
    CloseOpenFiles();
}

} // namespace ConfigurationDocumentFaultsTests
