#pragma once

// Everything that a caller of VeloxHwKwsImpl.dll needs.
#include "AdapterCustomDeleter.h"
#include "DetectionResult.h"
#include "IVeloxKeywordDetectorAdapterImpl.h"
#include "IVeloxKeywordDetectorLogger.h"
#include "IVeloxWovWrapper.h"
#include "KeywordSelector.h"
#include "VeloxWovDetectionParameters.h"
