// The whole way, through the library and the engine's DLL: a user is enrolled, the simulator armed, audio heard, and what the
// simulator reports is parsed by the library.
#include "VeloxHwKwsImpl.h"
#include "firmware/DspSimulator.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/support/PlatformObjects.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/TestConfiguration.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace LoopOnRealTests
{

using namespace KeywordDetectorAdapterImplementation;
using namespace PlatformObjects;
using namespace velox::firmware;
using Bytes = std::vector<uint8_t>;

constexpr uint16_t Language = 1033;
constexpr GUID DetectorGuid{0x00112233, 0x4455, 0x6677, {0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF}};
const TinyLanguage::Voice User{0.15, 0.4, 3300.0};

std::string Text(const Bytes& bytes)
{
    return {bytes.begin(), bytes.end()};
}

DetectorId Id()
{
    DetectorId id{};
    std::memcpy(id.data(), &DetectorGuid, id.size());
    return id;
}

struct Parsed
{
    HRESULT result = S_OK;
    uint32_t keywordId = 99;
    uint16_t languageId = 99;
    BOOL isUserMatch = 99;
    uint64_t start = 99;
    uint64_t end = 99;
};

class Loop : public testing::Test
{
protected:
    Loop()
    {
        configuration.WriteFile("kp_1033.bin", Text(velox::engine::WritePhraseModel(TinyLanguage::Phrase())));
        configuration.WriteFile("am_1033.bin", Text(velox::engine::WriteAcousticModel(TinyLanguage::Acoustic())));
        configuration.WriteFile("zn_1033.bin", Text(velox::engine::WritePopulation(TinyLanguage::Background())));
        configuration.WriteFile("fw_1033.bin", Text(velox::engine::WritePhraseModel(TinyLanguage::Phrase())));
        configuration.WriteFile("kpd_pre_1033.txt", "70.5");
        configuration.WriteFile("kpd_user_1033.txt", "60");
        adapter.reset(CreateKeywordDetectorAdapterImpl(&logger, configuration.Path(), "1", DetectorGuid).release());
    }

    void Enroll()
    {
        std::vector<Owned<IMFMediaBuffer>> takes;
        std::vector<IMFMediaBuffer*> recordings;
        for (uint64_t seed = 1; seed <= 3; ++seed)
        {
            takes.push_back(Recording(TinyLanguage::SayPhrase(User, seed)));
            recordings.push_back(takes.back().get());
        }
        const std::array<int32_t, 3> positions{};
        ASSERT_EQ(adapter->ComputeAndAddUserModelData(stream.get(), {1, Language}, positions.data(), recordings.data(), 3), S_OK);
    }

    Bytes Pattern()
    {
        const KeywordSelector selector{1, Language};
        uint8_t* block = nullptr;
        EXPECT_EQ(adapter->BuildArmingPatternData(stream.get(), &selector, 1, &block), S_OK);
        uint32_t size = 0;
        std::memcpy(&size, block, sizeof(size));
        Bytes bytes(block, block + size);
        CoTaskMemFree(block);
        return bytes;
    }

    void Arm()
    {
        ASSERT_EQ(dsp.SetPattern(Pattern()), std::nullopt);
        ASSERT_TRUE(dsp.Arm());
    }

    std::optional<ResultBlock> Hear(const std::vector<float>& audio)
    {
        std::span<const float> rest = audio;
        return dsp.Hear(&rest);
    }

    Parsed Parse(const ResultBlock& block)
    {
        // In memory of its own length, as the system hands it over.
        const Bytes bytes(block.Bytes().begin(), block.Bytes().end());
        Parsed parsed;
        parsed.result = adapter->ParseDetectionResultData(stream.get(), reinterpret_cast<const DetectionResult*>(bytes.data()),
                                                          &parsed.keywordId, &parsed.languageId, &parsed.isUserMatch,
                                                          &parsed.start, &parsed.end);
        return parsed;
    }

    TestConfiguration configuration;
    RecordingLogger logger;
    std::unique_ptr<IVeloxKeywordDetectorAdapterImpl> adapter;
    Owned<IStream> stream = NewStream();
    std::vector<Peak> peaks;
    DspSimulator dsp{Id(), {1'000'000, 0}, [this](const Peak& peak) {
                         peaks.push_back(peak);
                     }};
};

TEST_F(Loop, ThePredefinedModelIsArmedHeardAndParsed)
{
    Arm();
    EXPECT_EQ(dsp.Threshold(), 18048U) << "70.5 in Q8, the predefined one";
    EXPECT_FALSE(dsp.HasUserModel());
    const auto block = Hear(TinyLanguage::SayPhrase());
    ASSERT_TRUE(block.has_value());
    const Parsed parsed = Parse(*block);
    EXPECT_EQ(parsed.result, S_OK);
    EXPECT_EQ(parsed.keywordId, 1U);
    EXPECT_EQ(parsed.languageId, Language);
    EXPECT_EQ(parsed.isUserMatch, FALSE);
    EXPECT_EQ(parsed.start, 1'000'000 + 625 * static_cast<uint64_t>(peaks.at(0).detection.startSample));
    EXPECT_EQ(parsed.end, 1'000'000 + 625 * static_cast<uint64_t>(peaks.at(0).detection.endSample));
    EXPECT_NEAR(static_cast<double>(parsed.start), 1e6 + 5e6 + 625.0 * TinyLanguage::StartPadding, 300'000.0) << "within 30 ms";
}

TEST_F(Loop, AUsersModelIsEnrolledArmedHeardAndParsed)
{
    Enroll();
    Arm();
    EXPECT_EQ(dsp.Threshold(), 15360U) << "60 in Q8, the user-defined one";
    EXPECT_TRUE(dsp.HasUserModel());
    const auto block = Hear(TinyLanguage::SayPhrase(User, 9));
    ASSERT_TRUE(block.has_value());
    const Parsed parsed = Parse(*block);
    EXPECT_EQ(parsed.result, S_OK);
    EXPECT_EQ(parsed.keywordId, 1U);
    EXPECT_EQ(parsed.languageId, Language);
    EXPECT_EQ(parsed.isUserMatch, TRUE);
}

TEST_F(Loop, TheLibraryReadsTheScoreThatTheSimulatorWrote)
{
    Arm();
    const auto block = Hear(TinyLanguage::SayPhrase());
    ASSERT_TRUE(block.has_value());
    logger.Take();
    Parse(*block);
    const std::string expected =
        "KPD score (" + std::to_string(peaks.at(0).score) + "), KPD threshold (" + std::to_string(dsp.Threshold()) + ")";
    const auto lines = logger.Take();
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [&](const LogLine& line) {
        return line.text.find(expected) != std::string::npos;
    })) << expected;
}

