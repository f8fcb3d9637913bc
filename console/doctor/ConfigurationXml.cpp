#include "console/doctor/ConfigurationXml.h"

#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"
#include "console/text/Words.h"
#include "console/text/WriteWhole.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

/// A parser's error in words, and what to do.
struct XmlError
{
    tinyxml2::XMLError code;
    std::string_view message;
    std::string_view fix;
};

constexpr XmlError XmlErrors[]{
    {tinyxml2::XML_ERROR_EMPTY_DOCUMENT, "The file has no content.",
     "Write a configuration; docs/configuration.md has an example."},
    {tinyxml2::XML_ERROR_MISMATCHED_ELEMENT, "An element is closed by another's name, or not at all.",
     "Make the names of opening and closing tag equal, as in <fwBlob>...</fwBlob>."},
    {tinyxml2::XML_ERROR_PARSING_ATTRIBUTE, "An attribute has no quotes around its value, or stands twice in its element.",
     "Write each attribute once, as in id=\"1033\"."},
    {tinyxml2::XML_ERROR_PARSING_ELEMENT, "An element is not written as XML wants it.", "Look for a missing < or > there."},
    {tinyxml2::XML_ERROR_PARSING_TEXT, "A text does not end.", "Look for a missing closing tag behind that line."},
    {tinyxml2::XML_ERROR_PARSING_COMMENT, "A comment does not end.", "Close it with -->."},
    {tinyxml2::XML_ERROR_PARSING_DECLARATION, "The XML declaration does not end.", "Close it with ?>."},
    {tinyxml2::XML_ERROR_PARSING_CDATA, "A CDATA section does not end.", "Close it with ]]>."},
    {tinyxml2::XML_ELEMENT_DEPTH_EXCEEDED, "Elements are nested about a hundred deep.", "Close the elements before."},
};

constexpr XmlError AnyXmlError{tinyxml2::XML_ERROR_PARSING, "The file is not well-formed XML.", "Correct that line."};

const XmlError& Describe(tinyxml2::XMLError code)
{
    const auto* const found =
        std::find_if(std::begin(XmlErrors), std::end(XmlErrors), [&](const XmlError& own) { return own.code == code; });
    return found == std::end(XmlErrors) ? AnyXmlError : *found;
}

void AddError(const std::string& file, int line, std::string_view message, std::string_view fix, Findings* findings)
{
    findings->push_back({Severity::Error, file, line, std::string(message), "Nothing works: every operation fails.",
                         std::string(fix), EveryOperation()});
}

bool IsUtf16(std::string_view text)
{
    return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
}

/// Where the text is no UTF-8; npos when it is all.
std::size_t FindMalformedUtf8(std::string_view text)
{
    for (std::size_t i = 0; i < text.size();)
    {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80              ? 1
                                   : (lead & 0xE0U) == 0xC0 ? 2
                                   : (lead & 0xF0U) == 0xE0 ? 3
                                   : (lead & 0xF8U) == 0xF0 ? 4
                                                            : 0;
        if (length == 0 || i + length > text.size() ||
            !std::all_of(text.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                         text.begin() + static_cast<std::ptrdiff_t>(i + length),
                         [](char next) { return (static_cast<unsigned char>(next) & 0xC0U) == 0x80; }))
        {
            return i;
        }
        i += length;
    }
    return std::string_view::npos;
}

/// What the parser lets pass without a word.
void CheckText(const std::string& file, std::string_view text, Findings* findings)
{
    if (const std::size_t zero = text.find('\0'); zero != std::string_view::npos)
    {
        findings->push_back({Severity::Warning,
                             file,
                             LineAt(text, zero),
                             fmt::format("There is a zero byte at 0x{:04X}: the file may have been cut and overwritten.", zero),
                             "The library ignores everything behind it.",
                             "Write the file anew.",
                             {}});
        text = text.substr(0, zero);
    }
    if (const std::size_t malformed = FindMalformedUtf8(text); malformed != std::string_view::npos)
    {
        findings->push_back({Severity::Warning,
                             file,
                             LineAt(text, malformed),
                             "A character is not valid UTF-8.",
                             "The library hands its bytes on as they are.",
                             "Save the file as UTF-8.",
                             {}});
    }
}

void CheckSecondRoot(const std::string& file, const tinyxml2::XMLElement& root, Findings* findings)
{
    if (const tinyxml2::XMLElement* second = root.NextSiblingElement())
    {
        findings->push_back({Severity::Warning,
                             file,
                             second->GetLineNum(),
                             fmt::format("<{}> is a second element outside of <{}>.", second->Name(), root.Name()),
                             "The library reads the first one only.",
                             "Move what stands in it into the first.",
                             {}});
    }
}

} // namespace

bool LoadConfigurationXml(const std::filesystem::path& file, tinyxml2::XMLDocument* document, Findings* findings)
{
    const std::string name = Utf8(file);
    std::vector<uint8_t> bytes;
    try
    {
        bytes = ReadWhole(file);
    }
    catch (const CommandFailure&)
    {
        std::error_code error;
        const bool exists = std::filesystem::exists(file, error);
        AddError(name, 0,
                 std::filesystem::is_directory(file, error) ? "This is a folder, not a configuration file."
                 : exists                                   ? "The file may not be read."
                                                            : "There is no such file.",
                 exists ? "Name a file that this account may read." : "Name the file that the library's caller hands over.",
                 findings);
        return false;
    }
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (IsUtf16(text))
    {
        AddError(name, 1, "The file is written in UTF-16, which the parser does not read.", "Save it as UTF-8.", findings);
        return false;
    }
    CheckText(name, text, findings);
    if (const tinyxml2::XMLError error = document->Parse(text.data(), text.size()); error != tinyxml2::XML_SUCCESS)
    {
        const XmlError& known = Describe(error);
        AddError(name, document->ErrorLineNum(),
                 fmt::format("{} (The library logs it as {}.)", known.message, document->ErrorName()), known.fix, findings);
        return false;
    }
    const tinyxml2::XMLElement* root = document->FirstChildElement();
    if (root == nullptr)
    {
        AddError(name, 1, "There is no element in the file.", "Write a configuration; docs/configuration.md has an example.",
                 findings);
        return false;
    }
    findings->push_back({Severity::Good, name, root->GetLineNum(), "The file is well-formed XML.", {}, {}, {}});
    CheckSecondRoot(name, *root, findings);
    return true;
}

} // namespace velox::console
