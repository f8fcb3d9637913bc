// What callers and firmware know of the library's records and objects. The compiler writes sizes and offsets into its assembly,
// as texts; access control is off, so that private members can be named.
#include "VeloxHwKwsImpl.h"
#include "library/adapter/ArmingPattern.h"
#include "library/adapter/VeloxKeywordDetectorAdapterImpl.h"
#include "library/configuration/EnrollmentParameters.h"
#include "oemadapter/windows/EventDetectorOemAdapter.h"
#include "oemadapter/windows/KeywordDetectorOemAdapter.h"

#include <cstddef>

// Objects with virtual functions have defined offsets in both ABIs, though the language does not promise them.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

#define RECORD(Record)                                                                                                           \
    asm volatile(".ascii \"record " #Record " has %c0 bytes, aligned to %c1\"" ::"i"(sizeof(Record)), "i"(alignof(Record)))
#define MEMBER(Record, member)                                                                                                   \
    asm volatile(".ascii \"member " #Record "::" #member " lies at %c0, %c1 bytes\"" ::"i"(offsetof(Record, member)),            \
                 "i"(sizeof(Record::member)))

using namespace KeywordDetectorAdapterImplementation;
using AdapterOwner = std::unique_ptr<IVeloxKeywordDetectorAdapterImpl, AdapterCustomDeleter>;

void PublicRecords()
{
    // The interfaces are one pointer to their virtual table each, and so is what owns one.
    RECORD(IVeloxKeywordDetectorAdapterImpl);
    RECORD(IVeloxWovWrapper);
    RECORD(IVeloxKeywordDetectorLogger);
    RECORD(AdapterCustomDeleter);
    RECORD(AdapterOwner);

    RECORD(KeywordSelector);
    MEMBER(KeywordSelector, keywordId);
    MEMBER(KeywordSelector, languageId);

    RECORD(VELOX_WOV_DETECTION_PARAMETERS);
    MEMBER(VELOX_WOV_DETECTION_PARAMETERS, preDefinedKpdSensitivity);
    MEMBER(VELOX_WOV_DETECTION_PARAMETERS, userDefinedKpdSensitivity);
    MEMBER(VELOX_WOV_DETECTION_PARAMETERS, qualityThreshold);
}

void FirmwareBlocks()
{
    RECORD(DetectionResult);
    MEMBER(DetectionResult, Size);
    MEMBER(DetectionResult, PatternType);
    MEMBER(DetectionResult, KeywordStart);
    MEMBER(DetectionResult, KeywordEnd);
    MEMBER(DetectionResult, KeywordIdFw);
    MEMBER(DetectionResult, KpdScore);

    RECORD(ArmingPattern);
    MEMBER(ArmingPattern, Size);
    MEMBER(ArmingPattern, PatternType);
    MEMBER(ArmingPattern, Signature);
    MEMBER(ArmingPattern, KpdThreshold);
    MEMBER(ArmingPattern, Limit);
    MEMBER(ArmingPattern, Reserved1);
    MEMBER(ArmingPattern, Reserved2);
    MEMBER(ArmingPattern, ModelSize);
}

void OemAdapterRecords()
{
    RECORD(IKeywordDetectorOemAdapter);
    RECORD(IEventDetectorOemAdapter);

    RECORD(KEYWORDSELECTOR);
    MEMBER(KEYWORDSELECTOR, KeywordId);
    MEMBER(KEYWORDSELECTOR, LangId);

    RECORD(SOUNDDETECTOR_PATTERNHEADER);
    MEMBER(SOUNDDETECTOR_PATTERNHEADER, Size);
    MEMBER(SOUNDDETECTOR_PATTERNHEADER, PatternType);

    RECORD(DETECTIONEVENT);
    MEMBER(DETECTIONEVENT, EventId);
    MEMBER(DETECTIONEVENT, EventFeatures);
    MEMBER(DETECTIONEVENT, ProviderId);
    MEMBER(DETECTIONEVENT, DisplayName);
    MEMBER(DETECTIONEVENT, UserModelValid);

    RECORD(DETECTIONEVENTSELECTOR);
    MEMBER(DETECTIONEVENTSELECTOR, Event);
    MEMBER(DETECTIONEVENTSELECTOR, LangId);
    MEMBER(DETECTIONEVENTSELECTOR, UserId);
    MEMBER(DETECTIONEVENTSELECTOR, Armed);

    RECORD(EVENTACTION);
    MEMBER(EVENTACTION, EventActionType);
    MEMBER(EVENTACTION, EventActionContextType);
    MEMBER(EVENTACTION, EventActionContext);
}

void Objects()
{
    RECORD(VeloxKeywordDetectorAdapterImpl);
    MEMBER(VeloxKeywordDetectorAdapterImpl, logger);
    MEMBER(VeloxKeywordDetectorAdapterImpl, configurationReader);
    MEMBER(VeloxKeywordDetectorAdapterImpl, userModelArmed);
    MEMBER(VeloxKeywordDetectorAdapterImpl, armedLanguageId);
    MEMBER(VeloxKeywordDetectorAdapterImpl, detectorId);

    RECORD(ConfigurationReader);
    MEMBER(ConfigurationReader, configurationFilePath);
    MEMBER(ConfigurationReader, logger);

    RECORD(EnrollmentParameters);
    MEMBER(EnrollmentParameters, acousticModel);
    MEMBER(EnrollmentParameters, znormPopulation);
    MEMBER(EnrollmentParameters, keyphraseModel);
    MEMBER(EnrollmentParameters, reservedBlob);
}
