#include "console/doctor/ConfigurationCheck.h"

#include "console/doctor/ConfigurationXml.h"
#include "console/doctor/LanguageCheck.h"
#include "console/doctor/NamedFile.h"
#include "console/text/NumberText.h"
#include "console/text/Utf8Path.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

using enum Operation;

constexpr unsigned int LargestLanguageId = 0xFFFF;

/// Checks a root and its languages.
class RootChecker
{
public:
    RootChecker(const tinyxml2::XMLElement& element, std::string file, const LanguageNames& languageNames,
                ConfigurationCheck* result)
        : root(element), configuration(std::move(file)), names(languageNames), check(result)
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
    void Add(Severity severity, int line, std::string message, std::string effect, std::string fix,
             std::vector<Failure> failures = {})
    {
        check->findings.push_back(
            {severity, configuration, line, std::move(message), std::move(effect), std::move(fix), std::move(failures)});
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
    bool CheckId(const tinyxml2::XMLElement& language, unsigned int id);
    void CheckIdText(const tinyxml2::XMLAttribute& attribute, unsigned int id);
    void AddInvalidId(const tinyxml2::XMLElement& language);

    struct KnownId
    {
        unsigned int id;
        int line;
    };

    const tinyxml2::XMLElement& root;
    std::string configuration;
    const LanguageNames& names;
    ConfigurationCheck* check;
    NamedFiles files;
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
            Add(Severity::Warning, attribute->GetLineNum(), fmt::format("{} is no attribute that the library knows.", name),
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
        Add(Severity::Error, line,
            fmt::format("<{}> has no attribute directory, the folder of models and thresholds.", root.Name()), {},
            "Add directory=\"C:\\...\" to it, without a backslash at the end.", needs);
        return;
    }
    directory = value;
    std::error_code error;
    // An empty directory is the root of the drive: the paths begin with the backslash.
    if (IsAscii(directory) && !directory.empty() && !std::filesystem::is_directory(directory, error))
    {
        const bool exists = std::filesystem::exists(directory, error);
        Add(Severity::Error, line, fmt::format("The directory \"{}\" {}.", directory, exists ? "is no folder" : "does not exist"),
            {}, "Make the folder and put the models there, or correct the attribute.", needs);
        return;
    }
    filesReachable = true;
    if (!IsAbsolute(directory))
    {
        Add(Severity::Warning, line, fmt::format("The directory \"{}\" is no whole path.", directory),
            "It is looked for from the folder that the process happens to be in.", "Write the whole path, such as C:\\...");
    }
    else if (directory.ends_with('\\') || directory.ends_with('/'))
    {
        Add(Severity::Note, line, fmt::format("The directory \"{}\" ends in a separator.", directory),
            "The library adds another one; Windows accepts that.", "Leave the last one out.");
    }
    else
    {
        Add(Severity::Good, line, fmt::format("The directory \"{}\" exists.", directory), {}, {});
    }
}

void RootChecker::CheckConstraints()
{
    const std::vector<Failure> needs = FailuresOf({Verification, Training}, {});
    const char* value = root.Attribute("constraints");
    const int line = LineOf("constraints");
    if (value == nullptr)
    {
        Add(Severity::Error, line, fmt::format("<{}> has no attribute constraints, the platform-constraints file.", root.Name()),
            {}, "Add constraints=\"C:\\...\" with the file's whole path; an empty file is fine.", needs);
        return;
    }
    const NamedFile& file = files.Read(value);
    if (!file.readable)
    {
        const Absence absence = WhyNotReadable(value);
        Add(Severity::Error, line, fmt::format("The constraints file \"{}\" {}.", value, absence.why), {},
            absence.fix + " An empty file is fine.", needs);
        return;
    }
    if (!IsAbsolute(value))
    {
        Add(Severity::Warning, line, fmt::format("The constraints file \"{}\" is no whole path.", value),
            "It is looked for from the folder that the process happens to be in.",
            "Write the whole path; directory does not apply.");
    }
    CheckConstraintsText(file);
}

void RootChecker::CheckConstraintsText(const NamedFile& file)
{
    const std::string_view text(reinterpret_cast<const char*>(file.bytes.data()), file.bytes.size());
    std::string_view first = text.substr(0, text.find('\n'));
    if (first.ends_with('\r'))
    {
        first.remove_suffix(1);
    }
    const auto add = [&](Severity severity, int line, std::string message, std::string effect, std::string fix) {
        check->findings.push_back({severity, file.path, line, std::move(message), std::move(effect), std::move(fix), {}});
    };
    const std::size_t lineEnd = std::min(text.find('\n'), text.size());
    if (text.starts_with("\xEF\xBB\xBF"))
    {
        add(Severity::Warning, 1, "The constraints begin with an invisible byte order mark (EF BB BF).",
            "The engine gets it as a part of the text.", "Save the file without it.");
    }
    if (text.find_first_not_of(" \t\r\n", lineEnd) != std::string_view::npos)
    {
        add(Severity::Warning, 2, "The constraints file has more than one line.",
            fmt::format("The engine gets the first one only: \"{}\".", first), "Write everything on one line.");
    }
    add(Severity::Good, 1, first.empty() ? "There are no constraints." : fmt::format("The constraints are \"{}\".", first), {},
        {});
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
    Add(Severity::Error, attribute == nullptr ? language.GetLineNum() : attribute->GetLineNum(),
        attribute == nullptr ? fmt::format("<{}> has no attribute id, the language's number.", language.Name())
                             : fmt::format("The id \"{}\" is no number.", attribute->Value()),
        behind.empty() ? "The languages cannot be announced."
                       : fmt::format("The languages cannot be announced, and those behind it cannot be reached: {}.", behind),
        "Write the language's Windows number, such as id=\"1033\".", std::move(failures));
}

void RootChecker::CheckIdText(const tinyxml2::XMLAttribute& attribute, unsigned int id)
{
    const NumberText text = ReadNumberText(attribute.Value());
    if (text.tooLarge || !text.rest.empty())
    {
        Add(Severity::Warning, attribute.GetLineNum(), fmt::format("The id is written \"{}\".", attribute.Value()),
            text.tooLarge ? "The number is beyond 32 bits, and its value depends on the C runtime."
                          : fmt::format("The library takes {} and ignores \"{}\".", id, text.rest),
            "Write the language's number alone.");
    }
    else if (text.hexadecimal)
    {
        Add(Severity::Note, attribute.GetLineNum(), fmt::format("The id is written \"{}\".", attribute.Value()),
            fmt::format("The library takes it for {}.", id), "Write it in decimal.");
    }
}

bool RootChecker::CheckId(const tinyxml2::XMLElement& language, unsigned int id)
{
    const tinyxml2::XMLAttribute& attribute = *language.FindAttribute("id");
    const int line = attribute.GetLineNum();
    CheckIdText(attribute, id);
    if (id > LargestLanguageId)
    {
        const auto announced = static_cast<uint16_t>(id);
        Add(Severity::Error, line, fmt::format("The id \"{}\" is outside of 1 to {}.", attribute.Value(), LargestLanguageId),
            fmt::format("GetCapabilities announces it as {}, but no operation finds it under any number.", announced),
            "Write the language's Windows number, such as 1033.");
        return false;
    }
    const auto earlier = std::find_if(knownIds.begin(), knownIds.end(), [&](const KnownId& known) { return known.id == id; });
    if (earlier != knownIds.end())
    {
        Add(Severity::Warning, line, fmt::format("Language {} stands a second time; the first is in line {}.", id, earlier->line),
            "The first one counts, this one is never read. GetCapabilities announces the language twice.", "Remove one of them.");
        return false;
    }
    knownIds.push_back({id, line});
    const auto language16 = static_cast<uint16_t>(id);
    const std::string name = names(language16);
    if (name.empty())
    {
        Add(Severity::Warning, line, fmt::format("Windows knows no language with the number {} (0x{:04X}).", id, id),
            "Windows will not ask for it.", "Look the number up: English (United States) is 1033.");
    }
    else
    {
        Add(Severity::Good, line, fmt::format("Language {} is {}.", id, name), {}, {});
    }
    return true;
}

void RootChecker::CheckLanguages()
{
    if (root.FirstChildElement() == nullptr)
    {
        Add(Severity::Error, root.GetLineNum(), fmt::format("<{}> holds no language.", root.Name()),
            "The detector announces no language, and refuses every one.",
            "Add a language element; docs/configuration.md has an example.", FailuresOf({Verification, Training, Arming}, {}));
        return;
    }
    bool reachable = true;
    const LanguageSurroundings surroundings{configuration, directory, filesReachable, files};
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
        else if (CheckId(*language, id) && reachable)
        {
            check->languages.push_back(static_cast<uint16_t>(id));
            check->files += CheckLanguage(*language, static_cast<uint16_t>(id), surroundings, &check->findings);
        }
    }
}

} // namespace

ConfigurationCheck CheckConfiguration(const std::filesystem::path& file, const LanguageNames& names)
{
    ConfigurationCheck check;
    tinyxml2::XMLDocument document;
    check.usable = LoadConfigurationXml(file, &document, &check.findings);
    if (check.usable)
    {
        RootChecker(*document.FirstChildElement(), Utf8(file), names, &check).Run();
    }
    return check;
}

} // namespace velox::console
