#include "console/doctor/ConfigurationCheck.h"

#include "console/doctor/FileCheck.h"
#include "console/hosting/ConfigurationXml.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"
#include "console/text/Wording.h"
#include "console/text/Words.h"
#include "console/text/WriteWhole.h"

#include <fmt/format.h>

#include <utf8.h>

#include <algorithm>
#include <map>

namespace velox::console
{

namespace
{

using enum Operation;
using tinyxml2::XMLElement;

constexpr unsigned int LargestLanguageId = 0xFFFF;

/// A line of a file that should be text; nothing of one that is not.
std::string QuotedLine(std::string_view line)
{
    constexpr std::size_t Longest = 200;
    const bool isText =
        utf8::is_valid(line) && std::ranges::none_of(line, [](char own) { return own >= 0 && own < ' ' && own != '\t'; });
    return isText ? fmt::format("\"{}\"", line.substr(0, Longest))
                  : fmt::format("{} that are no text", Counted(line.size(), "byte"));
}

void WarnOfRelativePath(int line, std::string_view what, std::string_view path, const Subject& subject)
{
    subject.Add(Tone::Warning, line, fmt::format("The {} \"{}\" is no whole path.", what, path),
                "It is looked for from the folder that the process happens to be in.", "Write the whole path, such as C:\\...");
}

void CheckDirectory(const XMLElement& root, const Subject& subject, ConfigurationCheck* check)
{
    const char* value = root.Attribute("directory");
    const int line = LineOf(root, "directory");
    if (value == nullptr)
    {
        subject.Add(
            Tone::Bad, line, fmt::format("<{}> has no attribute directory, the folder of models and thresholds.", root.Name()),
            {}, "Add directory=\"C:\\...\" to it, without a backslash at the end.", {Verification, Training, Arming, Parsing});
        return;
    }
    check->directory = value;
    std::error_code error;
    // An empty directory is the root of the drive: the paths begin with the backslash.
    check->filesReachable = *value == '\0' || !IsAscii(value) || std::filesystem::is_directory(value, error);
    if (!check->filesReachable)
    {
        const bool exists = std::filesystem::exists(value, error);
        subject.Add(Tone::Bad, line, fmt::format("The directory \"{}\" {}.", value, exists ? "is no folder" : "does not exist"),
                    {}, "Make the folder and put the models there, or correct the attribute.",
                    {Verification, Training, Arming, Parsing});
    }
    else if (!IsAbsolute(value))
    {
        WarnOfRelativePath(line, "directory", value, subject);
    }
    else if (check->directory.ends_with('\\') || check->directory.ends_with('/'))
    {
        subject.Add(Tone::Note, line, fmt::format("The directory \"{}\" ends in a separator.", value),
                    "The library adds another one; Windows accepts that.", "Leave the last one out.");
    }
    else
    {
        subject.Add(Tone::Good, line, fmt::format("The directory \"{}\" exists.", value));
    }
}

void CheckConstraintsText(std::string_view text, const Subject& subject)
{
    const std::size_t lineEnd = std::min(text.find('\n'), text.size());
    std::string_view first = text.substr(0, lineEnd);
    first.remove_suffix(first.ends_with('\r') ? 1 : 0);
    if (text.starts_with("\xEF\xBB\xBF"))
    {
        subject.Add(Tone::Warning, 1, "The constraints begin with an invisible byte order mark (EF BB BF).",
                    "The engine gets it as a part of the text.", "Save the file without it.");
    }
    if (text.find_first_not_of(" \t\r\n", lineEnd) != std::string_view::npos)
    {
        subject.Add(Tone::Warning, 2, "The constraints file has more than one line.",
                    fmt::format("The engine gets the first one only: {}.", QuotedLine(first)), "Write everything on one line.");
    }
    subject.Add(Tone::Good, 1,
                first.empty() ? "There are no constraints." : fmt::format("The constraints are {}.", QuotedLine(first)));
}

void CheckConstraints(const XMLElement& root, const Subject& subject, ConfigurationCheck* check)
{
    const char* value = root.Attribute("constraints");
    const int line = LineOf(root, "constraints");
    if (value == nullptr)
    {
        subject.Add(Tone::Bad, line,
                    fmt::format("<{}> has no attribute constraints, the platform-constraints file.", root.Name()), {},
                    "Add constraints=\"C:\\...\" with the file's whole path; an empty file is fine.", {Verification, Training});
        return;
    }
    const NamedFile file = ReadNamedFile(value);
    check->files.push_back({"constraints", value});
    if (!file.readable)
    {
        const Absence absence = WhyNotReadable(value);
        subject.Add(Tone::Bad, line, fmt::format("The constraints file \"{}\" {}.", value, absence.why), {},
                    absence.fix + " An empty file is fine.", {Verification, Training});
        return;
    }
    if (!IsAbsolute(value))
    {
        WarnOfRelativePath(line, "constraints file", value, subject);
    }
    CheckConstraintsText(AsText(file.bytes), {file.path, subject.findings});
}

/// Ids of languages, with the lines of the first elements that have them.
using KnownIds = std::map<unsigned int, int>;

std::optional<unsigned int> IdOf(const XMLElement& language)
{
    unsigned int id = 0;
    return language.QueryUnsignedAttribute("id", &id) == tinyxml2::XML_SUCCESS ? std::optional(id) : std::nullopt;
}

/// An element without a valid id ends every lookup that gets there.
void AddInvalidId(const XMLElement& language, const KnownIds& known, const Subject& subject)
{
    std::vector<Failure> failures = FailuresOf({Capabilities}, {});
    std::vector<std::string> behind;
    for (const auto* later = language.NextSiblingElement(); later != nullptr; later = later->NextSiblingElement())
    {
        if (const auto id = IdOf(*later); id && *id <= LargestLanguageId && !known.contains(*id))
        {
            const auto own = FailuresOf({Verification, Training, Arming, Parsing}, static_cast<uint16_t>(*id));
            failures.insert(failures.end(), own.begin(), own.end());
            behind.push_back(std::to_string(*id));
        }
    }
    const char* text = language.Attribute("id");
    subject.Add(Tone::Bad, LineOf(language, "id"),
                text == nullptr ? fmt::format("<{}> has no attribute id, the language's number.", language.Name())
                                : fmt::format("The id \"{}\" is no number.", text),
                fmt::format("The languages cannot be announced{}.",
                            behind.empty() ? "" : ", and those behind it cannot be reached: " + Joined(behind)),
                "Write the language's Windows number, such as id=\"1033\".");
    subject.findings->back().failures = std::move(failures);
}

/// @return whether the language can be asked for
bool CheckId(const tinyxml2::XMLAttribute& attribute, unsigned int id, KnownIds* known, const Subject& subject)
{
    const int line = attribute.GetLineNum();
    const auto language = static_cast<uint16_t>(id);
    CheckNumber(attribute, "The id", id, subject);
    if (id > LargestLanguageId)
    {
        subject.Add(Tone::Bad, line, fmt::format("The id \"{}\" is outside of 1 to {}.", attribute.Value(), LargestLanguageId),
                    fmt::format("GetCapabilities announces it as {}, but no operation finds it under any number.", language),
                    "Write the language's Windows number, such as 1033.");
        return false;
    }
    if (const auto [earlier, isNew] = known->try_emplace(id, line); !isNew)
    {
        subject.Add(
            Tone::Warning, line, fmt::format("Language {} stands a second time; the first is in line {}.", id, earlier->second),
            "The first one counts, this one is never read. GetCapabilities announces the language twice.", "Remove one of them.");
        return false;
    }
    if (const std::string name = LanguageDisplayName(language); name.empty())
    {
        subject.Add(Tone::Warning, line, fmt::format("Windows knows no language with the number {} (0x{:04X}).", id, id),
                    "Windows will not ask for it.", "Look the number up: English (United States) is 1033.");
    }
    else
    {
        subject.Add(Tone::Good, line, fmt::format("Language {} is {}.", id, name));
    }
    return true;
}

void CheckLanguages(const XMLElement& root, const Subject& subject, ConfigurationCheck* check)
{
    if (root.FirstChildElement() == nullptr)
    {
        subject.Add(Tone::Bad, root.GetLineNum(), fmt::format("<{}> holds no language.", root.Name()),
                    "The detector announces no language, and refuses every one.",
                    "Add a language element; docs/configuration.md has an example.", {Verification, Training, Arming});
    }
    bool reachable = true;
    KnownIds known;
    for (const auto* language = root.FirstChildElement(); language != nullptr; language = language->NextSiblingElement())
    {
        const auto id = IdOf(*language);
        if (!id && reachable)
        {
            AddInvalidId(*language, known, subject);
        }
        reachable = reachable && id;
        if (id && CheckId(*language->FindAttribute("id"), *id, &known, subject) && reachable)
        {
            check->languages.push_back(static_cast<uint16_t>(*id));
            CheckLanguage(*language, check->languages.back(), subject.file, check);
        }
    }
}

/// What the parser lets pass without a word.
void CheckText(std::string_view text, const Subject& subject)
{
    if (const std::size_t zero = text.find('\0'); zero != text.npos)
    {
        subject.Add(Tone::Warning, LineAt(text, zero),
                    fmt::format("There is a zero byte at 0x{:04X}: the file may have been cut and overwritten.", zero),
                    "The library ignores everything behind it.", "Write the file anew.");
        text = text.substr(0, zero);
    }
    if (const std::size_t malformed = utf8::find_invalid(text); malformed != text.npos)
    {
        subject.Add(Tone::Warning, LineAt(text, malformed), "A character is not valid UTF-8.",
                    "The library hands its bytes on as they are.", "Save the file as UTF-8.");
    }
}

} // namespace

ConfigurationCheck CheckConfiguration(const std::filesystem::path& file)
{
    ConfigurationCheck check;
    const Subject subject{Utf8(file), &check.findings};
    tinyxml2::XMLDocument document;
    const auto problem = LoadConfigurationXml(file, &document);
    check.usable = !problem;
    if (problem)
    {
        subject.Add(Tone::Bad, problem->line, problem->message, "Nothing works: every operation fails.", problem->fix,
                    EveryOperation);
        return check;
    }
    CheckText(AsText(ReadWhole(file)), subject);
    const XMLElement& root = *document.FirstChildElement();
    subject.Add(Tone::Good, root.GetLineNum(), "The file is well-formed XML.");
    if (const XMLElement* second = root.NextSiblingElement())
    {
        subject.Add(Tone::Warning, second->GetLineNum(),
                    fmt::format("<{}> is a second element outside of <{}>.", second->Name(), root.Name()),
                    "The library reads the first one only.", "Move what stands in it into the first.");
    }
    CheckAttributeNames(root, {"directory", "constraints"}, subject);
    CheckDirectory(root, subject, &check);
    CheckConstraints(root, subject, &check);
    CheckLanguages(root, subject, &check);
    return check;
}

} // namespace velox::console