TEST_F(Loop, AForeignGuidAndATruncatedBlockAreRefused)
{
    for (const Fault fault : {Fault::ForeignGuid, Fault::TruncatedBlock})
    {
        SCOPED_TRACE(static_cast<int>(fault));
        dsp.SetFault(fault);
        Arm();
        const auto block = Hear(TinyLanguage::SayPhrase());
        ASSERT_TRUE(block.has_value());
        const Parsed parsed = Parse(*block);
        EXPECT_EQ(parsed.result, E_INVALIDARG);
        EXPECT_EQ(parsed.keywordId, 99U);
    }
}

TEST_F(Loop, AnUnknownKeywordIsToldAsNone)
{
    dsp.SetFault(Fault::UnknownKeyword);
    Arm();
    const auto block = Hear(TinyLanguage::SayPhrase());
    ASSERT_TRUE(block.has_value());
    const Parsed parsed = Parse(*block);
    EXPECT_EQ(parsed.result, S_OK);
    EXPECT_EQ(parsed.keywordId, 0U);
}

/// The block does not say which pattern fired: the library tells of the one that it built last.
TEST_F(Loop, AStalePatternGoesUnnoticed)
{
    dsp.SetFault(Fault::StalePattern);
    Arm();
    Enroll();
    Arm();
    EXPECT_FALSE(dsp.HasUserModel());
    const auto block = Hear(TinyLanguage::SayPhrase());
    ASSERT_TRUE(block.has_value());
    const Parsed parsed = Parse(*block);
    EXPECT_EQ(parsed.result, S_OK);
    EXPECT_EQ(parsed.isUserMatch, TRUE) << "anybody fired it";
}

TEST_F(Loop, APatternOfAnotherDetectorIsRefused)
{
    DspSimulator other(DetectorId{});
    EXPECT_EQ(other.SetPattern(Pattern()), PatternRefusal::ForeignDetector);
}

} // namespace LoopOnRealTests
