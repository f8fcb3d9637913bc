#include "library/configuration/ConfigurationReader.h"

#include "tests/support/ReaderOperations.h"
#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <type_traits>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

static_assert(std::has_virtual_destructor_v<ConfigurationReader>);
static_assert(!std::is_copy_constructible_v<ConfigurationReader> && !std::is_copy_assignable_v<ConfigurationReader>);

TEST(ConfigurationReader, IsAPathAndALoggerBehindOneVirtualTable)
{
    EXPECT_EQ(sizeof(ConfigurationReader), sizeof(void*) + sizeof(std::string) + sizeof(IVeloxKeywordDetectorLogger*));
}

TEST(ConfigurationReader, CopiesThePathAndDoesNotTouchTheFile)
{
    const TestConfiguration configuration;
    const std::string text = ReadWholeFile(configuration.Path());
    std::filesystem::remove(configuration.Path());

    RecordingLogger logger;
    std::string path = configuration.Path();
    ConfigurationReader reader(path, &logger);
    path = "elsewhere";
    EXPECT_THAT(logger.lines, IsEmpty());

    configuration.WriteXml(text);
    uint32_t count = 0;
    EXPECT_EQ(reader.GetLanguagesCount(&count), S_OK);
    EXPECT_EQ(count, 2U);
}

TEST(ConfigurationReader, NothingIsKeptBetweenCalls)
{
    const TestConfiguration configuration;
    RecordingLogger logger;
    ConfigurationReader reader(configuration.Path(), &logger);
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

TEST(ConfigurationReader, NoOperationChangesTheFile)
{
    const TestConfiguration configuration;
    const std::string text = ReadWholeFile(configuration.Path());
    RecordingLogger logger;
    ConfigurationReader reader(configuration.Path(), &logger);
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

TEST(ConfigurationReader, EveryOperationLogsAnAbsentFileAndLeavesItsOutputs)
{
    const TestConfiguration configuration;
    std::filesystem::remove(configuration.Path());
    RecordingLogger logger;
    ConfigurationReader reader(configuration.Path(), &logger);
    for (const ReaderOperation& operation : ReaderOperations())
    {
        SCOPED_TRACE(operation);
        ReaderOutputs outputs;
        EXPECT_EQ(operation.run(reader, 1033, &outputs), E_FAIL);
        EXPECT_TRUE(outputs.Untouched());
        EXPECT_THAT(logger.Take(),
                    ElementsAre(LogFormat(2, 1,
                                          operation.Line("Failed to load configuration file: " + configuration.Path() +
                                                         ". Status: XML_ERROR_FILE_NOT_FOUND."))));
    }
}

TEST(ConfigurationReader, EveryOperationButIsLanguageSupportedNeedsARoot)
{
    const TestConfiguration configuration;
    configuration.WriteXml("<!-- no element -->");
    RecordingLogger logger;
    ConfigurationReader reader(configuration.Path(), &logger);
    for (const ReaderOperation& operation : ReaderOperations())
    {
        if (operation.name == "IsLanguageSupported")
        {
            continue;
        }
        SCOPED_TRACE(operation);
        ReaderOutputs outputs;
        EXPECT_EQ(operation.run(reader, 1033, &outputs), E_FAIL);
        EXPECT_TRUE(outputs.Untouched());
        EXPECT_THAT(logger.Take(), ElementsAre(LogFormat(2, 1, operation.Line("Failed to load root element of DOM."))));
    }
}

} // namespace
