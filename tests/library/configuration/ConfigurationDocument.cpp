#include "library/configuration/ConfigurationDocument.h"

#include "tests/support/RecordingLogger.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace ConfigurationDocumentTests
{

using testing::ElementsAre;
using testing::IsEmpty;

class ConfigurationDocument : public testing::Test
{
protected:
    HRESULT Load(std::string_view text)
    {
        WriteWholeFile(Path(), text);
        return LoadDocument(&document, Path(), &logger, "[Op] Failed to load: %s. Status: %s.");
    }
    std::string Path() const
    {
        return folder.Path() + "/configuration.xml";
    }

    TemporaryFolder folder;
    RecordingLogger logger;
    tinyxml2::XMLDocument document;
};

TEST_F(ConfigurationDocument, LoadsWithoutALine)
{
    EXPECT_EQ(Load("<keywords/>"), S_OK);
    EXPECT_STREQ(document.FirstChildElement()->Name(), "keywords");
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(ConfigurationDocument, AbsentFileIsLoggedWithPathAndStatus)
{
    EXPECT_EQ(LoadDocument(&document, Path(), &logger, "[Op] Failed to load: %s. Status: %s."), E_FAIL);
    EXPECT_THAT(logger.lines,
                ElementsAre(LogFormat(2, 1, "[Op] Failed to load: " + Path() + ". Status: XML_ERROR_FILE_NOT_FOUND.")));
}

TEST_F(ConfigurationDocument, MalformedFileIsLoggedWithPathAndStatus)
{
    EXPECT_EQ(Load("<keywords>"), E_FAIL);
    EXPECT_THAT(logger.lines,
                ElementsAre(LogFormat(2, 1, "[Op] Failed to load: " + Path() + ". Status: XML_ERROR_MISMATCHED_ELEMENT.")));
}

TEST_F(ConfigurationDocument, PercentSignsInThePathAreNotFormatted)
{
    const std::string path = folder.Path() + "/100%s%n.xml";
    EXPECT_EQ(LoadDocument(&document, path, &logger, "%s, %s"), E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(2, 1, path + ", XML_ERROR_FILE_NOT_FOUND")));
}

TEST_F(ConfigurationDocument, EmptyPathIsAbsentFile)
{
    EXPECT_EQ(LoadDocument(&document, "", &logger, "%s: %s"), E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(2, 1, ": XML_ERROR_FILE_NOT_FOUND")));
}

TEST_F(ConfigurationDocument, FirstElementIsTheRootWhateverItsName)
{
    ASSERT_EQ(Load("<?xml version=\"1.0\"?><!-- remark --><any/><other/>"), S_OK);
    const tinyxml2::XMLElement* root = nullptr;
    EXPECT_EQ(GetRoot(document, &root, &logger, "[Op] No root."), S_OK);
    EXPECT_STREQ(root->Name(), "any");
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(ConfigurationDocument, DocumentWithoutElementHasNoRoot)
{
    ASSERT_EQ(Load("<!-- remark -->"), S_OK);
    const tinyxml2::XMLElement* root = nullptr;
    EXPECT_EQ(GetRoot(document, &root, &logger, "[Op] No root."), E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(2, 1, "[Op] No root.")));
}

TEST_F(ConfigurationDocument, RootAttributeIsRead)
{
    ASSERT_EQ(Load("<keywords directory='C:\\Models &amp; more' constraints=''/>"), S_OK);
    std::string value = "old";
    EXPECT_EQ(GetRootAttribute(*document.FirstChildElement(), "directory", &value, &logger, "[Op] None."), S_OK);
    EXPECT_EQ(value, "C:\\Models & more");
    EXPECT_EQ(GetRootAttribute(*document.FirstChildElement(), "constraints", &value, &logger, "[Op] None."), S_OK);
    EXPECT_EQ(value, "");
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(ConfigurationDocument, MissingRootAttributeFailsAndLeavesTheValue)
{
    ASSERT_EQ(Load("<keywords Directory='case counts'><child directory='not the root'/></keywords>"), S_OK);
    std::string value = "old";
    EXPECT_EQ(GetRootAttribute(*document.FirstChildElement(), "directory", &value, &logger, "[Op] None."), E_FAIL);
    EXPECT_EQ(value, "old");
    EXPECT_THAT(logger.lines, ElementsAre(Log(2, 1, "[Op] None.")));
}

} // namespace ConfigurationDocumentTests
