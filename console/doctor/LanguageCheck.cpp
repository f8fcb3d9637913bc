#include "console/doctor/ConfigurationCheck.h"
#include "console/doctor/FileCheck.h"
#include "console/text/Words.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

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
    std::string_view without; ///< what its absence leads to, besides the failures
    Operations neededFor;     ///< the element with a name
    Operations fileNeededFor; ///< what the name stands for
    bool threshold;
};

constexpr Operations EngineOperations{Verification, Training};
constexpr Operations VerificationOnly{Verification};
constexpr Operations TrainingOnly{Training};
constexpr Operations ArmingOnly{Arming};
constexpr Operations AllButCapabilities{Verification, Training, Arming, Parsing};

/// The first three are those that have to fit together.
constexpr FileRole Roles[]{
    // Training asks for its name, too, and goes on without the file.
    {"keyphraseModel", "key-phrase model", "", EngineOperations, VerificationOnly, false},
    {"acousticModel", "acoustic model", "", EngineOperations, EngineOperations, false},
    {"znormPopulation", "ZNorm population", "", EngineOperations, EngineOperations, false},
    {"fwBlob", "firmware model", "Who has no model of their own cannot use the detector.", ArmingOnly, ArmingOnly, false},
    {"preDefinedKpdSensitivity", "threshold of the predefined model", "", AllButCapabilities, AllButCapabilities, true},
    {"userDefinedKpdSensitivity", "threshold of a user's model", "", AllButCapabilities, AllButCapabilities, true},
};

void CheckQuality(const tinyxml2::XMLElement& language, const Subject& subject)
{
    const tinyxml2::XMLAttribute* attribute = language.FindAttribute("qualityThreshold");
    const int line = LineOf(language, "qualityThreshold");
    int threshold = 0;
    if (attribute == nullptr || attribute->QueryIntValue(&threshold) != tinyxml2::XML_SUCCESS)
    {
        subject.Add(Tone::Bad, line,
                    attribute == nullptr ? "the attribute qualityThreshold is missing."
                                         : fmt::format("qualityThreshold \"{}\" is no number.", attribute->Value()),
                    {}, "Write a whole number, such as qualityThreshold=\"10\"; 0 accepts every recording.", AllButCapabilities);
        return;
    }
    CheckNumber(*attribute, "qualityThreshold", threshold, subject);
    if (threshold < 0)
    {
        subject.Add(Tone::Bad, line, fmt::format("qualityThreshold is {}, below 0.", threshold),
                    "The library takes a negative number for a very large one: no recording is good enough.",
                    "Write 0 to accept every recording.", VerificationOnly);
        return;
    }
    subject.Add(Tone::Good, line, fmt::format("recordings need a quality of {} at least.", threshold));
}

/// @return the file's name; empty when there is none
std::string FileNameOf(const FileRole& role, const tinyxml2::XMLElement& element, const Subject& subject)
{
    const int line = element.GetLineNum();
    const char* name = element.GetText();
    if (name == nullptr)
    {
        subject.Add(Tone::Bad, line, fmt::format("<{}> holds no file name.", role.element), role.without,
                    fmt::format("Write the {}'s file name between the tags.", role.what), role.neededFor);
        return {};
    }
    if (element.FirstChild() != element.LastChild())
    {
        subject.Add(Tone::Warning, line, fmt::format("<{}> holds more than a text.", role.element),
                    fmt::format("The library takes \"{}\" for the file name: a comment or an element ends it.", name),
                    "Leave nothing but the file name between the tags.");
    }
    if (IsAbsolute(name))
    {
        subject.Add(Tone::Warning, line, fmt::format("<{}> holds a whole path, \"{}\".", role.element, name),
                    "The library puts the directory in front of it all the same.", "Write the file name alone.");
    }
    return name;
}

std::optional<Inspection> CheckModel(const FileRole& role, int line, const NamedFile& file, const Subject& subject)
{
    if (file.size == 0)
    {
        subject.Add(Tone::Bad, line, fmt::format("the {} \"{}\" is empty.", role.what, file.path), role.without,
                    "Put the model there again; the copy may have failed.", role.fileNeededFor);
        return std::nullopt;
    }
    if (file.size > NamedFile::LargestInspected)
    {
        subject.Add(Tone::Warning, line, fmt::format("the {} \"{}\" has {} bytes.", role.what, file.path, file.size),
                    "The library reads all of it for every operation.", "Check that this is the model.");
        return std::nullopt;
    }
    Inspection inspection = Inspect(file.bytes);
    const ModelVerdict verdict = CheckModelFile(role.element, inspection);
    subject.Add(verdict.tone, line, fmt::format("the {} \"{}\", {} bytes, {}.", role.what, file.path, file.size, verdict.message),
                verdict.effect, verdict.fix, verdict.engineRefuses ? role.fileNeededFor : Operations{});
    return inspection;
}

