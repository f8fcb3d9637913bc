#include "library/configuration/ConfigurationDocument.h"
#include "library/configuration/ConfigurationReader.h"

#include <fstream>

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

HRESULT ConfigurationReader::GetPlatformConstraints(std::string* constraints)
{
    tinyxml2::XMLDocument document;
    const tinyxml2::XMLElement* root = nullptr;
    std::string path;
    if (FAILED(LoadDocument(&document, configurationFilePath, logger,
                            "[GetPlatformConstraints] Failed to load configuration file: %s. Status: %s.")) ||
        FAILED(GetRoot(document, &root, logger, "[GetPlatformConstraints] Failed to load root element of DOM.")) ||
        FAILED(GetRootAttribute(*root, "constraints", &path, logger,
                                "[GetPlatformConstraints] Failed to get constraints attribute.")))
    {
        return E_FAIL;
    }

    std::ifstream file(path);
    if (!file.is_open())
    {
        logger->Log(Failure, Internals, "[GetPlatformConstraints] Failed to open platform constraints file.");
        return E_FAIL;
    }
    // The outcome of the read is not examined: an empty file gives an empty line, whatever stood there before.
    std::getline(file, *constraints);
    return S_OK;
}
