#include "console/doctor/ConfigurationCheck.h"

#include "console/doctor/NamedFile.h"
#include "console/hosting/ConfigurationXml.h"
#include "console/text/LanguageName.h"
#include "console/text/NumberText.h"
#include "console/text/Utf8Path.h"
#include "console/text/Wording.h"
#include "console/text/Words.h"
#include "console/text/WriteWhole.h"

#include <fmt/format.h>

#include <utf8.h>

#include <algorithm>

namespace velox::console
{

namespace
{

using enum Operation;

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

/// Checks a root and its languages.
class RootChecker
{
public:
    RootChecker(const tinyxml2::XMLElement& element, std::string file, ConfigurationCheck* result)
        : root(element), configuration(std::move(file)), check(result)
    {
    }

    void Run()
    {
        CheckUnknownAttributes();
        CheckDirectory();
        CheckConstraints();
        CheckLanguages();
    }

private:
    void Add(Tone tone, int line, std::string message, std::string effect, std::string fix, std::vector<Failure> failures = {})
    {
        check->findings.push_back(
            {tone, configuration, line, std::move(message), std::move(effect), std::move(fix), std::move(failures)});
    }
    int LineOf(const char* attribute) const
    {
        const tinyxml2::XMLAttribute* found = root.FindAttribute(attribute);
        return found == nullptr ? root.GetLineNum() : found->GetLineNum();
    }

    void CheckUnknownAttributes();
    void CheckDirectory();
    void CheckConstraints();
    void CheckConstraintsText(const NamedFile& file);
    void CheckLanguages();
    /// @return whether the language can be asked for
    bool CheckId(const tinyxml2::XMLAttribute& attribute, unsigned int id);
    void CheckIdText(const tinyxml2::XMLAttribute& attribute, unsigned int id);
    void AddInvalidId(const tinyxml2::XMLElement& language);

    struct KnownId
    {
        unsigned int id;
        int line;
    };

