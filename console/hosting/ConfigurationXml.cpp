#include "console/hosting/ConfigurationXml.h"

#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace velox::console
{

namespace
{

constexpr const char* WriteOne = "Write a configuration; docs/configuration.md has an example.";

/// A parser's error in words, and what to do.
struct ParserError
{
    tinyxml2::XMLError code;
    const char* message;
    const char* fix;
};

constexpr std::array ParserErrors{
    ParserError{tinyxml2::XML_ERROR_EMPTY_DOCUMENT, "The file has no content.", WriteOne},
    ParserError{tinyxml2::XML_ERROR_MISMATCHED_ELEMENT, "An element is closed by another's name, or not at all.",
                "Make the names of opening and closing tag equal, as in <fwBlob>...</fwBlob>."},
    ParserError{tinyxml2::XML_ERROR_PARSING_ATTRIBUTE,
                "An attribute has no quotes around its value, or stands twice in its element.",
                "Write each attribute once, as in id=\"1033\"."},
    ParserError{tinyxml2::XML_ERROR_PARSING_ELEMENT, "An element is not written as XML wants it.",
                "Look for a missing < or > there."},
    ParserError{tinyxml2::XML_ERROR_PARSING_TEXT, "A text does not end.", "Look for a missing closing tag behind that line."},
    ParserError{tinyxml2::XML_ERROR_PARSING_COMMENT, "A comment does not end.", "Close it with -->."},
    ParserError{tinyxml2::XML_ERROR_PARSING_DECLARATION, "The XML declaration does not end.", "Close it with ?>."},
    ParserError{tinyxml2::XML_ERROR_PARSING_CDATA, "A CDATA section does not end.", "Close it with ]]>."},
    ParserError{tinyxml2::XML_ELEMENT_DEPTH_EXCEEDED, "Elements are nested about a hundred deep.", "Close the elements before."},
    ParserError{tinyxml2::XML_SUCCESS, "The file is not well-formed XML.", "Correct that line."}};

XmlProblem ProblemOf(const tinyxml2::XMLDocument& document)
{
    const auto* known = std::ranges::find(ParserErrors, document.ErrorID(), &ParserError::code);
    if (known == ParserErrors.end())
    {
        known = std::prev(ParserErrors.end());
    }
    return {document.ErrorLineNum(), fmt::format("{} (The library logs it as {}.)", known->message, document.ErrorName()),
            known->fix};
}

/// Nothing when there is a file that may be one.
std::optional<XmlProblem> ProblemOf(const std::filesystem::path& file)
{
    std::error_code error;
    if (std::filesystem::is_directory(file, error))
    {
        return XmlProblem{0, "This is a folder, not a configuration file.", "Name a file that this account may read."};
    }
    if (!std::filesystem::exists(file, error))
    {
        return XmlProblem{0, "There is no such file.", "Name the configuration file with --config FILE."};
    }
    return std::nullopt;
}

} // namespace

std::optional<XmlProblem> LoadConfigurationXml(const std::filesystem::path& file, tinyxml2::XMLDocument* document)
{
    if (auto problem = ProblemOf(file))
    {
        return problem;
    }
    std::vector<uint8_t> bytes;
    try
    {
        bytes = ReadWhole(file);
    }
    catch (const CommandFailure&)
    {
        return XmlProblem{0, "The file may not be read.", "Name a file that this account may read."};
    }
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const bool isParsed = document->Parse(text.data(), text.size()) == tinyxml2::XML_SUCCESS;
    if (isParsed && document->FirstChildElement() != nullptr)
    {
        return std::nullopt;
    }
    // The mark alone is none to go by: before an element of plain letters it is a text to the parser.
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"))
    {
        return XmlProblem{1, "The file is written in UTF-16, which the parser does not read.", "Save it as UTF-8."};
    }
    return isParsed ? XmlProblem{1, "There is no element in the file.", WriteOne} : ProblemOf(*document);
}

void RequireConfigurationXml(const std::filesystem::path& file, tinyxml2::XMLDocument* document)
{
    if (const auto problem = LoadConfigurationXml(file, document))
    {
        const std::string line = problem->line > 0 ? fmt::format(", line {}", problem->line) : "";
        throw CommandFailure(ExitCode::BadConfiguration,
                             fmt::format("The configuration file {}{} cannot be used: {}", Utf8(file), line, problem->message),
                             problem->fix);
    }
}

} // namespace velox::console
