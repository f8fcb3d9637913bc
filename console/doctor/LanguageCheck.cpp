#include "console/doctor/LanguageCheck.h"

#include "console/doctor/FileCheck.h"
#include "console/text/NumberText.h"
#include "console/text/Words.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <map>

namespace velox::console
{

namespace
{

using enum Operation;

/// A child element whose text is a file name.
struct FileRole
{
    const char* element;
    std::string_view what;
    std::string_view without;                       ///< what its absence leads to, besides the failures
    std::initializer_list<Operation> neededFor;     ///< the element with a name
    std::initializer_list<Operation> fileNeededFor; ///< what the name stands for
    bool threshold;
};

constexpr std::initializer_list<Operation> EngineOperations{Verification, Training};
constexpr std::initializer_list<Operation> VerificationOnly{Verification};
constexpr std::initializer_list<Operation> ArmingOnly{Arming};
constexpr std::initializer_list<Operation> AllButCapabilities{Verification, Training, Arming, Parsing};

constexpr FileRole Roles[]{
    // Training asks for its name, too, and goes on without the file.
    {"keyphraseModel", "key-phrase model", "", EngineOperations, VerificationOnly, false},
    {"acousticModel", "acoustic model", "", EngineOperations, EngineOperations, false},
    {"znormPopulation", "ZNorm population", "", EngineOperations, EngineOperations, false},
    {"fwBlob", "firmware model", "Who has no model of their own cannot use the detector.", ArmingOnly, ArmingOnly, false},
    {"preDefinedKpdSensitivity", "threshold of the predefined model", "", AllButCapabilities, AllButCapabilities, true},
    {"userDefinedKpdSensitivity", "threshold of a user's model", "", AllButCapabilities, AllButCapabilities, true},
};

/// As the library joins a folder and a file name.
std::string JoinedName(const std::string& directory, const std::string& name)
{
    return directory + "\\" + name;
}

/// Gathers the findings of one language.
class LanguageChecker
{
public:
    LanguageChecker(const tinyxml2::XMLElement& element, uint16_t languageId, const LanguageSurroundings& around,
                    Findings* results)
        : language(element), id(languageId), surroundings(around), findings(results)
    {
    }

    void CheckQuality() const;
    void CheckFile(const FileRole& role);
    void CheckUnknownNames() const;
    void CheckModelsFit() const;

private:
    Finding At(int line, Tone tone, std::string message) const
    {
        return {tone, surroundings.configuration, line, fmt::format("Language {}: {}", id, message)};
    }
    void Add(Finding finding, std::string effect, std::string fix, std::initializer_list<Operation> fails = {}) const
    {
        finding.failures = FailuresOf(fails, id);
        finding.effect = std::move(effect);
        finding.fix = std::move(fix);
        findings->push_back(std::move(finding));
    }
    std::string FileName(const FileRole& role, const tinyxml2::XMLElement& element) const;
    void CheckModel(const FileRole& role, int line, const NamedFile& file);

