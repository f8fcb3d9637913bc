#include "PrivateAccess.h"

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
    const auto offset = [&](auto member) {
        return static_cast<std::size_t>(reinterpret_cast<const char*>(&(adapter.*member)) -
                                        reinterpret_cast<const char*>(&adapter));
    };
    return {offset(MemberOf(VeloxKeywordDetectorAdapterImpllogger{})),
            offset(MemberOf(VeloxKeywordDetectorAdapterImplconfigurationReader{})),
            offset(MemberOf(VeloxKeywordDetectorAdapterImpluserModelArmed{})),
            offset(MemberOf(VeloxKeywordDetectorAdapterImplarmedLanguageId{})),
            offset(MemberOf(VeloxKeywordDetectorAdapterImpldetectorId{}))};
}

} // namespace PrivateAccess
