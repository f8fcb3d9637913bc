#include "console/doctor/FileCheck.h"

#include "console/inspect/ThresholdText.h"
#include "console/text/Words.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <fstream>

namespace velox::console
{

namespace
{

/// Whether the stand-in engine takes such a model in this place.
bool Belongs(std::string_view element, FileKind kind)
{
    return element == "acousticModel"     ? kind == FileKind::AcousticModel
           : element == "znormPopulation" ? kind == FileKind::Population
           : element == "keyphraseModel"  ? kind == FileKind::FirmwareModel || kind == FileKind::PhraseModel
                                          : kind == FileKind::FirmwareModel;
}

/// A model whose version is another is another engine's, or damaged; nobody can tell.
bool IsOfAnotherEngine(const Inspection& inspection)
{
    const InspectedField* version = inspection.Find("Version");
    return version == nullptr || !version->error.empty();
}

} // namespace

NamedFile ReadNamedFile(const std::string& path)
{
    NamedFile file{path};
    std::error_code error;
    std::ifstream stream(path, std::ios::binary | std::ios::ate);
    const std::streamoff length = stream && !std::filesystem::is_directory(path, error) ? std::streamoff(stream.tellg()) : -1;
    file.readable = length >= 0;
    file.size = file.readable ? static_cast<uint64_t>(length) : 0;
    if (file.readable && file.size <= NamedFile::LargestInspected)
    {
        file.bytes.resize(file.size);
        stream.seekg(0).read(reinterpret_cast<char*>(file.bytes.data()), length);
        file.readable = stream.gcount() == length;
    }
    return file;
}

Absence WhyNotReadable(const std::string& path)
{
    std::error_code error;
    if (!IsAscii(path))
    {
        return {
            "cannot be opened: its name has characters beyond ASCII, which the library takes for the Windows code page, not for "
            "UTF-8",
            "Rename it, and write only letters without accents."};
    }
    return std::filesystem::is_directory(path, error) ? Absence{"is a folder", "Name a file."}
           : std::filesystem::exists(path, error)
               ? Absence{"may not be read", "Give this account the permission to read it."}
               : Absence{"does not exist", "Put the file there, or correct its name in the configuration."};
}

bool IsAscii(std::string_view text)
{
    constexpr unsigned char FirstBeyond = 0x80;
    return std::ranges::all_of(text, [](char own) { return static_cast<unsigned char>(own) < FirstBeyond; });
}

bool IsAbsolute(std::string_view path)
{
    const bool drive = path.size() > 2 && std::isalpha(static_cast<unsigned char>(path[0])) != 0 && path[1] == ':' &&
                       (path[2] == '\\' || path[2] == '/');
    // Natively, where the tests run, a path that begins with a slash is whole, too.
    return drive || path.starts_with("\\\\") || path.starts_with("//") || std::filesystem::path(path).is_absolute();
}

void CheckThreshold(const NamedFile& file, std::string_view what, Subject subject)
{
    constexpr std::string_view ChooseFix =
        "Write a number between 0 and 255; a higher one gives fewer false triggers and more missed ones.";
    constexpr std::string_view NumberFix = "Write one decimal number with a point, such as 0.75, as plain text.";
    const std::string_view content = AsText(file.bytes);
    const ThresholdText text = ReadThresholdText(content);
    const std::string is = fmt::format("is {}, in the library {}.", text.text, Q8Text(text.q8));
    subject.file = file.path;
    const auto add = [&](Tone tone, std::size_t position, std::string_view message, std::string_view effect,
                         std::string_view fix) {
        subject.Add(tone, LineAt(content, position), fmt::format("{} {}", what, message), effect, fix);
    };
    if (!text.isNumber)
    {
        add(Tone::Bad, 0, fmt::format("counts as 0: {}.", text.whatIsWrong),
            "The library says nothing about it, and every score above 0 is a detection.", NumberFix);
    }
    else if (text.value < ThresholdText::LeastScore || text.value > ThresholdText::MostScore)
    {
        add(Tone::Bad, text.offset, is + (text.saturated ? " The number does not fit into 32 bits." : ""),
            fmt::format("Scores lie between 0 and 255: {}.", text.value < 0.0 ? "every one is above it, everything is a detection"
                                                                              : "none is above it, nothing is ever detected"),
            ChooseFix);
    }
    else if (!text.rest.empty())
    {
        std::string effect = text.whatIsWrong + ".";
        effect.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(effect.front())));
        add(text.rest.front() == ',' ? Tone::Bad : Tone::Warning, text.restOffset, is, effect, NumberFix);
    }
    else
    {
        add(Tone::Good, text.offset, is, "", "");
    }
}

ModelVerdict CheckModelFile(std::string_view element, const Inspection& inspection)
{
    const bool engineReads = element != "fwBlob";
    const char* const refused =
        engineReads ? "The stand-in engine refuses it." : "The library arms it as it is; the firmware refuses it.";
    if (IsOfAnotherEngine(inspection))
    {
        return {Tone::Note, "is no model of the stand-in engine",
                "It is handed on as it is: only its own engine or firmware can tell whether it is right."};
    }
    if (!Belongs(element, inspection.kind))
    {
        return {Tone::Bad, fmt::format("is another kind of model: {}", FileKindName(inspection.kind)), refused,
                "Name the right file; two may have been swapped.", engineReads};
    }
    if (const InspectedField* error = inspection.FirstError())
    {
        return {Tone::Bad, fmt::format("is damaged at {}, {}: {}", OffsetText(error->offset), error->path, error->error), refused,
                "Put the model there again; velox-kws inspect shows all of it.", engineReads};
    }
    if (!engineReads && inspection.ofUser)
    {
        return {Tone::Warning, "is a user's model", "The computer answers to that user only, whoever has no model of their own.",
                "Name the language's own firmware model."};
    }
    return {Tone::Good, fmt::format("is a model of the stand-in engine ({})", FileKindName(inspection.kind))};
}

ModelVerdict CheckModelsAgree(const std::optional<Inspection>& keyphrase, const std::optional<Inspection>& acoustic,
                              const std::optional<Inspection>& population)
{
    constexpr const char* OneTraining = "Use the files of one training together.";
    const auto states = [](const std::optional<Inspection>& model) {
        return model ? model->states : std::nullopt;
    };
    const auto ofPhrase = states(keyphrase);
    const auto ofAcoustic = states(acoustic);
    const auto ofPopulation = states(population);
    if (ofAcoustic && ofPopulation && ofAcoustic != ofPopulation)
    {
        return {
            Tone::Bad,
            fmt::format("acoustic model and population are of different phrases: {} and {} states.", *ofAcoustic, *ofPopulation),
            "The stand-in engine refuses to enroll with them.", OneTraining, true};
    }
    if (ofAcoustic && ofPhrase && ofAcoustic != ofPhrase)
    {
        return {Tone::Warning,
                fmt::format("key-phrase model and acoustic model are of different phrases: {} and {} states.", *ofPhrase,
                            *ofAcoustic),
                "A take that is verified is not the one that can be enrolled.", OneTraining};
    }
    const bool someForeign = std::ranges::any_of(std::array{&keyphrase, &acoustic, &population}, [](const auto* own) {
        return *own && (*own)->kind != FileKind::Empty && IsOfAnotherEngine(**own);
    });
    if (someForeign && (ofPhrase || ofAcoustic || ofPopulation))
    {
        return {Tone::Warning, "some models are of the stand-in engine, others are not.", "No engine understands all of them.",
                "Use the files of one engine together."};
    }
    return {};
}

} // namespace velox::console
