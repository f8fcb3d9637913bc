#include "IVeloxWovWrapper.h"

namespace KeywordDetectorAdapterImplementation
{

std::unique_ptr<IVeloxWovWrapper, AdapterCustomDeleter> CreateWovWrapper(EnrollmentParameters*, VELOX_WOV_DETECTION_PARAMETERS,
                                                                         IVeloxKeywordDetectorLogger*, int, std::string&)
{
    return nullptr;
}

} // namespace KeywordDetectorAdapterImplementation
