#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"

namespace KeywordDetectorAdapterImplementation
{

std::unique_ptr<IVeloxKeywordDetectorAdapterImpl, AdapterCustomDeleter> CreateKeywordDetectorAdapterImpl(
    IVeloxKeywordDetectorLogger* logger, const std::string& configurationFilePath, const std::string& version, GUID detectorId)
{
    return std::unique_ptr<IVeloxKeywordDetectorAdapterImpl, AdapterCustomDeleter>(
        new VeloxKeywordDetectorAdapterImpl(logger, configurationFilePath, version, detectorId));
}

} // namespace KeywordDetectorAdapterImplementation
