#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"

#include <new>

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

namespace
{

constexpr int32_t MaxLoggerLevel = 5;

} // namespace

VeloxKeywordDetectorAdapterImpl::VeloxKeywordDetectorAdapterImpl(IVeloxKeywordDetectorLogger* hostLogger,
                                                                 const std::string& configurationFilePath,
                                                                 const std::string& version, GUID detector)
    : logger(hostLogger), detectorId(detector)
{
    // Kept: a reader that could not be allocated is not tested for.
    configurationReader.reset(new (std::nothrow) ConfigurationReader(configurationFilePath, logger));

    uint32_t level = NoLogs;
    configurationReader->GetLoggerSeverityLevelFromRegistry(&level, L"LoggerLevel", MaxLoggerLevel);
    bool logToFile = false;
    configurationReader->GetLogToFileFromReg(&logToFile);
    logger->SetLevel(level);
    logger->SetLogToFile(logToFile);
    logger->LogFormat(Information, Adapter, "[VeloxKeywordDetectorAdapter] Constructor - Version: %s.", version.c_str());
}

VeloxKeywordDetectorAdapterImpl::~VeloxKeywordDetectorAdapterImpl()
{
    try
    {
        logger->Log(Information, Adapter, "[VeloxKeywordDetectorAdapter] Destructor.");
    }
    catch (...)
    {
        // An exception cannot leave a destructor: without memory for the text, or with a logger that throws, the line is lost.
    }
}

uint32_t VeloxKeywordDetectorAdapterImpl::ArmedThreshold(const VELOX_WOV_DETECTION_PARAMETERS& parameters) const
{
    return static_cast<uint32_t>(userModelArmed ? parameters.userDefinedKpdSensitivity : parameters.preDefinedKpdSensitivity);
}
