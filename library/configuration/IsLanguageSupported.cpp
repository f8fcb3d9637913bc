#include "library/configuration/ConfigurationDocument.h"
#include "library/configuration/ConfigurationReader.h"
#include "library/configuration/LanguageElement.h"

HRESULT ConfigurationReader::IsLanguageSupported(uint16_t languageId, bool* supported)
{
    tinyxml2::XMLDocument document;
    if (FAILED(LoadDocument(&document, configurationFilePath, logger,
                            "[IsLanguageSupported] Failed to load configuration file: %s. Status: %s.")))
    {
        return E_FAIL;
    }

    *supported = false;
    const tinyxml2::XMLElement* root = document.FirstChildElement();
    const tinyxml2::XMLElement* element = root == nullptr ? nullptr : root->FirstChildElement();
    for (; element != nullptr && !*supported; element = element->NextSiblingElement())
    {
        unsigned int id = 0;
        *supported = QueryLanguageId(*element, &id) == tinyxml2::XML_SUCCESS && id == languageId;
    }
    return S_OK;
}