/// @return the model, when it is one and can be read
std::optional<Inspection> CheckFile(const FileRole& role, const tinyxml2::XMLElement& language, const Subject& subject,
                                    ConfigurationCheck* check)
{
    const tinyxml2::XMLElement* element = language.FirstChildElement(role.element);
    if (element == nullptr)
    {
        subject.Add(Tone::Bad, language.GetLineNum(), fmt::format("<{}> is missing, the {}.", role.element, role.what),
                    role.without, fmt::format("Add <{0}>file name</{0}>; the name's case counts.", role.element), role.neededFor);
        return std::nullopt;
    }
    if (const tinyxml2::XMLElement* again = element->NextSiblingElement(role.element))
    {
        subject.Add(Tone::Warning, again->GetLineNum(),
                    fmt::format("<{}> stands a second time; the first is in line {}.", role.element, element->GetLineNum()),
                    "The first one counts.", "Remove one of them.");
    }
    const std::string name = FileNameOf(role, *element, subject);
    if (name.empty())
    {
        return std::nullopt;
    }
    check->files.push_back({role.element, check->directory + "\\" + name}); // joined as by the library
    if (!check->filesReachable)
    {
        return std::nullopt;
    }
    const NamedFile file = ReadNamedFile(check->files.back().path);
    if (!file.readable)
    {
        // Kept by the library: it goes on without a key-phrase or acoustic model, and the engine gets none.
        const Absence absence = WhyNotReadable(file.path);
        subject.Add(Tone::Bad, element->GetLineNum(), fmt::format("the {} \"{}\" {}.", role.what, file.path, absence.why),
                    role.without,
                    Trim(name) == name ? absence.fix
                                       : fmt::format("Write <{0}>file name</{0}> on one line: blanks and line ends belong to "
                                                     "the name.",
                                                     role.element),
                    role.fileNeededFor);
        return std::nullopt;
    }
    if (role.threshold)
    {
        CheckThreshold(file, fmt::format("the {}", role.what), subject);
        return std::nullopt;
    }
    return CheckModel(role, element->GetLineNum(), file, subject);
}

void CheckElementNames(const tinyxml2::XMLElement& language, const Subject& subject)
{
    for (const auto* child = language.FirstChildElement(); child != nullptr; child = child->NextSiblingElement())
    {
        const std::string_view name = child->Name();
        const auto* const meant =
            std::ranges::find_if(Roles, [&](const FileRole& own) { return SameLetters(name, own.element); });
        if (meant == std::end(Roles) || name != meant->element)
        {
            subject.Add(Tone::Warning, child->GetLineNum(), fmt::format("<{}> is no element that the library knows.", name),
                        "It is ignored.",
                        meant == std::end(Roles) ? "Remove it, or correct its name."
                                                 : fmt::format("Write <{}>: upper and lower case count.", meant->element));
        }
    }
}

} // namespace

int LineOf(const tinyxml2::XMLElement& element, const char* attribute)
{
    const tinyxml2::XMLAttribute* found = element.FindAttribute(attribute);
    return found == nullptr ? element.GetLineNum() : found->GetLineNum();
}

void CheckAttributeNames(const tinyxml2::XMLElement& element, std::initializer_list<std::string_view> known,
                         const Subject& subject)
{
    for (const auto* attribute = element.FirstAttribute(); attribute != nullptr; attribute = attribute->Next())
    {
        if (std::ranges::find(known, attribute->Name()) == known.end())
        {
            subject.Add(Tone::Warning, attribute->GetLineNum(),
                        fmt::format("{} is no attribute that the library knows.", attribute->Name()), "It is ignored.",
                        "Remove it, or correct its name; upper and lower case count.");
        }
    }
}

void CheckNumber(const tinyxml2::XMLAttribute& attribute, std::string_view what, int64_t value, const Subject& subject)
{
    std::string_view text = Trim(attribute.Value());
    const bool sign = text.starts_with('-') || text.starts_with('+');
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(hexadecimal ? 2 : sign ? 1 : 0);
    uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, hexadecimal ? 16 : 10);
    const bool tooLarge = error == std::errc::result_out_of_range || number > std::numeric_limits<uint32_t>::max();
    const std::string_view rest = Trim({stop, static_cast<std::size_t>(end - stop)});
    const std::string effect = tooLarge        ? "The number is beyond 32 bits, and its value depends on the C runtime."
                               : !rest.empty() ? fmt::format("The library takes {} and ignores \"{}\".", value, rest)
                               : hexadecimal   ? fmt::format("The library takes it for {}.", value)
                                               : "";
    if (!effect.empty())
    {
        subject.Add(tooLarge || !rest.empty() ? Tone::Warning : Tone::Note, attribute.GetLineNum(),
                    fmt::format("{} is written \"{}\".", what, attribute.Value()), effect, "Write the number alone, in decimal.");
    }
}

void CheckLanguage(const tinyxml2::XMLElement& language, uint16_t id, const std::string& configuration, ConfigurationCheck* check)
{
    const Subject subject{configuration, &check->findings, id};
    CheckQuality(language, subject);
    std::array<std::optional<Inspection>, std::size(Roles)> models;
    std::ranges::transform(Roles, models.begin(),
                           [&](const FileRole& role) { return CheckFile(role, language, subject, check); });
    if (const ModelVerdict verdict = CheckModelsAgree(models[0], models[1], models[2]); verdict.tone != Tone::Good)
    {
        subject.Add(verdict.tone, language.GetLineNum(), verdict.message, verdict.effect, verdict.fix,
                    verdict.engineRefuses ? TrainingOnly : Operations{});
    }
    CheckElementNames(language, subject);
    CheckAttributeNames(language, {"id", "qualityThreshold"}, subject);
}

} // namespace velox::console
