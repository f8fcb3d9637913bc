#include "library/configuration/ConfigurationDocument.h"
#include "library/configuration/ConfigurationReader.h"

HRESULT ConfigurationReader::GetLanguagesCount(uint32_t* count)
{
    tinyxml2::XMLDocument document;
    const tinyxml2::XMLElement* root = nullptr;
    if (FAILED(LoadDocument(&document, configurationFilePath, logger,
                            "[GetLanguagesCount] Failed to load configuration file: %s. Status: %s.")) ||
        FAILED(GetRoot(document, &root, logger, "[GetLanguagesCount] Failed to load root element of DOM.")))
    {
        return E_FAIL;
    }

    uint32_t languages = 0;
    for (const auto* element = root->FirstChildElement(); element != nullptr; element = element->NextSiblingElement())
    {
        ++languages;
    }
    *count = languages;
    return S_OK;
}
