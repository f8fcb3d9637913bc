#include "library/configuration/ConfigurationDocument.h"

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

HRESULT LoadDocument(tinyxml2::XMLDocument* document, const std::string& path, IVeloxKeywordDetectorLogger* logger,
                     const char* failureFormat)
{
    if (document->LoadFile(path.c_str()) != tinyxml2::XML_SUCCESS)
    {
        logger->LogFormat(Failure, Internals, failureFormat, path.c_str(), document->ErrorName());
        return E_FAIL;
    }
    return S_OK;
}

HRESULT GetRoot(const tinyxml2::XMLDocument& document, const tinyxml2::XMLElement** root, IVeloxKeywordDetectorLogger* logger,
                const char* failureLine)
{
    *root = document.FirstChildElement();
    if (*root == nullptr)
    {
        logger->LogFormat(Failure, Internals, failureLine);
        return E_FAIL;
    }
    return S_OK;
}

HRESULT GetRootAttribute(const tinyxml2::XMLElement& root, const char* name, std::string* value,
                         IVeloxKeywordDetectorLogger* logger, const char* failureLine)
{
    const char* text = root.Attribute(name);
    if (text == nullptr)
    {
        logger->Log(Failure, Internals, failureLine);
        return E_FAIL;
    }
    *value = text;
    return S_OK;
}
