#include "library/configuration/LanguageElement.h"

#include "library/configuration/ConfigurationDocument.h"

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

tinyxml2::XMLError QueryLanguageId(const tinyxml2::XMLElement& element, unsigned int* id)
{
    const tinyxml2::XMLAttribute* attribute = element.FindAttribute("id");
    return attribute == nullptr ? tinyxml2::XML_NO_ATTRIBUTE : attribute->QueryUnsignedValue(id);
}

HRESULT LookUpLanguage(tinyxml2::XMLDocument* document, const std::string& configurationFilePath, uint16_t languageId,
                       std::string* directory, const tinyxml2::XMLElement** language, IVeloxKeywordDetectorLogger* logger,
                       const LookupLines& lines)
{
    const tinyxml2::XMLElement* root = nullptr;
    if (FAILED(LoadDocument(document, configurationFilePath, logger, lines.loadFailedFormat)) ||
        FAILED(GetRoot(*document, &root, logger, lines.missingRootLine)) ||
        FAILED(GetRootAttribute(*root, "directory", directory, logger, lines.missingDirectoryLine)))
    {
        return E_FAIL;
    }

    *language = nullptr;
    for (const auto* element = root->FirstChildElement(); element != nullptr; element = element->NextSiblingElement())
    {
        unsigned int id = 0;
        if (const tinyxml2::XMLError status = QueryLanguageId(*element, &id); status != tinyxml2::XML_SUCCESS)
        {
            logger->LogFormat(Failure, Internals, lines.invalidIdFormat, static_cast<int>(status));
            return E_FAIL;
        }
        if (id == languageId)
        {
            *language = element;
            break;
        }
    }
    return S_OK;
}

HRESULT GetFileName(const tinyxml2::XMLElement& language, const FileElement& element, std::string* fileName,
                    IVeloxKeywordDetectorLogger* logger)
{
    const tinyxml2::XMLElement* child = language.FirstChildElement(element.name);
    if (child == nullptr)
    {
        logger->Log(Failure, Internals, element.missingElementLine);
        return E_FAIL;
    }
    const char* text = child->GetText();
    if (text == nullptr)
    {
        logger->Log(Failure, Internals, element.missingFileNameLine);
        return E_FAIL;
    }
    *fileName = text;
    return S_OK;
}
