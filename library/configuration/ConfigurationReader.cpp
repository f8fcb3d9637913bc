#include "library/configuration/ConfigurationReader.h"

ConfigurationReader::ConfigurationReader(const std::string& filePath, IVeloxKeywordDetectorLogger* hostLogger)
    : configurationFilePath(filePath), logger(hostLogger)
{
}
