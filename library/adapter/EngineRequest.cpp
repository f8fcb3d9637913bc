#include "library/adapter/EngineRequest.h"

#include <exception>
#include <new>

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

namespace
{

constexpr uint32_t DefaultEngineLogLevel = 3;
constexpr int32_t MaxEngineLogLevel = 6;

} // namespace

HRESULT OpenEngineRequest(ConfigurationReader* reader, IVeloxKeywordDetectorLogger* logger, uint16_t languageId,
                          const EngineRequestLines& lines, EngineRequest* request)
{
    request->parameters.reset(new (std::nothrow) EnrollmentParameters);
    if (request->parameters == nullptr)
    {
        logger->Log(Error, Adapter, lines.parametersNotCreated);
        return E_FAIL;
    }
    if (const HRESULT result = reader->GetEnrollmentParameters(languageId, request->parameters.get()); FAILED(result))
    {
        logger->LogWithStatus(Error, Adapter, lines.enrollmentParametersFailed, result);
        return E_FAIL;
    }

    VELOX_WOV_DETECTION_PARAMETERS detectionParameters{};
    if (const HRESULT result = reader->GetDetectionParameters(languageId, &detectionParameters); FAILED(result))
    {
        logger->LogWithStatus(Error, Adapter, lines.detectionParametersFailed, result);
        return E_FAIL;
    }

    std::string constraints;
    if (const HRESULT result = reader->GetPlatformConstraints(&constraints); FAILED(result))
    {
        logger->LogWithStatus(Error, Adapter, lines.constraintsFailed, result);
        return E_FAIL;
    }

    uint32_t level = DefaultEngineLogLevel;
    if (FAILED(reader->GetLoggerSeverityLevelFromRegistry(&level, L"SDKLoggerLevel", MaxEngineLogLevel)))
    {
        logger->LogFormat(Warning, Adapter, lines.logLevelFallbackFormat, static_cast<int>(level));
    }

    try
    {
        request->wrapper = KeywordDetectorAdapterImplementation::CreateWovWrapper(request->parameters.get(), detectionParameters,
                                                                                  logger, static_cast<int>(level), constraints);
    }
    catch (const std::exception&)
    {
        logger->Log(Error, Adapter, lines.wrapperNotCreated);
        return E_FAIL;
    }
    return S_OK;
}
