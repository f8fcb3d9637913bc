#include "library/configuration/ConfigurationDocument.h"
#include "library/configuration/ConfigurationReader.h"
#include "library/configuration/LanguageElement.h"

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

HRESULT ConfigurationReader::GetLanguagesIds(uint16_t** languageIds, uint32_t room)
{
    tinyxml2::XMLDocument document;
    const tinyxml2::XMLElement* root = nullptr;
    if (FAILED(LoadDocument(&document, configurationFilePath, logger,
                            "[GetLanguagesIds] Failed to load configuration file: %s. Status: %s.")) ||
        FAILED(GetRoot(document, &root, logger, "[GetLanguagesIds] Failed to load root element of DOM.")))
    {
        return E_FAIL;
    }

    uint32_t position = 0;
    for (const auto* element = root->FirstChildElement(); element != nullptr && position < room;
         element = element->NextSiblingElement())
    {
        unsigned int id = 0;
        if (const tinyxml2::XMLError status = QueryLanguageId(*element, &id); status != tinyxml2::XML_SUCCESS)
        {
            logger->LogFormat(Failure, Internals,
                              "[GetLanguagesIds] Failed to query ID attribute for language: %d. XML parser status: %d.",
                              static_cast<int>(position + 1), static_cast<int>(status));
            return E_FAIL;
        }
        (*languageIds)[position] = static_cast<uint16_t>(id);
        ++position;
    }
    return S_OK;
}