    const tinyxml2::XMLElement& language;
    uint16_t id;
    const LanguageSurroundings& surroundings;
    Findings* findings;
    std::map<std::string_view, Inspection> models; ///< by their elements
};

void LanguageChecker::CheckQuality() const
{
    const tinyxml2::XMLAttribute* attribute = language.FindAttribute("qualityThreshold");
    const int line = attribute == nullptr ? language.GetLineNum() : attribute->GetLineNum();
    int threshold = 0;
    if (attribute == nullptr || attribute->QueryIntValue(&threshold) != tinyxml2::XML_SUCCESS)
    {
        Add(At(line, Tone::Bad,
               attribute == nullptr ? "the attribute qualityThreshold is missing."
                                    : fmt::format("qualityThreshold \"{}\" is no number.", attribute->Value())),
            {}, "Write a whole number, such as qualityThreshold=\"10\"; 0 accepts every recording.", AllButCapabilities);
        return;
    }
    if (threshold < 0)
    {
        Add(At(line, Tone::Bad, fmt::format("qualityThreshold is {}, below 0.", threshold)),
            "The library takes a negative number for a very large one: no recording is good enough.",
            "Write 0 to accept every recording.", {Verification});
    }
    else if (const auto odd = OddNumber(attribute->Value(), threshold))
    {
        Add(At(line, Tone::Warning, fmt::format("qualityThreshold is written \"{}\".", attribute->Value())), *odd,
            "Write a whole number alone.");
    }
    else
    {
        Add(At(line, Tone::Good, fmt::format("recordings need a quality of {} at least.", threshold)), {}, {});
    }
}

std::string LanguageChecker::FileName(const FileRole& role, const tinyxml2::XMLElement& element) const
{
    const int line = element.GetLineNum();
    const char* name = element.GetText();
    if (name == nullptr)
    {
        Add(At(line, Tone::Bad, fmt::format("<{}> holds no file name.", role.element)), std::string(role.without),
            fmt::format("Write the {}'s file name between the tags.", role.what), role.neededFor);
        return {};
    }
    if (element.FirstChild() != element.LastChild())
    {
        Add(At(line, Tone::Warning, fmt::format("<{}> holds more than a text.", role.element)),
            fmt::format("The library takes \"{}\" for the file name: a comment or an element ends it.", name),
            "Leave nothing but the file name between the tags.");
    }
    if (IsAbsolute(name))
    {
        Add(At(line, Tone::Warning, fmt::format("<{}> holds a whole path, \"{}\".", role.element, name)),
            "The library puts the directory in front of it all the same.", "Write the file name alone.");
    }
    return name;
}

void LanguageChecker::CheckFile(const FileRole& role)
{
    const tinyxml2::XMLElement* element = language.FirstChildElement(role.element);
    if (element == nullptr)
    {
        Add(At(language.GetLineNum(), Tone::Bad, fmt::format("<{}> is missing, the {}.", role.element, role.what)),
            std::string(role.without), fmt::format("Add <{0}>file name</{0}>; the name's case counts.", role.element),
            role.neededFor);
        return;
    }
    if (const tinyxml2::XMLElement* again = element->NextSiblingElement(role.element))
    {
        Add(At(again->GetLineNum(), Tone::Warning,
               fmt::format("<{}> stands a second time; the first is in line {}.", role.element, element->GetLineNum())),
            "The first one counts.", "Remove one of them.");
    }
    const std::string name = FileName(role, *element);
    if (name.empty() || !surroundings.filesReachable)
    {
        return;
    }

    const NamedFile file = ReadNamedFile(JoinedName(surroundings.directory, name));
    if (!file.readable)
    {
        const bool blanks = std::isspace(static_cast<unsigned char>(name.front())) != 0 ||
                            std::isspace(static_cast<unsigned char>(name.back())) != 0;
        const Absence absence = WhyNotReadable(file.path);
        // Kept by the library: it goes on without a key-phrase or acoustic model, and the engine gets none.
        Add(At(element->GetLineNum(), Tone::Bad, fmt::format("the {} \"{}\" {}.", role.what, file.path, absence.why)),
            std::string(role.without),
            blanks ? fmt::format("Write <{0}>{1}</{0}> on one line: blanks and line ends belong to the name.", role.element,
                                 "file name")
                   : absence.fix,
            role.fileNeededFor);
    }
    else if (role.threshold)
    {
        findings->push_back(CheckThreshold(file, fmt::format("Language {}: the {}", id, role.what)));
    }
    else
    {
        CheckModel(role, element->GetLineNum(), file);
    }
}

void LanguageChecker::CheckModel(const FileRole& role, int line, const NamedFile& file)
{
    if (file.size == 0)
    {
        Add(At(line, Tone::Bad, fmt::format("the {} \"{}\" is empty.", role.what, file.path)), std::string(role.without),
            "Put the model there again; the copy may have failed.", role.fileNeededFor);
        return;
    }
    if (file.size > NamedFile::LargestInspected)
    {
        Add(At(line, Tone::Warning, fmt::format("the {} \"{}\" has {} bytes.", role.what, file.path, file.size)),
            "The library reads all of it for every operation.", "Check that this is the model.");
        return;
    }
    const Inspection& inspection = models.insert_or_assign(role.element, Inspect(file.bytes)).first->second;
    const ModelVerdict verdict = CheckModelFile(role.element, inspection);
    Add(At(line, verdict.tone, fmt::format("the {} \"{}\", {} bytes, {}.", role.what, file.path, file.size, verdict.message)),
        verdict.effect, verdict.fix);
    findings->back().failures = FailuresOf(verdict.engineRefuses ? role.fileNeededFor : std::initializer_list<Operation>{}, id);
}

void LanguageChecker::CheckModelsFit() const
{
    const auto read = [&](const char* role) {
        const auto found = models.find(role);
        return found == models.end() ? nullptr : &found->second;
    };
    if (const ModelVerdict verdict = CheckModelsAgree(read("keyphraseModel"), read("acousticModel"), read("znormPopulation"));
        verdict.tone != Tone::Good)
    {
        Add(At(language.GetLineNum(), verdict.tone, verdict.message), verdict.effect, verdict.fix);
        findings->back().failures = verdict.engineRefuses ? FailuresOf({Training}, id) : std::vector<Failure>{};
    }
}

void LanguageChecker::CheckUnknownNames() const
{
    for (const auto* child = language.FirstChildElement(); child != nullptr; child = child->NextSiblingElement())
    {
        const std::string_view name = child->Name();
        if (std::any_of(std::begin(Roles), std::end(Roles), [&](const FileRole& role) { return name == role.element; }))
        {
            continue;
        }
        const auto* const meant = std::find_if(std::begin(Roles), std::end(Roles),
                                               [&](const FileRole& role) { return SameLetters(name, role.element); });
        Add(At(child->GetLineNum(), Tone::Warning, fmt::format("<{}> is no element that the library knows.", name)),
            "It is ignored.",
            meant == std::end(Roles) ? "Remove it, or correct its name."
                                     : fmt::format("Write <{}>: upper and lower case count.", meant->element));
    }
    for (const auto* attribute = language.FirstAttribute(); attribute != nullptr; attribute = attribute->Next())
    {
        const std::string_view name = attribute->Name();
        if (name != "id" && name != "qualityThreshold")
        {
            Add(At(attribute->GetLineNum(), Tone::Warning, fmt::format("{} is no attribute that the library knows.", name)),
                "It is ignored.", "Remove it, or correct its name; upper and lower case count.");
        }
    }
}

} // namespace

std::optional<std::string> OddNumber(const char* text, int64_t value)
{
    const NumberText number = ReadNumberText(text);
    return number.tooLarge ? std::optional<std::string>("The number is beyond 32 bits, and its value depends on the C runtime.")
           : number.rest.empty() ? std::nullopt
                                 : std::optional(fmt::format("The library takes {} and ignores \"{}\".", value, number.rest));
}

std::vector<ConfiguredFile> FilesOf(const tinyxml2::XMLElement& language, const std::string& directory)
{
    std::vector<ConfiguredFile> files;
    for (const FileRole& role : Roles)
    {
        const tinyxml2::XMLElement* element = language.FirstChildElement(role.element);
        if (const char* name = element == nullptr ? nullptr : element->GetText())
        {
            files.push_back({role.element, JoinedName(directory, name)});
        }
    }
    return files;
}

void CheckLanguage(const tinyxml2::XMLElement& language, uint16_t id, const LanguageSurroundings& surroundings,
                   Findings* findings)
{
    LanguageChecker checker(language, id, surroundings, findings);
    checker.CheckQuality();
    for (const FileRole& role : Roles)
    {
        checker.CheckFile(role);
    }
    checker.CheckModelsFit();
    checker.CheckUnknownNames();
}

} // namespace velox::console