    const tinyxml2::XMLElement& root;
    std::string configuration;
    ConfigurationCheck* check;
    std::string directory;
    bool filesReachable = false;
    std::vector<KnownId> knownIds;
};

void RootChecker::CheckUnknownAttributes()
{
    for (const auto* attribute = root.FirstAttribute(); attribute != nullptr; attribute = attribute->Next())
    {
        const std::string_view name = attribute->Name();
        if (name != "directory" && name != "constraints")
        {
            Add(Tone::Warning, attribute->GetLineNum(), fmt::format("{} is no attribute that the library knows.", name),
                "It is ignored.", "Remove it, or correct its name; upper and lower case count.");
        }
    }
}

void RootChecker::CheckDirectory()
{
    const std::vector<Failure> needs = FailuresOf({Verification, Training, Arming, Parsing}, {});
    const char* value = root.Attribute("directory");
    const int line = LineOf("directory");
    if (value == nullptr)
    {
        Add(Tone::Bad, line, fmt::format("<{}> has no attribute directory, the folder of models and thresholds.", root.Name()),
            {}, "Add directory=\"C:\\...\" to it, without a backslash at the end.", needs);
        return;
    }
    directory = value;
    std::error_code error;
    // An empty directory is the root of the drive: the paths begin with the backslash.
    if (IsAscii(directory) && !directory.empty() && !std::filesystem::is_directory(directory, error))
    {
        const bool exists = std::filesystem::exists(directory, error);
        Add(Tone::Bad, line, fmt::format("The directory \"{}\" {}.", directory, exists ? "is no folder" : "does not exist"), {},
            "Make the folder and put the models there, or correct the attribute.", needs);
        return;
    }
    filesReachable = true;
    if (!IsAbsolute(directory))
    {
        Add(Tone::Warning, line, fmt::format("The directory \"{}\" is no whole path.", directory),
            "It is looked for from the folder that the process happens to be in.", "Write the whole path, such as C:\\...");
    }
    else if (directory.ends_with('\\') || directory.ends_with('/'))
    {
        Add(Tone::Note, line, fmt::format("The directory \"{}\" ends in a separator.", directory),
            "The library adds another one; Windows accepts that.", "Leave the last one out.");
    }
    else
    {
        Add(Tone::Good, line, fmt::format("The directory \"{}\" exists.", directory), {}, {});
    }
}

void RootChecker::CheckConstraints()
{
    const std::vector<Failure> needs = FailuresOf({Verification, Training}, {});
    const char* value = root.Attribute("constraints");
    const int line = LineOf("constraints");
    if (value == nullptr)
    {
        Add(Tone::Bad, line, fmt::format("<{}> has no attribute constraints, the platform-constraints file.", root.Name()), {},
            "Add constraints=\"C:\\...\" with the file's whole path; an empty file is fine.", needs);
        return;
    }
    const NamedFile file = ReadNamedFile(value);
    check->files.push_back({"constraints", value});
    if (!file.readable)
    {
        const Absence absence = WhyNotReadable(value);
        Add(Tone::Bad, line, fmt::format("The constraints file \"{}\" {}.", value, absence.why), {},
            absence.fix + " An empty file is fine.", needs);
        return;
    }
    if (!IsAbsolute(value))
    {
        Add(Tone::Warning, line, fmt::format("The constraints file \"{}\" is no whole path.", value),
            "It is looked for from the folder that the process happens to be in.",
            "Write the whole path; directory does not apply.");
    }
    CheckConstraintsText(file);
}

void RootChecker::CheckConstraintsText(const NamedFile& file)
{
    const std::string_view text = AsText(file.bytes);
    std::string_view first = text.substr(0, text.find('\n'));
    if (first.ends_with('\r'))
    {
        first.remove_suffix(1);
    }
    const auto add = [&](Tone tone, int line, std::string message, std::string effect, std::string fix) {
        check->findings.push_back({tone, file.path, line, std::move(message), std::move(effect), std::move(fix)});
    };
    const std::size_t lineEnd = std::min(text.find('\n'), text.size());
    if (text.starts_with("\xEF\xBB\xBF"))
    {
        add(Tone::Warning, 1, "The constraints begin with an invisible byte order mark (EF BB BF).",
            "The engine gets it as a part of the text.", "Save the file without it.");
    }
    if (text.find_first_not_of(" \t\r\n", lineEnd) != std::string_view::npos)
    {
        add(Tone::Warning, 2, "The constraints file has more than one line.",
            fmt::format("The engine gets the first one only: {}.", QuotedLine(first)), "Write everything on one line.");
    }
    add(Tone::Good, 1, first.empty() ? "There are no constraints." : fmt::format("The constraints are {}.", QuotedLine(first)),
        {}, {});
}

/// An element without a valid id ends every lookup that gets there.
void RootChecker::AddInvalidId(const tinyxml2::XMLElement& language)
{
    std::vector<Failure> failures = FailuresOf({Capabilities}, {});
    std::string behind;
    for (const auto* later = language.NextSiblingElement(); later != nullptr; later = later->NextSiblingElement())
    {
        unsigned int id = 0;
        const auto* attribute = later->FindAttribute("id");
        const bool valid =
            attribute != nullptr && attribute->QueryUnsignedValue(&id) == tinyxml2::XML_SUCCESS && id <= LargestLanguageId;
        const bool known =
            std::any_of(knownIds.begin(), knownIds.end(), [&](const KnownId& earlier) { return earlier.id == id; });
        if (valid && !known)
        {
            const auto own = FailuresOf({Verification, Training, Arming, Parsing}, static_cast<uint16_t>(id));
            failures.insert(failures.end(), own.begin(), own.end());
            behind += fmt::format("{}{}", behind.empty() ? "" : ", ", id);
        }
    }
    const tinyxml2::XMLAttribute* attribute = language.FindAttribute("id");
    Add(Tone::Bad, attribute == nullptr ? language.GetLineNum() : attribute->GetLineNum(),
        attribute == nullptr ? fmt::format("<{}> has no attribute id, the language's number.", language.Name())
                             : fmt::format("The id \"{}\" is no number.", attribute->Value()),
        behind.empty() ? "The languages cannot be announced."
                       : fmt::format("The languages cannot be announced, and those behind it cannot be reached: {}.", behind),
        "Write the language's Windows number, such as id=\"1033\".", std::move(failures));
}

void RootChecker::CheckIdText(const tinyxml2::XMLAttribute& attribute, unsigned int id)
{
    const std::string message = fmt::format("The id is written \"{}\".", attribute.Value());
    if (const auto odd = OddNumber(attribute.Value(), id))
    {
        Add(Tone::Warning, attribute.GetLineNum(), message, *odd, "Write the language's number alone.");
    }
    else if (ReadNumberText(attribute.Value()).hexadecimal)
    {
        Add(Tone::Note, attribute.GetLineNum(), message, fmt::format("The library takes it for {}.", id), "Write it in decimal.");
    }
}

bool RootChecker::CheckId(const tinyxml2::XMLAttribute& attribute, unsigned int id)
{
    const int line = attribute.GetLineNum();
    CheckIdText(attribute, id);
    if (id > LargestLanguageId)
    {
        const auto announced = static_cast<uint16_t>(id);
        Add(Tone::Bad, line, fmt::format("The id \"{}\" is outside of 1 to {}.", attribute.Value(), LargestLanguageId),
            fmt::format("GetCapabilities announces it as {}, but no operation finds it under any number.", announced),
            "Write the language's Windows number, such as 1033.");
        return false;
    }
    const auto earlier = std::find_if(knownIds.begin(), knownIds.end(), [&](const KnownId& known) { return known.id == id; });
    if (earlier != knownIds.end())
    {
        Add(Tone::Warning, line, fmt::format("Language {} stands a second time; the first is in line {}.", id, earlier->line),
            "The first one counts, this one is never read. GetCapabilities announces the language twice.", "Remove one of them.");
        return false;
    }
    knownIds.push_back({id, line});
    const std::string name = LanguageDisplayName(static_cast<uint16_t>(id));
    if (name.empty())
    {
        Add(Tone::Warning, line, fmt::format("Windows knows no language with the number {} (0x{:04X}).", id, id),
            "Windows will not ask for it.", "Look the number up: English (United States) is 1033.");
    }
    else
    {
        Add(Tone::Good, line, fmt::format("Language {} is {}.", id, name), {}, {});
    }
    return true;
}

void RootChecker::CheckLanguages()
{
    if (root.FirstChildElement() == nullptr)
    {
        Add(Tone::Bad, root.GetLineNum(), fmt::format("<{}> holds no language.", root.Name()),
            "The detector announces no language, and refuses every one.",
            "Add a language element; docs/configuration.md has an example.", FailuresOf({Verification, Training, Arming}, {}));
        return;
    }
    bool reachable = true;
    const LanguageSurroundings surroundings{configuration, directory, filesReachable};
    for (const auto* language = root.FirstChildElement(); language != nullptr; language = language->NextSiblingElement())
    {
        unsigned int id = 0;
        const tinyxml2::XMLAttribute* attribute = language->FindAttribute("id");
        if (attribute == nullptr || attribute->QueryUnsignedValue(&id) != tinyxml2::XML_SUCCESS)
        {
            if (reachable)
            {
                AddInvalidId(*language);
            }
            reachable = false;
        }
        else if (CheckId(*attribute, id) && reachable)
        {
            check->languages.push_back(static_cast<uint16_t>(id));
            CheckLanguage(*language, static_cast<uint16_t>(id), surroundings, &check->findings);
            const std::vector<ConfiguredFile> files = FilesOf(*language, directory);
            check->files.insert(check->files.end(), files.begin(), files.end());
        }
    }
}

/// What the parser lets pass without a word.
void CheckText(const std::string& file, std::span<const uint8_t> bytes, Findings* findings)
{
    std::string_view text = AsText(bytes);
    if (const std::size_t zero = text.find('\0'); zero != text.npos)
    {
        findings->push_back({Tone::Warning, file, LineAt(text, zero),
                             fmt::format("There is a zero byte at 0x{:04X}: the file may have been cut and overwritten.", zero),
                             "The library ignores everything behind it.", "Write the file anew."});
        text = text.substr(0, zero);
    }
    if (const std::size_t malformed = utf8::find_invalid(text); malformed != text.npos)
    {
        findings->push_back({Tone::Warning, file, LineAt(text, malformed), "A character is not valid UTF-8.",
                             "The library hands its bytes on as they are.", "Save the file as UTF-8."});
    }
}

} // namespace

ConfigurationCheck CheckConfiguration(const std::filesystem::path& file)
{
    ConfigurationCheck check;
    const std::string name = Utf8(file);
    tinyxml2::XMLDocument document;
    const auto problem = LoadConfigurationXml(file, &document);
    check.usable = !problem;
    if (problem)
    {
        check.findings.push_back({Tone::Bad, name, problem->line, problem->message, "Nothing works: every operation fails.",
                                  problem->fix, EveryOperation()});
        return check;
    }
    CheckText(name, ReadWhole(file), &check.findings);
    const tinyxml2::XMLElement& root = *document.FirstChildElement();
    check.findings.push_back({Tone::Good, name, root.GetLineNum(), "The file is well-formed XML."});
    if (const tinyxml2::XMLElement* second = root.NextSiblingElement())
    {
        check.findings.push_back({Tone::Warning, name, second->GetLineNum(),
                                  fmt::format("<{}> is a second element outside of <{}>.", second->Name(), root.Name()),
                                  "The library reads the first one only.", "Move what stands in it into the first."});
    }
    RootChecker(root, name, &check).Run();
    return check;
}

} // namespace velox::console
