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
EXPOSE(VeloxKeywordDetectorAdapterImpl, CheckIStreamForUserModel);
EXPOSE(VeloxKeywordDetectorAdapterImpl, GetUserModelFromIStream);
EXPOSE(VeloxKeywordDetectorAdapterImpl, WriteModelToIStream);
EXPOSE(VeloxKeywordDetectorAdapterImpl, logger);
EXPOSE(VeloxKeywordDetectorAdapterImpl, configurationReader);
EXPOSE(VeloxKeywordDetectorAdapterImpl, userModelArmed);
EXPOSE(VeloxKeywordDetectorAdapterImpl, armedLanguageId);
EXPOSE(VeloxKeywordDetectorAdapterImpl, detectorId);
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

HRESULT CheckIStreamForUserModel(VeloxKeywordDetectorAdapterImpl& adapter, IStream* stream)
{
    return (adapter.*MemberOf(VeloxKeywordDetectorAdapterImplCheckIStreamForUserModel{}))(stream);
}

HRESULT GetUserModelFromIStream(VeloxKeywordDetectorAdapterImpl& adapter, IStream* stream, uint8_t*& data, uint32_t& size)
{
    return (adapter.*MemberOf(VeloxKeywordDetectorAdapterImplGetUserModelFromIStream{}))(stream, data, size);
}

HRESULT WriteModelToIStream(VeloxKeywordDetectorAdapterImpl& adapter, const uint8_t* data, uint32_t size, IStream* stream)
{
    return (adapter.*MemberOf(VeloxKeywordDetectorAdapterImplWriteModelToIStream{}))(data, size, stream);
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
