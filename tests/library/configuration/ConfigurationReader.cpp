#include "library/configuration/ConfigurationReader.h"

#include "tests/library/configuration/Lines.h"
#include "tests/support/ReaderOperations.h"

#include <filesystem>
#include <string>
#include <type_traits>

namespace ConfigurationReaderTests
{

static_assert(std::has_virtual_destructor_v<ConfigurationReader>);
static_assert(!std::is_copy_constructible_v<ConfigurationReader> && !std::is_copy_assignable_v<ConfigurationReader>);

using namespace ConfigurationLines;
using testing::IsEmpty;

using ConfigurationReader = EveryReaderOperation;

TEST_F(ConfigurationReader, IsAPathAndALoggerBehindOneVirtualTable)
{
    EXPECT_EQ(sizeof(reader), sizeof(void*) + sizeof(std::string) + sizeof(IVeloxKeywordDetectorLogger*));
}

TEST_F(ConfigurationReader, CopiesThePathAndDoesNotTouchTheFile)
{
    const std::string text = ReadWholeFile(configuration.Path());
    std::filesystem::remove(configuration.Path());
    std::string path = configuration.Path();
    ::ConfigurationReader copying(path, &logger);
    path = "elsewhere";
    EXPECT_THAT(logger.lines, IsEmpty());

    configuration.WriteXml(text);
    uint32_t count = 0;
    EXPECT_EQ(copying.GetLanguagesCount(&count), S_OK);
    EXPECT_EQ(count, 2U);
}

TEST_F(ConfigurationReader, NothingIsKeptBetweenCalls)
{
    uint32_t count = 0;
    EXPECT_EQ(reader.GetLanguagesCount(&count), S_OK);
    EXPECT_EQ(count, 2U);

    configuration.WriteLanguages(TestConfiguration::LanguageElement("1033", 10));
    EXPECT_EQ(reader.GetLanguagesCount(&count), S_OK);
    EXPECT_EQ(count, 1U);

    std::filesystem::remove(configuration.Path());
    EXPECT_EQ(reader.GetLanguagesCount(&count), E_FAIL);
    EXPECT_EQ(count, 1U);
}

TEST_F(ConfigurationReader, NoOperationChangesTheFile)
{
    const std::string text = ReadWholeFile(configuration.Path());
    for (const ReaderOperation& operation : ReaderOperations())
    {
        SCOPED_TRACE(operation);
        ReaderOutputs outputs;
        EXPECT_EQ(operation.run(reader, 1033, &outputs), S_OK);
        EXPECT_FALSE(outputs.Untouched() && operation.name != "IsLanguageSupported");
        EXPECT_EQ(ReadWholeFile(configuration.Path()), text);
    }
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(ConfigurationReader, EveryOperationLogsAnAbsentFileAndLeavesItsOutputs)
{
    std::filesystem::remove(configuration.Path());
    ExpectRefused([this](const ReaderOperation& operation) {
        return NotLoaded(operation.name, configuration.Path(), "XML_ERROR_FILE_NOT_FOUND");
    });
}

TEST_F(ConfigurationReader, EveryOperationButIsLanguageSupportedNeedsARoot)
{
    configuration.WriteXml("<!-- no element -->");
    ExpectRefused([](const ReaderOperation& operation) { return NoRoot(operation.name); },
                  [](const ReaderOperation& operation) { return operation.name != "IsLanguageSupported"; });
}

TEST_F(ConfigurationReader, EveryLookupOfALanguageNeedsTheDirectory)
{
    configuration.ReplaceInXml(" directory=", " folder=");
    ExpectRefused([](const ReaderOperation& operation) { return NotGot(operation.name, "directory attribute"); },
                  [](const ReaderOperation& operation) { return operation.looksUpLanguage; });
}

TEST_F(ConfigurationReader, EveryLookupOfALanguageNeedsValidIdsAheadOfIt)
{
    for (const int status : {1, 2})
    {
        SCOPED_TRACE(status);
        const std::string element = status == 1 ? "<a/>" : "<a id='abc'/>";
        configuration.WriteLanguages(element + TestConfiguration::LanguageElement("1033", 10));
        ExpectRefused([&](const ReaderOperation& operation) { return AttributeFailed(operation.name, status); },
                      [](const ReaderOperation& operation) { return operation.looksUpLanguage; });
    }
}

} // namespace ConfigurationReaderTests
