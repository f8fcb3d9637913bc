// Configuration files that nobody sane writes, before every operation that reads them: the outcome is a return code and a log
// line, whatever they hold.
#include "tests/library/configuration/Lines.h"
#include "tests/support/ReaderOperations.h"

#include <algorithm>

namespace HostileConfigurationTests
{

using namespace ConfigurationLines;
using testing::IsEmpty;
using testing::StartsWith;

using namespace std::string_literals;

class HostileConfiguration : public EveryReaderOperation
{
protected:
    /// Every operation fails to load the file, says so in one line and leaves its outputs.
    void ExpectRefused(const std::string& status)
    {
        EveryReaderOperation::ExpectRefused(
            [&](const ReaderOperation& operation) { return NotLoaded(operation.name, configuration.Path(), status); });
    }

    /// Every operation succeeds without a line; the file holds `count` languages, 1033 among them.
    void ExpectAccepted(uint32_t count)
    {
        ReaderOutputs outputs;
        EveryReaderOperation::ExpectAccepted(&outputs);
        EXPECT_EQ(outputs.count, count);
        EXPECT_EQ(std::count(outputs.ids.begin(), outputs.ids.begin() + count, 1033), 1);
        EXPECT_TRUE(outputs.supported);
        EXPECT_EQ(outputs.constraints, "memory=160k");
        EXPECT_NE(outputs.enrollment.znormPopulation, nullptr);
        EXPECT_EQ(outputs.modelSize, 13U);
        EXPECT_EQ(outputs.detection.userDefinedKpdSensitivity, 128);
    }

