#include "tests/support/ReaderOperations.h"

#include <algorithm>

ReaderOutputs::~ReaderOutputs()
{
    delete[] model;
}

bool ReaderOutputs::Untouched() const
{
    return count == Mark && std::all_of(ids.begin(), ids.end(), [](uint16_t id) { return id == Mark; }) && supported &&
           constraints == "mark" && enrollment.acousticModel == nullptr && enrollment.znormPopulation == nullptr &&
           enrollment.keyphraseModel == nullptr && enrollment.reservedBlob == nullptr && model == nullptr && modelSize == Mark &&
           detection.preDefinedKpdSensitivity == Mark && detection.userDefinedKpdSensitivity == Mark &&
           detection.qualityThreshold == Mark;
}

const std::vector<ReaderOperation>& ReaderOperations()
{
    static const std::vector<ReaderOperation> operations{
        {"GetLanguagesCount",
         [](ConfigurationReader& reader, uint16_t, ReaderOutputs* outputs) {
             return reader.GetLanguagesCount(&outputs->count);
         }},
        {"GetLanguagesIds",
         [](ConfigurationReader& reader, uint16_t, ReaderOutputs* outputs) {
             outputs->ids.assign(outputs->languageRoom, ReaderOutputs::Mark);
             uint16_t* ids = outputs->ids.data();
             return reader.GetLanguagesIds(&ids);
         }},
        {"IsLanguageSupported",
         [](ConfigurationReader& reader, uint16_t languageId, ReaderOutputs* outputs) {
             return reader.IsLanguageSupported(languageId, &outputs->supported);
         }},
        {"GetPlatformConstraints",
         [](ConfigurationReader& reader, uint16_t, ReaderOutputs* outputs) {
             return reader.GetPlatformConstraints(&outputs->constraints);
         }},
        {"GetEnrollmentParameters",
         [](ConfigurationReader& reader, uint16_t languageId, ReaderOutputs* outputs) {
             return reader.GetEnrollmentParameters(languageId, &outputs->enrollment);
         },
         true},
        {"GetPredefinedModel",
         [](ConfigurationReader& reader, uint16_t languageId, ReaderOutputs* outputs) {
             return reader.GetPredefinedModel(languageId, &outputs->model, &outputs->modelSize);
         },
         true},
        {"GetDetectionParameters",
         [](ConfigurationReader& reader, uint16_t languageId, ReaderOutputs* outputs) {
             return reader.GetDetectionParameters(languageId, &outputs->detection);
         },
         true}};
    return operations;
}
