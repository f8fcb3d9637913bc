// The library's own path through the engine DLL: a language's models are written to disk, configured, and used.
#include "VeloxHwKwsImpl.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/support/PlatformObjects.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/TestConfiguration.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>

namespace LibraryOnRealTests
{

using namespace KeywordDetectorAdapterImplementation;
using namespace PlatformObjects;
using Tones = std::vector<std::size_t>;

constexpr uint16_t Language = 1033;
constexpr std::size_t HalfSecond = 8000;

std::string_view Text(const std::vector<uint8_t>& bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

class Library : public testing::Test
{
protected:
    Library()
    {
        configuration.WriteFile("kp_1033.bin", Text(firmwareModel));
        configuration.WriteFile("am_1033.bin", Text(velox::engine::WriteAcousticModel(TinyLanguage::Acoustic())));
        configuration.WriteFile("zn_1033.bin", Text(velox::engine::WritePopulation(TinyLanguage::Background())));
        configuration.WriteFile("fw_1033.bin", Text(firmwareModel));
        configuration.WriteFile("kpd_pre_1033.txt", "100");
        configuration.WriteFile("kpd_user_1033.txt", "100");
        adapter.reset(CreateKeywordDetectorAdapterImpl(&logger, configuration.Path(), "1", GUID{}).release());
    }

    HRESULT Verify(const std::vector<float>& samples)
    {
        return adapter->VerifyUserKeyword(nullptr, 1, Language, 0, Recording(samples).get());
    }

    /// The model that arms the DSP: what follows the block's header.
    std::vector<uint8_t> ArmedModel(IStream* stream)
    {
        constexpr std::size_t HeaderSize = 44;
        const KeywordSelector selector{1, Language};
        uint8_t* pattern = nullptr;
        EXPECT_EQ(adapter->BuildArmingPatternData(stream, &selector, 1, &pattern), S_OK);
        uint32_t size = 0;
        std::copy_n(pattern, sizeof(size), reinterpret_cast<uint8_t*>(&size));
        std::vector<uint8_t> model(pattern + HeaderSize, pattern + size);
        CoTaskMemFree(pattern);
        return model;
    }

    TestConfiguration configuration;
    RecordingLogger logger;
    std::unique_ptr<IVeloxKeywordDetectorAdapterImpl> adapter;
    const std::vector<uint8_t> firmwareModel = velox::engine::WritePhraseModel(TinyLanguage::Phrase());
};

TEST_F(Library, VerifiesTakesWithThePhraseOnly)
{
    EXPECT_EQ(Verify(TinyLanguage::SayPhrase({0.15, 0.2, 3300.0})), S_OK);
    EXPECT_EQ(Verify(TinyLanguage::Say(Tones{0, 1}, HalfSecond, HalfSecond)), E_FAIL);
    EXPECT_EQ(Verify(TinyLanguage::Say(Tones{3, 2, 1, 0}, HalfSecond, HalfSecond)), E_FAIL);
    EXPECT_EQ(Verify(std::vector<float>(16000, 0.0F)), E_FAIL);
    for (const LogLine& line : logger.lines)
    {
        EXPECT_FALSE(line.operation == "LogWithCode" && line.value != 0) << "a call of the engine failed: " << line;
    }
}

TEST_F(Library, EnrollsAUserAndArmsWithTheModel)
{
    const Owned<IStream> stream = NewStream();
    EXPECT_EQ(ArmedModel(stream.get()), firmwareModel) << "before the enrollment: everybody's";

    const TinyLanguage::Voice user{0.15, 0.4, 3300.0};
    std::vector<Owned<IMFMediaBuffer>> takes;
    std::vector<IMFMediaBuffer*> recordings;
    for (uint64_t seed = 1; seed <= 3; ++seed)
    {
        takes.push_back(Recording(TinyLanguage::SayPhrase(user, seed)));
        recordings.push_back(takes.back().get());
    }
    const std::array<int32_t, 3> positions{};
    ASSERT_EQ(adapter->ComputeAndAddUserModelData(stream.get(), {1, Language}, positions.data(), recordings.data(), 3), S_OK);

    const std::vector<uint8_t> armed = ArmedModel(stream.get());
    velox::engine::PhraseModel model;
    ASSERT_EQ(velox::engine::ReadPhraseModel(armed.data(), &model), velox::engine::Status::Success);
    EXPECT_EQ(velox::engine::BlobLength(armed.data()), armed.size());
    EXPECT_TRUE(model.speaker.has_value());
}

TEST_F(Library, SilenceEnrollsNobody)
{
    const Owned<IStream> stream = NewStream();
    const auto take = Recording(std::vector<float>(16000, 0.0F));
    IMFMediaBuffer* recording = take.get();
    const int32_t position = 0;
    EXPECT_EQ(adapter->ComputeAndAddUserModelData(stream.get(), {1, Language}, &position, &recording, 1), E_FAIL);
    EXPECT_EQ(ArmedModel(stream.get()), firmwareModel);
}

} // namespace LibraryOnRealTests
