#include "library/wovwrapper/VeloxWovWrapper.h"

namespace KeywordDetectorAdapterImplementation
{

std::unique_ptr<IVeloxWovWrapper, AdapterCustomDeleter> CreateWovWrapper(EnrollmentParameters* parameters,
                                                                         VELOX_WOV_DETECTION_PARAMETERS detectionParameters,
                                                                         IVeloxKeywordDetectorLogger* logger, int sdkLogLevel,
                                                                         std::string& platformConstraints)
{
    auto wrapper = std::make_unique<VeloxWovWrapper>(parameters, detectionParameters, logger, sdkLogLevel, platformConstraints);
    // A frame-size query that fails still gives a wrapper; it was logged.
    wrapper->Initialize();
    return std::unique_ptr<IVeloxWovWrapper, AdapterCustomDeleter>(wrapper.release());
}

} // namespace KeywordDetectorAdapterImplementation
