#include "library/configuration/LanguageElement.h"

#include "library/configuration/ConfigurationDocument.h"

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

tinyxml2::XMLError QueryLanguageId(const tinyxml2::XMLElement& element, unsigned int* id)
{
    const tinyxml2::XMLAttribute* attribute = element.FindAttribute("id");
    return attribute == nullptr ? tinyxml2::XML_NO_ATTRIBUTE : attribute->QueryUnsignedValue(id);
}

HRESULT LookUpLanguage(const std::string& configurationFilePath, uint16_t languageId, const LookupLines& lines,
                       IVeloxKeywordDetectorLogger* logger, LanguageEntry* language)
{
    const tinyxml2::XMLElement* root = nullptr;
    if (FAILED(LoadDocument(&language->document, configurationFilePath, logger, lines.loadFailedFormat)) ||
        FAILED(GetRoot(language->document, &root, logger, lines.missingRootLine)) ||
        FAILED(GetRootAttribute(*root, "directory", &language->directory, logger, lines.missingDirectoryLine)))
    {
        return E_FAIL;
    }

    language->element = nullptr;
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
            language->element = element;
            break;
        }
    }
    return S_OK;
}

HRESULT GetFileName(const LanguageEntry& language, const FileElement& child, IVeloxKeywordDetectorLogger* logger,
                    std::string* fileName)
{
    const tinyxml2::XMLElement* element = language.element->FirstChildElement(child.name);
    if (element == nullptr)
    {
        logger->Log(Failure, Internals, child.missingElementLine);
        return E_FAIL;
    }
    const char* text = element->GetText();
    if (text == nullptr)
    {
        logger->Log(Failure, Internals, child.missingFileNameLine);
        return E_FAIL;
    }
    *fileName = text;
    return S_OK;
}
