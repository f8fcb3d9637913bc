#include "console/doctor/FileCheck.h"

#include "console/inspect/ThresholdText.h"
#include "console/text/Words.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>

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

/// The states of a phrase, where they can be read.
std::optional<std::size_t> States(const Inspection* inspection)
{
    return inspection == nullptr ? std::nullopt : inspection->states;
}

} // namespace

Finding CheckThreshold(const NamedFile& file, std::string_view what)
{
    constexpr const char* ChooseFix =
        "Write a number between 0 and 255; a higher one gives fewer false triggers and more missed ones.";
    constexpr const char* NumberFix = "Write one decimal number with a point, such as 0.75, as plain text.";
    const std::string_view content = AsText(file.bytes);
    const ThresholdText text = ReadThresholdText(content);
    const auto finding = [&](Tone tone, std::size_t position, const std::string& message, std::string effect, const char* fix) {
        return Finding{tone, file.path, LineAt(content, position), fmt::format("{} {}", what, message), std::move(effect), fix};
    };
    if (!text.isNumber)
    {
        return finding(Tone::Bad, 0, fmt::format("counts as 0: {}.", text.whatIsWrong),
                       "The library says nothing about it, and every score above 0 is a detection.", NumberFix);
    }
    const std::string is = fmt::format("is {}, in the library {}.", text.text, Q8Text(text.q8));
    if (text.value < ThresholdText::LeastScore)
    {
        return finding(Tone::Bad, text.offset, is,
                       "Scores lie between 0 and 255: every one is above it, everything is a detection.", ChooseFix);
    }
    if (text.value > ThresholdText::MostScore)
    {
        return finding(Tone::Bad, text.offset, is + (text.saturated ? " The number does not fit into 32 bits." : ""),
                       "Scores lie between 0 and 255: none is above it, nothing is ever detected.", ChooseFix);
    }
    if (!text.rest.empty())
    {
        std::string effect = text.whatIsWrong + ".";
        effect.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(effect.front())));
        return finding(text.rest.front() == ',' ? Tone::Bad : Tone::Warning, text.restOffset, is, effect, NumberFix);
    }
    return finding(Tone::Good, text.offset, is, {}, "");
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

ModelVerdict CheckModelsAgree(const Inspection* keyphrase, const Inspection* acoustic, const Inspection* population)
{
    const auto ofPhrase = States(keyphrase);
    const auto ofAcoustic = States(acoustic);
    const auto ofPopulation = States(population);
    if (ofAcoustic && ofPopulation && ofAcoustic != ofPopulation)
    {
        return {
            Tone::Bad,
            fmt::format("acoustic model and population are of different phrases: {} and {} states.", *ofAcoustic, *ofPopulation),
            "The stand-in engine refuses to enroll with them.", "Use the files of one training together.", true};
    }
    if (ofAcoustic && ofPhrase && ofAcoustic != ofPhrase)
    {
        return {Tone::Warning,
                fmt::format("key-phrase model and acoustic model are of different phrases: {} and {} states.", *ofPhrase,
                            *ofAcoustic),
                "A take that is verified is not the one that can be enrolled.", "Use the files of one training together."};
    }
    const std::array models{keyphrase, acoustic, population};
    const bool someForeign = std::ranges::any_of(
        models, [](const Inspection* own) { return own != nullptr && own->kind != FileKind::Empty && IsOfAnotherEngine(*own); });
    if (someForeign && (ofPhrase || ofAcoustic || ofPopulation))
    {
        return {Tone::Warning, "some models are of the stand-in engine, others are not.", "No engine understands all of them.",
                "Use the files of one engine together."};
    }
    return {};
}

} // namespace velox::console
