#include "console/doctor/ModelCheck.h"

#include "console/inspect/InspectionText.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace velox::console
{

namespace
{

bool IsModel(FileKind kind)
{
    return kind == FileKind::AcousticModel || kind == FileKind::Population || kind == FileKind::PhraseModel ||
           kind == FileKind::FirmwareModel;
}

/// Whether the stand-in engine takes such a model in this place.
bool Belongs(std::string_view element, FileKind kind)
{
    if (element == "acousticModel")
    {
        return kind == FileKind::AcousticModel;
    }
    if (element == "znormPopulation")
    {
        return kind == FileKind::Population;
    }
    return kind == FileKind::FirmwareModel || (element == "keyphraseModel" && kind == FileKind::PhraseModel);
}

/// A model whose version is another is another engine's, or damaged; nobody can tell.
bool IsOfAnotherEngine(const Inspection& inspection)
{
    return !IsModel(inspection.kind) || inspection.fields.size() < 2 || inspection.fields[1].check == FieldCheck::Wrong;
}

/// The numbers of states that the model's parts have; one of them when they agree.
std::vector<std::string> States(const Inspection* inspection)
{
    std::vector<std::string> states;
    if (inspection == nullptr || IsOfAnotherEngine(*inspection) || !inspection->errors.empty())
    {
        return states;
    }
    for (const InspectedField& field : inspection->fields)
    {
        const bool count = field.path == "states" || field.path.ends_with(".states");
        if (count && std::find(states.begin(), states.end(), field.value) == states.end())
        {
            states.push_back(field.value);
        }
    }
    return states;
}

} // namespace

ModelVerdict CheckModelFile(std::string_view element, const Inspection& inspection)
{
    if (IsOfAnotherEngine(inspection))
    {
        return {Severity::Note,
                "is no model of the stand-in engine",
                "It is handed on as it is: only its own engine or firmware can tell whether it is right.",
                {},
                false};
    }
    if (!Belongs(element, inspection.kind))
    {
        return {Severity::Error, fmt::format("is another kind of model: {}", FileKindName(inspection.kind)),
                element == "fwBlob" ? "The firmware cannot use it." : "The stand-in engine refuses it.",
                "Name the right file; two may have been swapped.", element != "fwBlob"};
    }
    if (!inspection.errors.empty())
    {
        const InspectionError& error = inspection.errors.front();
        return {Severity::Error,
                fmt::format("is damaged at {}, {}: {}", OffsetText(error.offset), error.path,
                            std::string_view(error.message).substr(0, error.message.size() - 1)),
                element == "fwBlob" ? "The library arms it as it is; the firmware refuses it."
                                    : "The stand-in engine refuses it.",
                "Put the model there again; velox-kws inspect shows all of it.", element != "fwBlob"};
    }
    const InspectedField* speaker = inspection.Find("hasSpeaker");
    if (element == "fwBlob" && speaker != nullptr && speaker->value.front() == '1')
    {
        return {Severity::Warning, "is a user's model",
                "The computer answers to that user only, whoever has no model of their own.",
                "Name the language's own firmware model.", false};
    }
    return {Severity::Good, fmt::format("is a model of the stand-in engine ({})", FileKindName(inspection.kind)), {}, {}, false};
}

ModelVerdict CheckModelsAgree(const Inspection* keyphrase, const Inspection* acoustic, const Inspection* population)
{
    const auto ofPhrase = States(keyphrase);
    const auto ofAcoustic = States(acoustic);
    const auto ofPopulation = States(population);
    if (!ofAcoustic.empty() && !ofPopulation.empty() && ofAcoustic != ofPopulation)
    {
        return {Severity::Error,
                fmt::format("acoustic model and population are of different phrases: {} and {} states.",
                            fmt::join(ofAcoustic, "/"), fmt::join(ofPopulation, "/")),
                "The stand-in engine refuses to enroll with them.", "Use the files of one training together.", true};
    }
    if (!ofAcoustic.empty() && !ofPhrase.empty() && ofAcoustic != ofPhrase)
    {
        return {Severity::Warning,
                fmt::format("key-phrase model and acoustic model are of different phrases: {} and {} states.",
                            fmt::join(ofPhrase, "/"), fmt::join(ofAcoustic, "/")),
                "A take that is verified is not the one that can be enrolled.", "Use the files of one training together.", false};
    }
    const std::array models{keyphrase, acoustic, population};
    const bool someForeign = std::any_of(models.begin(), models.end(), [](const Inspection* own) {
        return own != nullptr && own->kind != FileKind::Empty && IsOfAnotherEngine(*own);
    });
    if (someForeign && (!ofPhrase.empty() || !ofAcoustic.empty() || !ofPopulation.empty()))
    {
        return {Severity::Warning, "some models are of the stand-in engine, others are not.",
                "No engine understands all of them.", "Use the files of one engine together.", false};
    }
    return {};
}

} // namespace velox::console
