#include "tests/support/PrivateAccess.h"

// Access is not checked in an explicit instantiation: each one below hands a member's address to the friend function that it
// defines.
template <typename Tag, auto Member>
struct Expose
{
    friend auto MemberOf(Tag)
    {
        return Member;
    }
};

#define EXPOSE(Class, Member)                                                                                                    \
    struct Class##Member                                                                                                         \
    {                                                                                                                            \
        friend auto MemberOf(Class##Member);                                                                                     \
    };                                                                                                                           \
    template struct Expose<Class##Member, &Class::Member>

EXPOSE(ConfigurationReader, LoadFile);
EXPOSE(ConfigurationReader, ReadThresholdFile);
EXPOSE(VeloxKeywordDetectorAdapterImpl, logger);
EXPOSE(VeloxKeywordDetectorAdapterImpl, configurationReader);
EXPOSE(VeloxKeywordDetectorAdapterImpl, userModelArmed);
EXPOSE(VeloxKeywordDetectorAdapterImpl, armedLanguageId);
EXPOSE(VeloxKeywordDetectorAdapterImpl, detectorId);
EXPOSE(VeloxWovWrapper, GetAudioFrameSize);
EXPOSE(VeloxWovWrapper, InitializeSession);
EXPOSE(VeloxWovWrapper, CloseSession);
EXPOSE(VeloxWovWrapper, FeedRecording);
EXPOSE(VeloxWovWrapper, GetScores);
EXPOSE(VeloxWovWrapper, GetVadQuality);
EXPOSE(VeloxWovWrapper, FeedRecordingsForEnrollment);
EXPOSE(VeloxWovWrapper, enrollmentParameters);
EXPOSE(VeloxWovWrapper, detectionParameters);
EXPOSE(VeloxWovWrapper, logger);
EXPOSE(VeloxWovWrapper, audioFrameSize);
EXPOSE(VeloxWovWrapper, platformConstraints);
EXPOSE(VeloxWovWrapper, sdkLogLevel);

namespace
{

template <typename Object, typename Member>
std::size_t Offset(const Object& object, Member Object::*member)
{
    return static_cast<std::size_t>(reinterpret_cast<const char*>(&(object.*member)) - reinterpret_cast<const char*>(&object));
}

} // namespace

namespace PrivateAccess
{

HRESULT LoadFile(ConfigurationReader& reader, const std::string& directory, const std::string& fileName, uint8_t** data,
                 uint32_t* size)
{
    return (reader.*MemberOf(ConfigurationReaderLoadFile{}))(directory, fileName, data, size);
}

HRESULT ReadThresholdFile(ConfigurationReader& reader, const std::string& directory, const std::string& fileName, int32_t* value)
{
    return (reader.*MemberOf(ConfigurationReaderReadThresholdFile{}))(directory, fileName, value);
}

bool UserModelArmed(const VeloxKeywordDetectorAdapterImpl& adapter)
{
    return adapter.*MemberOf(VeloxKeywordDetectorAdapterImpluserModelArmed{});
}

uint16_t ArmedLanguageId(const VeloxKeywordDetectorAdapterImpl& adapter)
{
    return adapter.*MemberOf(VeloxKeywordDetectorAdapterImplarmedLanguageId{});
}

std::array<std::size_t, 5> AdapterFieldOffsets(const VeloxKeywordDetectorAdapterImpl& adapter)
{
    return {Offset(adapter, MemberOf(VeloxKeywordDetectorAdapterImpllogger{})),
            Offset(adapter, MemberOf(VeloxKeywordDetectorAdapterImplconfigurationReader{})),
            Offset(adapter, MemberOf(VeloxKeywordDetectorAdapterImpluserModelArmed{})),
            Offset(adapter, MemberOf(VeloxKeywordDetectorAdapterImplarmedLanguageId{})),
            Offset(adapter, MemberOf(VeloxKeywordDetectorAdapterImpldetectorId{}))};
}

int32_t AudioFrameSize(const VeloxWovWrapper& wrapper)
{
    return wrapper.*MemberOf(VeloxWovWrapperaudioFrameSize{});
}

std::array<std::size_t, 6> WrapperFieldOffsets(const VeloxWovWrapper& wrapper)
{
    return {Offset(wrapper, MemberOf(VeloxWovWrapperenrollmentParameters{})),
            Offset(wrapper, MemberOf(VeloxWovWrapperdetectionParameters{})),
            Offset(wrapper, MemberOf(VeloxWovWrapperlogger{})),
            Offset(wrapper, MemberOf(VeloxWovWrapperaudioFrameSize{})),
            Offset(wrapper, MemberOf(VeloxWovWrapperplatformConstraints{})),
            Offset(wrapper, MemberOf(VeloxWovWrappersdkLogLevel{}))};
}

} // namespace PrivateAccess

uint32_t OpenWovWrapper::GetAudioFrameSize(int32_t* frameSize)
{
    return (this->*MemberOf(VeloxWovWrapperGetAudioFrameSize{}))(frameSize);
}

uint32_t OpenWovWrapper::InitializeSession(uint32_t* session)
{
    return (this->*MemberOf(VeloxWovWrapperInitializeSession{}))(session);
}

void OpenWovWrapper::CloseSession(const uint32_t* session)
{
    (this->*MemberOf(VeloxWovWrapperCloseSession{}))(session);
}

uint32_t OpenWovWrapper::FeedRecording(uint32_t session, IMFMediaBuffer* recording, int32_t keywordEndBytePos, bool scoring,
                                       bool* keywordDetected)
{
    return (this->*MemberOf(VeloxWovWrapperFeedRecording{}))(session, recording, keywordEndBytePos, scoring, keywordDetected);
}

uint32_t OpenWovWrapper::GetScores(uint32_t session, std::vector<float>& scores, bool* keywordDetected, uint64_t* frameCounter,
                                   float* bestScore)
{
    return (this->*MemberOf(VeloxWovWrapperGetScores{}))(session, scores, keywordDetected, frameCounter, bestScore);
}

uint32_t OpenWovWrapper::GetVadQuality(uint32_t session, int64_t* vadQualitySum, int32_t* vadQualityCount)
{
    return (this->*MemberOf(VeloxWovWrapperGetVadQuality{}))(session, vadQualitySum, vadQualityCount);
}

uint32_t OpenWovWrapper::FeedRecordingsForEnrollment(const uint32_t* session, IMFMediaBuffer** recordings,
                                                     uint32_t recordingsCount, const int32_t* keywordEndBytePositions)
{
    return (this->*MemberOf(VeloxWovWrapperFeedRecordingsForEnrollment{}))(session, recordings, recordingsCount,
                                                                           keywordEndBytePositions);
}
