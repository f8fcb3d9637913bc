#include "library/configuration/ConfigurationReader.h"
#include "library/configuration/LanguageElement.h"

namespace
{

constexpr LookupLines Lines{"[GetEnrollmentParameters] Failed to load configuration file: %s. Status: %s.",
                            "[GetEnrollmentParameters] Failed to load root element of DOM.",
                            "[GetEnrollmentParameters] Failed to get directory attribute.",
                            "[GetEnrollmentParameters] Failed to query ID attribute. XML parser status: %d."};

constexpr FileElement KeyphraseModel{"keyphraseModel", "[GetEnrollmentParameters] Failed to get keyphrase model XML element.",
                                     "[GetEnrollmentParameters] Failed to get keyphrase model file name."};
constexpr FileElement AcousticModel{"acousticModel", "[GetEnrollmentParameters] Failed to get acoustic model XML element.",
                                    "[GetEnrollmentParameters] Failed to get acoustic model file name."};
constexpr FileElement ZnormPopulation{"znormPopulation", "[GetEnrollmentParameters] Failed to get znorm population XML element.",
                                      "[GetEnrollmentParameters] Failed to get znorm population file name."};

} // namespace

HRESULT ConfigurationReader::GetEnrollmentParameters(uint16_t languageId, EnrollmentParameters* parameters)
{
    LanguageEntry language;
    if (const HRESULT result = LookUpLanguage(configurationFilePath, languageId, Lines, logger, &language);
        FAILED(result) || language.element == nullptr)
    {
        return result;
    }

    std::string fileName;
    if (FAILED(GetFileName(language, KeyphraseModel, logger, &fileName)))
    {
        return E_FAIL;
    }
    LoadFile(language.directory, fileName, &parameters->keyphraseModel, nullptr);

    if (FAILED(GetFileName(language, AcousticModel, logger, &fileName)))
    {
        return E_FAIL;
    }
    LoadFile(language.directory, fileName, &parameters->acousticModel, nullptr);

    if (FAILED(GetFileName(language, ZnormPopulation, logger, &fileName)))
    {
        return E_FAIL;
    }
    return LoadFile(language.directory, fileName, &parameters->znormPopulation, nullptr);
}
