#include "library/configuration/ConfigurationReader.h"
#include "library/configuration/LanguageElement.h"

namespace
{

constexpr LookupLines Lines{"[GetPredefinedModel] Failed to load configuration file: %s. Status: %s.",
                            "[GetPredefinedModel] Failed to load root element of DOM.",
                            "[GetPredefinedModel] Failed to get directory attribute.",
                            "[GetPredefinedModel] Failed to query ID attribute. XML parser status: %d."};

constexpr FileElement FirmwareModel{"fwBlob", "[GetPredefinedModel] Failed to get predefined model XML element.",
                                    "[GetPredefinedModel] Failed to get predefined model file name."};

} // namespace

HRESULT ConfigurationReader::GetPredefinedModel(uint16_t languageId, uint8_t** data, uint32_t* size)
{
    LanguageEntry language;
    if (const HRESULT result = LookUpLanguage(configurationFilePath, languageId, Lines, logger, &language);
        FAILED(result) || language.element == nullptr)
    {
        return result;
    }

    std::string fileName;
    if (FAILED(GetFileName(language, FirmwareModel, logger, &fileName)))
    {
        return E_FAIL;
    }
    return LoadFile(language.directory, fileName, data, size);
}