    std::string ValidXml() const
    {
        return ReadWholeFile(configuration.Path());
    }
};

struct RefusedCase
{
    const char* description;
    std::string xml;
    const char* status;
};

std::string Repeat(std::string_view piece, std::size_t times)
{
    std::string text;
    text.reserve(piece.size() * times);
    for (std::size_t i = 0; i < times; ++i)
    {
        text += piece;
    }
    return text;
}

TEST_F(HostileConfiguration, MalformedFilesAreRefused)
{
    const RefusedCase cases[]{{"empty", "", "XML_ERROR_EMPTY_DOCUMENT"},
                              {"blanks", " \r\n\t ", "XML_ERROR_EMPTY_DOCUMENT"},
                              {"only a byte-order mark", "\xef\xbb\xbf", "XML_ERROR_EMPTY_DOCUMENT"},
                              {"a zero byte first", "\0<r/>"s, "XML_ERROR_EMPTY_DOCUMENT"},
                              {"UTF-16", "\xff\xfe<\0r\0/\0>\0"s, "XML_ERROR_PARSING"},
                              {"a zero byte inside a tag", "<r a='1\0' b='2'/>"s, "XML_ERROR_PARSING_ATTRIBUTE"},
                              {"an opening bracket", "<", "XML_ERROR_PARSING"},
                              {"a number for a name", "<1/>", "XML_ERROR_PARSING"},
                              {"never closed", "<r><a>", "XML_ERROR_MISMATCHED_ELEMENT"},
                              {"closed by another name", "<r></s>", "XML_ERROR_MISMATCHED_ELEMENT"},
                              {"closed in the wrong order", "<r><a></r></a>", "XML_ERROR_MISMATCHED_ELEMENT"},
                              {"closed twice", "<r><a></a></a></r>", "XML_ERROR_MISMATCHED_ELEMENT"},
                              {"an attribute without quotes", "<r a=1/>", "XML_ERROR_PARSING_ATTRIBUTE"},
                              {"an attribute without a value", "<r a/>", "XML_ERROR_PARSING_ATTRIBUTE"},
                              {"an attribute never closed", "<r a='1/>", "XML_ERROR_PARSING_ATTRIBUTE"},
                              {"an attribute twice", "<r a='1' a='2'/>", "XML_ERROR_PARSING_ATTRIBUTE"},
                              {"text never ended", "<r>text", "XML_ERROR_PARSING_TEXT"},
                              {"a CDATA section never ended", "<r><![CDATA[text</r>", "XML_ERROR_PARSING_CDATA"},
                              {"a comment never ended", "<r><!-- text</r>", "XML_ERROR_PARSING_COMMENT"},
                              {"a declaration never ended", "<?xml version='1.0'", "XML_ERROR_PARSING_DECLARATION"},
                              {"a declaration behind the root", "<r/><?xml version='1.0'?>", "XML_ERROR_PARSING_DECLARATION"},
                              {"a document type never ended", "<!DOCTYPE r", "XML_ERROR_PARSING_UNKNOWN"},
                              {"1000 levels", Repeat("<a>", 1000) + Repeat("</a>", 1000), "XML_ELEMENT_DEPTH_EXCEEDED"},
                              {"a million levels", Repeat("<a>", 1000000), "XML_ELEMENT_DEPTH_EXCEEDED"},
                              {"a million opening brackets", std::string(1000000, '<'), "XML_ERROR_PARSING"}};
    for (const RefusedCase& variant : cases)
    {
        SCOPED_TRACE(variant.description);
        configuration.WriteXml(variant.xml);
        ExpectRefused(variant.status);
    }
}

TEST_F(HostileConfiguration, EveryProperBeginningOfAFileIsRefused)
{
    std::string xml = ValidXml();
    xml.erase(xml.rfind('>'));
    for (; !xml.empty(); xml.pop_back())
    {
        SCOPED_TRACE(xml.size());
        configuration.WriteXml(xml);
        for (const ReaderOperation& operation : ReaderOperations())
        {
            SCOPED_TRACE(operation);
            ReaderOutputs outputs;
            ASSERT_EQ(operation.run(reader, 1033, &outputs), E_FAIL);
            ASSERT_TRUE(outputs.Untouched());
            ASSERT_EQ(logger.lines.size(), 1U);
            const std::string begin = NotLoaded(operation.name, configuration.Path(), "XML_ERROR_").text;
            ASSERT_THAT(logger.Take().front().text, StartsWith(begin.substr(0, begin.size() - 1)));
        }
    }
}

TEST_F(HostileConfiguration, RandomBytesInAFileNeverDoMoreThanFail)
{
    const std::string valid = ValidXml();
    uint32_t state = 1;
    const auto random = [&state] {
        return (state = state * 1664525 + 1013904223) >> 8;
    };
    for (int round = 0; round < 300; ++round)
    {
        SCOPED_TRACE(round);
        std::string xml = valid;
        for (uint32_t changes = 1 + random() % 8; changes > 0; --changes)
        {
            xml[random() % xml.size()] = static_cast<char>(random());
        }
        configuration.WriteXml(xml);
        for (const ReaderOperation& operation : ReaderOperations())
        {
            SCOPED_TRACE(operation);
            ReaderOutputs outputs;
            const HRESULT result = operation.run(reader, 1033, &outputs);
            const std::vector<LogLine> lines = logger.Take();
            // A failure has its line. GetEnrollmentParameters also logs the loads whose result it drops.
            ASSERT_TRUE(result == S_OK || (result == E_FAIL && !lines.empty()));
            ASSERT_TRUE(result == E_FAIL || lines.empty() || operation.name == "GetEnrollmentParameters");
        }
    }
}

TEST_F(HostileConfiguration, BinaryFileIsRefused)
{
    std::string bytes;
    for (int i = 0; i < 4096; ++i)
    {
        bytes += static_cast<char>(255 - i % 256);
    }
    configuration.WriteXml(bytes);
    ExpectRefused("XML_ERROR_PARSING");
}

TEST_F(HostileConfiguration, DocumentsWithoutAnElementHaveNoRoot)
{
    for (const std::string& xml : {"<!-- only a comment -->"s, "<?xml version='1.0'?>"s, "<!DOCTYPE r>"s, "<![CDATA[<r/>]]>"s,
                                   "no markup<!---->"s, "</closed><r/>"s})
    {
        SCOPED_TRACE(xml);
        configuration.WriteXml(xml);
        EveryReaderOperation::ExpectRefused(
            [](const ReaderOperation& operation) { return NoRoot(operation.name); },
            [](const ReaderOperation& operation) { return operation.name != "IsLanguageSupported"; });
        bool supported = true;
        EXPECT_EQ(reader.IsLanguageSupported(1033, &supported), S_OK);
        EXPECT_FALSE(supported);
        EXPECT_THAT(logger.Take(), IsEmpty());
    }
}

struct AcceptedCase
{
    const char* description;
    std::string xml;
};

TEST_F(HostileConfiguration, TheParsersLenienceIsKept)
{
    const std::string valid = ValidXml();
    const AcceptedCase cases[]{{"a byte-order mark", "\xef\xbb\xbf" + valid},
                               {"a declaration, whatever it says", "<?xml version='7' encoding='EBCDIC'?>" + valid},
                               {"two roots, the first counts", valid + "<keywords><language/></keywords>"},
                               {"text before the root", "rubbish " + valid},
                               {"text behind the root, ended by a comment", valid + "rubbish<!---->"},
                               {"rubbish behind a zero byte", valid + "\0</rubbish> <<<"s},
                               {"rubbish behind a stray closing tag", valid + "</x> <<<"},
                               {"malformed UTF-8 in a comment", "<!-- \xc3\x28 \xff \xed\xa0\x80 -->" + valid},
                               {"malformed UTF-8 as text", "\xc3\x28 \xff \xed\xa0\x80" + valid},
                               {"entities are not expanded", "<!DOCTYPE r [<!ENTITY a 'aaaa'><!ENTITY b '&a;&a;'>]>" + valid}};
    for (const AcceptedCase& variant : cases)
    {
        SCOPED_TRACE(variant.description);
        configuration.WriteXml(variant.xml);
        ExpectAccepted(2);
    }
}

TEST_F(HostileConfiguration, NamesMayBeMalformedUtf8)
{
    configuration.WriteLanguages("<\xff\xfe id='1033' \xc3='\xed\xa0\x80'/>");
    bool supported = false;
    EXPECT_EQ(reader.IsLanguageSupported(1033, &supported), S_OK);
    EXPECT_TRUE(supported);
}

TEST_F(HostileConfiguration, NestingBelowTheParsersLimitIsAccepted)
{
    configuration.WriteLanguages(TestConfiguration::LanguageElement("1033", 10) + "<a id='1'>" + Repeat("<b>", 50) +
                                 Repeat("</b>", 50) + "</a>");
    ExpectAccepted(2);
}

TEST_F(HostileConfiguration, TwoHundredThousandLanguagesAreRead)
{
    constexpr uint32_t Count = 200000;
    std::string languages;
    for (uint32_t i = 1; i < Count; ++i)
    {
        languages += "<l id='" + std::to_string(100000 + i) + "'/>";
    }
    configuration.WriteLanguages(languages + TestConfiguration::LanguageElement("1033", 10));

    ReaderOutputs outputs;
    EveryReaderOperation::ExpectAccepted(&outputs);
    EXPECT_EQ(outputs.count, Count);
    EXPECT_EQ(outputs.ids[0], static_cast<uint16_t>(100001));
    EXPECT_EQ(outputs.ids[Count - 1], 1033);
    EXPECT_EQ(outputs.ids[Count], ReaderOutputs::Mark);
    EXPECT_TRUE(outputs.supported);
    EXPECT_EQ(outputs.detection.qualityThreshold, 10);
    EXPECT_EQ(outputs.modelSize, 13U);
}

TEST_F(HostileConfiguration, ManyAttributesOnOneElementAreRead)
{
    // The parser compares each attribute with all before it: time grows with the square of their number.
    std::string attributes;
    for (int i = 0; i < 2000; ++i)
    {
        attributes += " a" + std::to_string(i) + "=''";
    }
    configuration.WriteLanguages("<l" + attributes + " id='1040'/>" + TestConfiguration::LanguageElement("1033", 10));
    ExpectAccepted(2);
}

TEST_F(HostileConfiguration, LongTextsAreReadWhole)
{
    const std::string longName(1 << 20, 'n');
    configuration.WriteLanguages(TestConfiguration::LanguageElement("1033", 10));
    configuration.ReplaceInXml("fw_1033.bin", longName);
    ReaderOutputs outputs;
    EXPECT_EQ(reader.GetPredefinedModel(1033, &outputs.model, &outputs.modelSize), E_FAIL);
    EXPECT_TRUE(outputs.Untouched());
    const LogLine expected = LogFormat(2, 1, "[LoadFile] Failed to load file: " + longName + ".");
    EXPECT_TRUE(logger.Take() == std::vector{expected}); // not to print a megabyte
}

struct ContradictionCase
{
    const char* description;
    std::string languages;
    HRESULT lookup;
    int32_t quality; ///< what GetDetectionParameters stored for 1033
};

TEST_F(HostileConfiguration, ContradictionsAreSettledByTheFilesOrder)
{
    const std::string first = TestConfiguration::LanguageElement("1033", 10);
    std::string second = first;
    second.replace(second.find("\"10\""), 4, "\"30\"");
    const ContradictionCase cases[]{
        {"the same id twice", first + second, S_OK, 10},
        {"the same id in hexadecimal first", "<l id='0x409' qualityThreshold='5'/>" + first, E_FAIL, 5},
        {"an id that equals it in its low 16 bits first", "<l id='66569'/>" + second, S_OK, 30},
        {"an incomplete element hides a complete one", "<l id='1033'/>" + first, E_FAIL, 4711},
        {"an id with a sign first", "<l id='-1'/>" + first, S_OK, 10}};
    for (const ContradictionCase& variant : cases)
    {
        SCOPED_TRACE(variant.description);
        configuration.WriteLanguages(variant.languages);
        ReaderOutputs outputs;
        EXPECT_EQ(reader.GetDetectionParameters(1033, &outputs.detection), variant.lookup);
        EXPECT_EQ(outputs.detection.qualityThreshold, variant.quality);
        EXPECT_EQ(reader.GetEnrollmentParameters(1033, &outputs.enrollment), variant.lookup);
        EXPECT_EQ(reader.GetPredefinedModel(1033, &outputs.model, &outputs.modelSize), variant.lookup);
        EXPECT_EQ(reader.IsLanguageSupported(1033, &outputs.supported), S_OK);
        EXPECT_TRUE(outputs.supported);
    }
}

TEST_F(HostileConfiguration, IdThatIsListedNeedNotBeSupported)
{
    configuration.WriteLanguages("<l id='66569'/>");
    ReaderOutputs outputs;
    EveryReaderOperation::ExpectAccepted(&outputs);
    EXPECT_EQ(outputs.count, 1U);
    EXPECT_EQ(outputs.ids[0], 1033);
    EXPECT_FALSE(outputs.supported);
    EXPECT_EQ(outputs.modelSize, ReaderOutputs::Mark);
    EXPECT_EQ(outputs.detection.qualityThreshold, static_cast<int32_t>(ReaderOutputs::Mark));
}

TEST_F(HostileConfiguration, DirectoryInsteadOfTheFileIsRefused)
{
    ConfigurationReader ofDirectory(configuration.Directory(), &logger);
    for (const ReaderOperation& operation : ReaderOperations())
    {
        SCOPED_TRACE(operation);
        ReaderOutputs outputs;
        EXPECT_EQ(operation.run(ofDirectory, 1033, &outputs), E_FAIL);
        EXPECT_TRUE(outputs.Untouched());
        ASSERT_EQ(logger.lines.size(), 1U);
        // The status is the platform's: the open fails, or the first read does.
        EXPECT_THAT(logger.Take().front().text, StartsWith("[" + operation.name + "] Failed to load configuration file: "));
    }
}

} // namespace HostileConfigurationTests
