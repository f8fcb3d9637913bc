// Defines what the public headers declare, so that the compiler emits every symbol that they export.
#include "VeloxHwKwsImpl.h"

namespace KeywordDetectorAdapterImplementation
{

void AdapterCustomDeleter::operator()(void*)
{
}

std::unique_ptr<IVeloxKeywordDetectorAdapterImpl, AdapterCustomDeleter> CreateKeywordDetectorAdapterImpl(
    IVeloxKeywordDetectorLogger*, const std::string&, const std::string&, GUID)
{
    return {};
}

std::unique_ptr<IVeloxWovWrapper, AdapterCustomDeleter> CreateWovWrapper(EnrollmentParameters*, VELOX_WOV_DETECTION_PARAMETERS,
                                                                         IVeloxKeywordDetectorLogger*, int, std::string&)
{
    return {};
}

} // namespace KeywordDetectorAdapterImplementation
