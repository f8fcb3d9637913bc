#include "console/doctor/ModelCheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

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

ModelVerdict CheckModelFile(std::string_view element, const Inspection& inspection)
{
    const bool engineReads = element != "fwBlob";
    const char* const refused =
        engineReads ? "The stand-in engine refuses it." : "The library arms it as it is; the firmware refuses it.";
    if (IsOfAnotherEngine(inspection))
    {
        return {Severity::Note, "is no model of the stand-in engine",
                "It is handed on as it is: only its own engine or firmware can tell whether it is right."};
    }
    if (!Belongs(element, inspection.kind))
    {
        return {Severity::Error, fmt::format("is another kind of model: {}", FileKindName(inspection.kind)), refused,
                "Name the right file; two may have been swapped.", engineReads};
    }
    if (const InspectedField* error = inspection.FirstError())
    {
        return {Severity::Error, fmt::format("is damaged at {}, {}: {}", OffsetText(error->offset), error->path, error->error),
                refused, "Put the model there again; velox-kws inspect shows all of it.", engineReads};
    }
    if (!engineReads && inspection.ofUser)
    {
        return {Severity::Warning, "is a user's model",
                "The computer answers to that user only, whoever has no model of their own.",
                "Name the language's own firmware model."};
    }
    return {Severity::Good, fmt::format("is a model of the stand-in engine ({})", FileKindName(inspection.kind))};
}

ModelVerdict CheckModelsAgree(const Inspection* keyphrase, const Inspection* acoustic, const Inspection* population)
{
    const auto ofPhrase = States(keyphrase);
    const auto ofAcoustic = States(acoustic);
    const auto ofPopulation = States(population);
    if (ofAcoustic && ofPopulation && ofAcoustic != ofPopulation)
    {
        return {
            Severity::Error,
            fmt::format("acoustic model and population are of different phrases: {} and {} states.", *ofAcoustic, *ofPopulation),
            "The stand-in engine refuses to enroll with them.", "Use the files of one training together.", true};
    }
    if (ofAcoustic && ofPhrase && ofAcoustic != ofPhrase)
    {
        return {Severity::Warning,
                fmt::format("key-phrase model and acoustic model are of different phrases: {} and {} states.", *ofPhrase,
                            *ofAcoustic),
                "A take that is verified is not the one that can be enrolled.", "Use the files of one training together."};
    }
    const std::array models{keyphrase, acoustic, population};
    const bool someForeign = std::ranges::any_of(
        models, [](const Inspection* own) { return own != nullptr && own->kind != FileKind::Empty && IsOfAnotherEngine(*own); });
    if (someForeign && (ofPhrase || ofAcoustic || ofPopulation))
    {
        return {Severity::Warning, "some models are of the stand-in engine, others are not.",
                "No engine understands all of them.", "Use the files of one engine together."};
    }
    return {};
}

} // namespace velox::console
