#include "library/configuration/ConfigurationReader.h"
#include "library/configuration/LanguageElement.h"

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

namespace
{

constexpr const char* QueryFailed = "[GetDetectionParameters] Failed to query attribute. XML parser status: %d.";

constexpr LookupLines Lines{"[GetDetectionParameters] Failed to load configuration file: %s. Status: %s.",
                            "[GetDetectionParameters] Failed to load root element of DOM.",
                            "[GetDetectionParameters] Failed to get directory attribute.", QueryFailed};

constexpr FileElement PredefinedSensitivity{"preDefinedKpdSensitivity",
                                            "[GetDetectionParameters] Failed to get predefined kpd sensitivity XML element.",
                                            "[GetDetectionParameters] Failed to get predefined kpd sensitivity file name."};
constexpr FileElement UserDefinedSensitivity{"userDefinedKpdSensitivity",
                                             "[GetDetectionParameters] Failed to get user defined kpd sensitivity XML element.",
                                             "[GetDetectionParameters] Failed to get user defined kpd sensitivity file name."};

tinyxml2::XMLError QueryQualityThreshold(const tinyxml2::XMLElement& language, int* threshold)
{
    const tinyxml2::XMLAttribute* attribute = language.FindAttribute("qualityThreshold");
    return attribute == nullptr ? tinyxml2::XML_NO_ATTRIBUTE : attribute->QueryIntValue(threshold);
}

} // namespace

HRESULT ConfigurationReader::GetDetectionParameters(uint16_t languageId, VELOX_WOV_DETECTION_PARAMETERS* parameters)
{
    LanguageEntry language;
    if (const HRESULT result = LookUpLanguage(configurationFilePath, languageId, Lines, logger, &language);
        FAILED(result) || language.element == nullptr)
    {
        return result;
    }

    int qualityThreshold = 0;
    if (const auto status = QueryQualityThreshold(*language.element, &qualityThreshold); status != tinyxml2::XML_SUCCESS)
    {
        logger->LogFormat(Failure, Internals, QueryFailed, static_cast<int>(status));
        return E_FAIL;
    }
    parameters->qualityThreshold = qualityThreshold;

    std::string fileName;
    const auto readThreshold = [&](int32_t* value) {
        const HRESULT result = ReadThresholdFile(language.directory, fileName, value);
        if (FAILED(result))
        {
            logger->Log(Failure, Internals, "[GetDetectionParameters] Failed to read threshold file.");
        }
        return result;
    };
    if (FAILED(GetFileName(language, PredefinedSensitivity, logger, &fileName)) ||
        FAILED(readThreshold(&parameters->preDefinedKpdSensitivity)))
    {
        return E_FAIL;
    }
    if (FAILED(GetFileName(language, UserDefinedSensitivity, logger, &fileName)) ||
        FAILED(readThreshold(&parameters->userDefinedKpdSensitivity)))
    {
        return E_FAIL;
    }
    // Kept: the user-defined file is read once more and the value dropped, so the operation fails when the file went away.
    int32_t dropped = 0;
    return readThreshold(&dropped);
}
