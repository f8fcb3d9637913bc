// What callers and firmware know of the library's records and objects, with the sizes and offsets of Visual Studio's 64-bit ABI.
// Compiling this file is the test; access control is off, so that private members can be named.
#include "VeloxHwKwsImpl.h"
#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"
#include "library/configuration/EnrollmentParameters.h"

#include <cstddef>

// Objects with virtual functions have defined offsets in this ABI, though the language does not promise them.
#pragma clang diagnostic ignored "-Winvalid-offsetof"

#define EXPECT_MEMBER(Record, member, offset, size)                                                                              \
    static_assert(offsetof(Record, member) == (offset) && sizeof(Record::member) == (size), #Record "::" #member)

// The interfaces are one pointer to their virtual table each.
static_assert(sizeof(KeywordDetectorAdapterImplementation::IVeloxKeywordDetectorAdapterImpl) == 8);
static_assert(sizeof(KeywordDetectorAdapterImplementation::IVeloxWovWrapper) == 8);
static_assert(sizeof(IVeloxKeywordDetectorLogger) == 8);
static_assert(sizeof(KeywordDetectorAdapterImplementation::AdapterCustomDeleter) == 1);

static_assert(sizeof(KeywordSelector) == 8 && alignof(KeywordSelector) == 4);
EXPECT_MEMBER(KeywordSelector, keywordId, 0, 4);
EXPECT_MEMBER(KeywordSelector, languageId, 4, 2);

static_assert(sizeof(VELOX_WOV_DETECTION_PARAMETERS) == 12 && alignof(VELOX_WOV_DETECTION_PARAMETERS) == 4);
EXPECT_MEMBER(VELOX_WOV_DETECTION_PARAMETERS, preDefinedKpdSensitivity, 0, 4);
EXPECT_MEMBER(VELOX_WOV_DETECTION_PARAMETERS, userDefinedKpdSensitivity, 4, 4);
EXPECT_MEMBER(VELOX_WOV_DETECTION_PARAMETERS, qualityThreshold, 8, 4);

static_assert(sizeof(DetectionResult) == 60);
EXPECT_MEMBER(DetectionResult, Size, 0, 4);
EXPECT_MEMBER(DetectionResult, PatternType, 4, 16);
EXPECT_MEMBER(DetectionResult, KeywordStart, 28, 8);
EXPECT_MEMBER(DetectionResult, KeywordEnd, 36, 8);
EXPECT_MEMBER(DetectionResult, KeywordIdFw, 48, 2);
EXPECT_MEMBER(DetectionResult, KpdScore, 52, 2);

static_assert(sizeof(VeloxKeywordDetectorAdapterImpl) == 48);
EXPECT_MEMBER(VeloxKeywordDetectorAdapterImpl, logger, 8, 8);
EXPECT_MEMBER(VeloxKeywordDetectorAdapterImpl, configurationReader, 16, 8);
EXPECT_MEMBER(VeloxKeywordDetectorAdapterImpl, userModelArmed, 24, 1);
EXPECT_MEMBER(VeloxKeywordDetectorAdapterImpl, armedLanguageId, 26, 2);
EXPECT_MEMBER(VeloxKeywordDetectorAdapterImpl, detectorId, 28, 16);

static_assert(sizeof(ConfigurationReader) == 48);
EXPECT_MEMBER(ConfigurationReader, configurationFilePath, 8, 32);
EXPECT_MEMBER(ConfigurationReader, logger, 40, 8);

static_assert(sizeof(EnrollmentParameters) == 40);
EXPECT_MEMBER(EnrollmentParameters, acousticModel, 8, 8);
EXPECT_MEMBER(EnrollmentParameters, znormPopulation, 16, 8);
EXPECT_MEMBER(EnrollmentParameters, keyphraseModel, 24, 8);
EXPECT_MEMBER(EnrollmentParameters, reservedBlob, 32, 8);
