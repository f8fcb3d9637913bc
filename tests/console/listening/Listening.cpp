#include "console/listening/Listening.h"

#include "console/text/Interruption.h"
#include "console/text/Utf8Path.h"
#include "tests/console/support/FileMicrophone.h"
#include "tests/console/support/SoundFile.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/firmware/support/HandMadePattern.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <sstream>

namespace ListeningTests
{

using namespace velox;
using namespace velox::console;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using Tones = std::vector<std::size_t>;

constexpr std::size_t HalfSecond = 8000;

ListeningSetup SetupWith(const engine::PhraseModel& model, double threshold)
{
    ListeningSetup setup;
    setup.pattern = HandMadePattern::Make(model, static_cast<uint32_t>(threshold * 256.0));
    setup.detector = HandMadePattern::Detector;
    return setup;
}

ListeningSetup SetupWith(double threshold)
{
    return SetupWith(TinyLanguage::Phrase(), threshold);
}

std::vector<float> Phrases(int count)
{
    std::vector<float> audio;
    for (int i = 0; i < count; ++i)
    {
        const auto said = TinyLanguage::SayPhrase({}, static_cast<uint64_t>(i) + 1);
        audio.insert(audio.end(), said.begin(), said.end());
    }
    return audio;
}

class Listening : public testing::Test
{
protected:
    ~Listening() override
    {
        ForgetInterruption();
    }

    std::string Write(const std::string& name, const std::string& bytes) const
    {
        std::string path = folder.Path() + "/" + name;
        WriteWholeFile(path, bytes);
        return path;
    }

    std::string Record(const std::string& name, std::span<const float> samples) const
    {
        return Write(name, SoundFile::FloatWav(samples));
    }

    static ParsedBlock Accept(std::span<const uint8_t> block)
    {
        return {0, block[48], 1033, false, 0, 0, {}};
    }

    static Heard Hear(ListeningSetup setup, const std::vector<std::string>& recordings)
    {
        setup.recordings = recordings;
        Progress progress(nullptr);
        return HearRecordings(setup, Accept, &progress);
    }

    /// Hears a microphone, and keeps the lines that are said.
    HeardFile HearLive(const ListeningSetup& setup, FileMicrophone* microphone, std::optional<double> seconds = {})
    {
        Progress progress(nullptr, std::chrono::steady_clock::now, &lines);
        const Heard heard = HearMicrophone(setup, seconds, Accept, microphone, &progress);
        EXPECT_EQ(heard.files.size(), 1U);
        return heard.files.at(0);
    }

    std::size_t SavedSounds() const
    {
        const std::filesystem::directory_iterator files(SoundFolder());
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    std::string SoundFolder() const
    {
        return folder.Path() + "/sounds";
    }

    HeardFile Hear(const ListeningSetup& setup, std::span<const float> samples) const
    {
        return Hear(setup, {Record("a.wav", samples)}).files.at(0);
    }

    /// What the phrase scores in the first place.
    double PhraseScore() const
    {
        return Hear(SetupWith(60.0), Phrases(1)).phrases.at(0).peak.score / 256.0;
    }

    TemporaryFolder folder;
    std::ostringstream lines;
};

TEST_F(Listening, ArmsAgainAfterEachDetection)
{
    const Heard heard = Hear(SetupWith(60.0), {Record("three.wav", Phrases(3))});
    ASSERT_THAT(heard.files.at(0).phrases, SizeIs(3));
    for (std::size_t i = 0; i < 3; ++i)
    {
        const HeardPhrase& phrase = heard.files[0].phrases[i];
        EXPECT_NEAR(static_cast<double>(phrase.peak.detection.startSample) / 16000.0, 0.5 + 1.6 * static_cast<double>(i), 0.05);
        EXPECT_THAT(phrase.block, SizeIs(60));
        EXPECT_TRUE(phrase.Told());
    }
    EXPECT_DOUBLE_EQ(heard.files[0].seconds, 4.8);
    EXPECT_EQ(heard.threshold, 60U * 256U);
    EXPECT_FALSE(heard.userModel);
    EXPECT_FALSE(heard.files[0].deafFrom.has_value());
}

TEST_F(Listening, BlocksOfAnyLengthGiveTheSame)
{
    const std::vector<float> audio = Phrases(4); // longer than what is read at once
    const HeardFile reference = Hear(SetupWith(60.0), audio);
    ASSERT_THAT(reference.phrases, SizeIs(4));
    for (const std::size_t size : {16U, 1600U, 160000U})
    {
        SCOPED_TRACE(size);
        ListeningSetup setup = SetupWith(60.0);
        setup.blockSamples = size;
        const HeardFile heard = Hear(setup, audio);
        ASSERT_EQ(heard.phrases.size(), reference.phrases.size());
        for (std::size_t i = 0; i < heard.phrases.size(); ++i)
        {
            EXPECT_EQ(heard.phrases[i].block, reference.phrases[i].block);
        }
    }
}

TEST_F(Listening, HearsAKeywordThatEndsTheRecording)
{
    const Tones phrase{0, 1, 2, 3};
    EXPECT_THAT(Hear(SetupWith(60.0), TinyLanguage::Say(phrase, HalfSecond, 0)).phrases, SizeIs(1));
}

TEST_F(Listening, PeaksCloseUnderTheThresholdAreNearMisses)
{
    const double score = PhraseScore();
    const HeardFile close = Hear(SetupWith(score + 19.0), Phrases(1));
    ASSERT_THAT(close.phrases, SizeIs(1));
    EXPECT_TRUE(close.phrases[0].isNear);
    EXPECT_FALSE(close.phrases[0].Told());
    EXPECT_EQ(close.phrases[0].peak.score, *close.highestSilent);
    EXPECT_NEAR(*close.highestSilent / 256.0, score, 0.01);

    const HeardFile far = Hear(SetupWith(score + 21.0), Phrases(1));
    EXPECT_THAT(far.phrases, IsEmpty());
    EXPECT_EQ(far.highestSilent, close.highestSilent) << "it is known all the same";
}

TEST_F(Listening, WordsThatFitAreNearMissesWhateverTheSecondStageSays)
{
    engine::PhraseModel model = TinyLanguage::Phrase();
    model.judge.bias = -1e4F;
    const HeardFile heard = Hear(SetupWith(model, 100.0), Phrases(1));
    ASSERT_THAT(heard.phrases, SizeIs(1));
    EXPECT_TRUE(heard.phrases[0].isNear);
    EXPECT_LT(heard.phrases[0].peak.detection.score, 100.0F - NearMissMargin);
}

TEST_F(Listening, SilenceHasNoPeaks)
{
    const HeardFile heard = Hear(SetupWith(60.0), std::vector<float>(16000, 0.0F));
    EXPECT_THAT(heard.phrases, IsEmpty());
    EXPECT_FALSE(heard.highestSilent.has_value());
}

TEST_F(Listening, TheCounterHasOffsetAndDrift)
{
    ListeningSetup setup = SetupWith(60.0);
    setup.counter = {1000, 1600};
    const HeardFile heard = Hear(setup, Phrases(1));
    ASSERT_THAT(heard.phrases, SizeIs(1));
    const auto start = static_cast<uint64_t>(heard.phrases[0].peak.detection.startSample);
    uint64_t written = 0;
    for (std::size_t i = 8; i-- > 0;)
    {
        written = written << 8U | heard.phrases[0].block[28 + i];
    }
    EXPECT_EQ(written, 1000 + 626 * start);
}

TEST_F(Listening, AResetMakesDeaf)
{
    ListeningSetup setup = SetupWith(60.0);
    setup.fault = firmware::Fault::Reset;
    const HeardFile heard = Hear(setup, Phrases(3));
    ASSERT_THAT(heard.phrases, SizeIs(1)) << "that which was lost";
    EXPECT_THAT(heard.phrases[0].block, IsEmpty());
    ASSERT_TRUE(heard.deafFrom.has_value());
    EXPECT_NEAR(*heard.deafFrom, 1.0, 0.1);
    EXPECT_DOUBLE_EQ(heard.seconds, 4.8);
}

TEST_F(Listening, FaultyBlocksGoToTheParserAsTheyAre)
{
    ListeningSetup setup = SetupWith(60.0);
    setup.fault = firmware::Fault::TruncatedBlock;
    EXPECT_THAT(Hear(setup, Phrases(1)).phrases.at(0).block, SizeIs(52));
    setup.fault = firmware::Fault::UnknownKeyword;
    const HeardFile heard = Hear(setup, Phrases(1));
    setup.fault = firmware::Fault::ForeignGuid;
    EXPECT_NE(Hear(setup, Phrases(1)).phrases.at(0).block[4], heard.phrases.at(0).block[4]);
}

TEST_F(Listening, AStalePatternHearsInPlaceOfTheNewer)
{
    const std::string phrase = Record("one.wav", Phrases(1));
    ListeningSetup setup = SetupWith(60.0);
    setup.fault = firmware::Fault::StalePattern;
    setup.newerPattern = SetupWith(TinyLanguage::UserPhrase(), 255.0).pattern;
    const Heard heard = Hear(setup, {phrase});
    EXPECT_THAT(heard.files.at(0).phrases, SizeIs(1));
    EXPECT_EQ(heard.threshold, 60U * 256U);

    setup.fault = firmware::Fault::None;
    EXPECT_TRUE(Hear(setup, {phrase}).userModel) << "without the fault the newer one counts";
}

TEST_F(Listening, ARefusedPatternIsExplained)
{
    const auto failureOf = [this](const ListeningSetup& setup) {
        try
        {
            Hear(setup, Phrases(1));
        }
        catch (const CommandFailure& failure)
        {
            return failure;
        }
        return CommandFailure(ExitCode::Success, "the pattern is accepted");
    };
    ListeningSetup setup = SetupWith(60.0);
    setup.pattern[32] = 1;
    EXPECT_EQ(failureOf(setup).exitCode, ExitCode::BadInput);
    EXPECT_STREQ(failureOf(setup).what(), "The DSP refuses the pattern at 0x20, Reserved1: The first reserved field is not 0.");
    EXPECT_THAT(failureOf(setup).fix, HasSubstr("velox-kws arm"));
    setup = SetupWith(60.0);
    setup.detector[0] ^= 1U;
    EXPECT_THAT(failureOf(setup).fix, HasSubstr("--detector-id"));
}

TEST_F(Listening, ARecordingThatCannotBeReadKeepsNoOtherFromBeingHeard)
{
    ListeningSetup setup = SetupWith(60.0);
    setup.blockFolder = folder.Path() + "/blocks";
    const Heard heard = Hear(setup, {Record("one.wav", Phrases(1)), folder.Path() + "/none.wav", Record("two.wav", Phrases(2))});
    ASSERT_THAT(heard.files, SizeIs(3));
    EXPECT_THAT(heard.files[0].failures, IsEmpty());
    ASSERT_THAT(heard.files[1].failures, SizeIs(1));
    EXPECT_EQ(heard.files[1].failures[0].exitCode, ExitCode::BadInput);
    ASSERT_THAT(heard.files[2].phrases, SizeIs(2));
    const HeardPhrase& last = heard.files[2].phrases[1];
    EXPECT_EQ(PathFromUtf8(last.savedBlock), PathFromUtf8(setup.blockFolder) / "two-003.result") << "counted through the run";
    EXPECT_EQ(ReadWholeFile(last.savedBlock), std::string(last.block.begin(), last.block.end()));
}

TEST_F(Listening, OfARecordingThatIsCutTheBeginningIsHeard)
{
    const std::string whole = SoundFile::FloatWav(Phrases(6));
    const Heard heard = Hear(SetupWith(60.0), {Write("cut.wav", whole.substr(0, whole.size() - 40000))});
    ASSERT_THAT(heard.files.at(0).failures, SizeIs(1));
    EXPECT_EQ(heard.files[0].failures[0].exitCode, ExitCode::BadInput);
    EXPECT_THAT(heard.files[0].phrases, testing::Not(IsEmpty()));
}

TEST_F(Listening, ABlockThatCannotBeWrittenLosesNothingElse)
{
    ListeningSetup setup = SetupWith(60.0);
    setup.blockFolder = Write("blocks", "a file, where the folder should be");
    const Heard heard = Hear(setup, {Record("one.wav", Phrases(1)), Record("two.wav", Phrases(2))});
    ASSERT_THAT(heard.files, SizeIs(2));
    for (const HeardFile& file : heard.files)
    {
        ASSERT_THAT(file.failures, SizeIs(1));
        EXPECT_EQ(file.failures[0].exitCode, ExitCode::WriteFailed);
        ASSERT_THAT(file.phrases, testing::Not(IsEmpty()));
        EXPECT_EQ(file.phrases[0].savedBlock, "");
    }
}

TEST_F(Listening, CtrlCKeepsWhatWasHeard)
{
    RequestInterruption();
    const Heard heard = Hear(SetupWith(60.0), {Record("one.wav", Phrases(1)), Record("two.wav", Phrases(2))});
    ASSERT_THAT(heard.files, SizeIs(1)) << "the second one is not begun";
    EXPECT_THAT(heard.files[0].phrases, SizeIs(1));
    ASSERT_THAT(heard.files[0].failures, SizeIs(1));
    EXPECT_EQ(heard.files[0].failures[0].exitCode, ExitCode::Interrupted);
}

TEST_F(Listening, PicturesAreMadeWhenTheyAreAskedFor)
{
    ListeningSetup setup = SetupWith(60.0);
    const HeardFile bare = Hear(setup, Phrases(3));
    EXPECT_THAT(bare.wave, IsEmpty());
    EXPECT_EQ(bare.phrases.at(1).picture.seconds, 0.0);

    setup.pictures = true;
    const HeardFile drawn = Hear(setup, Phrases(3));
    EXPECT_THAT(drawn.wave, testing::Not(IsEmpty()));
    const Picture& closeUp = drawn.phrases.at(1).picture;
    const double begin = static_cast<double>(drawn.phrases[1].peak.detection.startSample) / 16000.0;
    const double end = static_cast<double>(drawn.phrases[1].peak.detection.endSample) / 16000.0;
    EXPECT_NEAR(closeUp.firstSecond, begin - 1.0, 0.01) << "a second before";
    EXPECT_NEAR(closeUp.firstSecond + closeUp.seconds, end + 1.0, 0.01) << "and behind";
    ASSERT_GE(closeUp.wave.size(), 300U);
    const auto height = [&](double second) {
        const auto at = (second - closeUp.firstSecond) / closeUp.seconds * static_cast<double>(closeUp.wave.size());
        return closeUp.wave.at(static_cast<std::size_t>(at)).most;
    };
    EXPECT_GT(height(begin + 0.2), 0.1F) << "of the phrase";
    EXPECT_LT(height(begin - 0.4), 0.05F) << "between the phrases";
    EXPECT_EQ(drawn.phrases[0].picture.firstSecond, 0.0) << "nothing lies before the recording";
}

firmware::Peak Peak(double start, double end, double score, double threshold, double phraseScore = 0.0)
{
    firmware::Peak peak;
    peak.detection.startSample = std::lround(start * 16000.0);
    peak.detection.endSample = std::lround(end * 16000.0);
    peak.detection.score = static_cast<float>(score);
    peak.detection.phraseScore = static_cast<float>(phraseScore);
    peak.score = static_cast<uint16_t>(score * 256.0);
    peak.passed = score >= threshold;
    return peak;
}

/// Peaks against a threshold of 120.
HeardFile Kept(const std::vector<firmware::Peak>& peaks)
{
    HeardFile file;
    for (const firmware::Peak& peak : peaks)
    {
        AddPeak(peak, 120 * 256, &file.phrases);
    }
    KeepBest(&file);
    return file;
}

TEST_F(Listening, PeaksOfADetectionAreNoneThatDidNotFire)
{
    const HeardFile file = Kept({Peak(1.0, 1.4, 115.75, 120), Peak(1.1, 1.9, 130, 120), Peak(1.5, 2.2, 118, 120),
                                 Peak(3.0, 3.8, 96.5, 120), Peak(5.0, 5.8, 104.5, 120)});
    ASSERT_THAT(file.phrases, SizeIs(2));
    EXPECT_EQ(file.phrases[0].peak.score, 130 * 256);
    EXPECT_TRUE(file.phrases[1].isNear);
    EXPECT_EQ(file.highestSilent, static_cast<uint16_t>(104.5 * 256)) << "neither the 115.75 before nor the 118 behind";
}

TEST_F(Listening, TheBestPeakOfAPhraseStaysInWhateverOrder)
{
    for (const auto& [first, second] : {std::pair(105.0, 110.0), std::pair(110.0, 105.0)})
    {
        const HeardFile file = Kept({Peak(1.0, 1.4, first, 120), Peak(1.1, 1.6, second, 120)});
        ASSERT_THAT(file.phrases, SizeIs(1));
        EXPECT_EQ(file.phrases[0].peak.score, 110 * 256);
    }
}

TEST_F(Listening, WordsThatFitStayBesideAHigherScoreThatIsToldAllTheSame)
{
    const HeardFile file = Kept({Peak(1.0, 1.4, 30, 120, 125), Peak(1.1, 1.6, 70, 120, 80)});
    ASSERT_THAT(file.phrases, SizeIs(1));
    EXPECT_EQ(file.phrases[0].peak.score, 30 * 256);
    EXPECT_EQ(file.highestSilent, 70 * 256) << "a threshold below it fires there";
}

TEST_F(Listening, AllDetectionsAndTheBestNearMissesAreKept)
{
    HeardFile file;
    for (int i = 0; i < 3000; ++i)
    {
        const bool fires = i % 2 == 0 && i < 1000;
        const double score = fires ? 120.0 : 101.0 + static_cast<double>(i % 2371) / 256.0;
        AddPeak(Peak(i, i + 0.5, score, 120), 120 * 256, &file.phrases);
    }
    ASSERT_THAT(file.phrases, SizeIs(3000));
    const auto lowest = std::ranges::min_element(file.phrases, {}, [](const auto& phrase) { return phrase.peak.score; });
    const int64_t lowestAt = lowest->peak.detection.startSample;
    KeepBest(&file);
    EXPECT_THAT(file.phrases, SizeIs(500 + MostNearMisses));
    EXPECT_EQ(file.lowerNearMisses, 500U);
    EXPECT_TRUE(std::ranges::is_sorted(file.phrases, {}, [](const auto& phrase) { return phrase.peak.detection.startSample; }));
    EXPECT_TRUE(
        std::ranges::none_of(file.phrases, [&](const auto& phrase) { return phrase.peak.detection.startSample == lowestAt; }));
}

TEST_F(Listening, HoweverManyComeNoMoreThanTwiceTheMostAreHeld)
{
    HeardFile meanwhile;
    HeardFile atTheEnd;
    std::size_t most = 0;
    for (int i = 0; i < 9000; ++i)
    {
        const firmware::Peak peak = Peak(i, i + 0.5, 90.0 + static_cast<double>(i % 2371) / 256.0 * 3.0, 120);
        for (HeardFile* file : {&meanwhile, &atTheEnd})
        {
            AddPeak(peak, 120 * 256, &file->phrases);
        }
        KeepBestMeanwhile(std::lround((i + 0.6) * 16000.0), &meanwhile);
        EXPECT_TRUE(meanwhile.phrases.back().peak.detection.startSample == peak.detection.startSample)
            << "another peak may still overlap it";
        KeepBestMeanwhile(std::lround((i + 10.0) * 16000.0), &meanwhile);
        most = std::max(most, meanwhile.phrases.size());
    }
    KeepBest(&meanwhile);
    KeepBest(&atTheEnd);
    EXPECT_LE(most, 2 * MostNearMisses);
    EXPECT_EQ(meanwhile.highestSilent, atTheEnd.highestSilent);
    EXPECT_EQ(meanwhile.lowerNearMisses, atTheEnd.lowerNearMisses);
    ASSERT_EQ(meanwhile.phrases.size(), atTheEnd.phrases.size());
    EXPECT_TRUE(std::ranges::equal(
        meanwhile.phrases, atTheEnd.phrases, {}, [](const auto& phrase) { return phrase.peak.score; },
        [](const auto& phrase) { return phrase.peak.score; }));
}

TEST_F(Listening, CloseUpsOfDetectionsStayFirst)
{
    std::vector<HeardFile> files(2);
    for (int i = 0; i < 300; ++i)
    {
        AddPeak(Peak(i, i + 0.5, i < 250 ? 101.0 + static_cast<double>(i) / 256.0 : 121.0, 120), 120 * 256,
                &files[static_cast<std::size_t>(i % 2)].phrases);
    }
    for (HeardFile& file : files)
    {
        for (HeardPhrase& phrase : file.phrases)
        {
            phrase.picture.seconds = 2.5;
        }
    }
    KeepBestCloseUps(files);
    std::size_t drawn = 0;
    for (const HeardFile& file : files)
    {
        for (const HeardPhrase& phrase : file.phrases)
        {
            const bool isDrawn = phrase.picture.seconds > 0.0;
            drawn += isDrawn ? 1U : 0U;
            EXPECT_EQ(isDrawn, phrase.peak.detection.startSample >= 100 * 16000) << "the 100 lowest near misses have none";
        }
    }
    EXPECT_EQ(drawn, MostCloseUps);
}

TEST_F(Listening, AMicrophoneIsHeardAsARecordingIs)
{
    const std::vector<float> audio = Phrases(3);
    const HeardFile reference = Hear(SetupWith(60.0), audio);
    for (const std::size_t piece : {160U, 441U, 1600U})
    {
        SCOPED_TRACE(piece);
        FileMicrophone microphone(audio);
        microphone.piece = piece;
        const HeardFile heard = HearLive(SetupWith(60.0), &microphone);
        ASSERT_EQ(heard.phrases.size(), reference.phrases.size());
        for (std::size_t i = 0; i < heard.phrases.size(); ++i)
        {
            EXPECT_EQ(heard.phrases[i].block, reference.phrases[i].block);
        }
        EXPECT_EQ(heard.name, "Desk");
        EXPECT_EQ(heard.conversion, "converted from 48 kHz mono");
    }
}

TEST_F(Listening, DetectionsAreSaidAsTheyHappen)
{
    FileMicrophone microphone(Phrases(2));
    std::vector<std::size_t> detectionsAt; // samples played when a line was there
    microphone.before = [&](std::size_t played) {
        const std::string said = lines.str();
        std::size_t count = 0;
        for (std::size_t at = said.find("detected"); at != std::string::npos; at = said.find("detected", at + 1))
        {
            ++count;
        }
        detectionsAt.resize(std::max(count, detectionsAt.size()), played);
    };
    const HeardFile heard = HearLive(SetupWith(60.0), &microphone);
    EXPECT_THAT(lines.str(), testing::StartsWith("Listening to Desk. Ctrl-C ends it.\ndetected  0:00."));
    ASSERT_THAT(heard.phrases, SizeIs(2));
    ASSERT_THAT(detectionsAt, SizeIs(2));
    for (std::size_t i = 0; i < 2; ++i)
    {
        const int64_t end = heard.phrases[i].peak.detection.endSample;
        EXPECT_LE(static_cast<int64_t>(detectionsAt[i]), end + 16000 * 3 / 10) << "within 300 ms";
    }
}

TEST_F(Listening, ANearMissIsSaidOnceWhenItIsOver)
{
    FileMicrophone microphone(Phrases(1));
    HearLive(SetupWith(PhraseScore() + 10.0), &microphone);
    EXPECT_THAT(lines.str(), HasSubstr("near miss  0:00."));
    EXPECT_THAT(lines.str(), HasSubstr("the words are not clear enough\n"));
    EXPECT_EQ(lines.str().find("near miss"), lines.str().rfind("near miss"));
}

TEST_F(Listening, ASessionEndsAfterItsSeconds)
{
    FileMicrophone microphone(Phrases(3));
    const HeardFile heard = HearLive(SetupWith(60.0), &microphone, 1.7);
    EXPECT_DOUBLE_EQ(heard.seconds, 1.7);
    EXPECT_THAT(heard.phrases, SizeIs(1));
    EXPECT_THAT(heard.failures, IsEmpty());
}

TEST_F(Listening, CtrlCEndsASessionInOrder)
{
    ListeningSetup setup = SetupWith(60.0);
    setup.audioFolder = SoundFolder();
    setup.blockFolder = folder.Path() + "/blocks";
    FileMicrophone microphone(Phrases(3));
    microphone.before = [&](std::size_t) {
        if (lines.str().find("detected") != std::string::npos)
        {
            RequestInterruption();
        }
    };
    const HeardFile heard = HearLive(setup, &microphone);
    EXPECT_THAT(heard.failures, IsEmpty());
    ASSERT_THAT(heard.phrases, SizeIs(1));
    EXPECT_NE(heard.phrases[0].savedAudio, "") << "what was heard is written all the same";
    EXPECT_NE(heard.phrases[0].savedBlock, "");
    EXPECT_FALSE(InterruptionRequested());
}

TEST_F(Listening, AMicrophoneThatIsUnpluggedKeepsWhatWasHeard)
{
    FileMicrophone microphone(Phrases(2));
    const HeardFile heard = HearLive(SetupWith(60.0), &microphone);
    EXPECT_THAT(heard.phrases, SizeIs(2));
    ASSERT_THAT(heard.failures, SizeIs(1));
    EXPECT_EQ(heard.failures[0].exitCode, ExitCode::BadInput);
    EXPECT_STREQ(heard.failures[0].what(), "The microphone Desk gives no sound any more.");
}

TEST_F(Listening, LostSoundIsCounted)
{
    FileMicrophone microphone(Phrases(1));
    microphone.overruns = 3;
    EXPECT_EQ(HearLive(SetupWith(60.0), &microphone).overruns, 3U);
}

TEST_F(Listening, TheStatusShowsLevelScoreTimeAndLostSound)
{
    FileMicrophone microphone(Phrases(1));
    microphone.piece = 16000;
    microphone.overruns = 1;
    std::chrono::steady_clock::time_point now{};
    microphone.before = [&](std::size_t) {
        now += std::chrono::seconds(1);
    };
    std::ostringstream terminal;
    Progress progress(
        &terminal, [&] { return now; }, &lines);
    HearMicrophone(SetupWith(60.0), {}, Accept, &microphone, &progress);
    const std::string drawn = terminal.str();
    EXPECT_THAT(drawn, testing::ContainsRegex("-[0-9]+ dB \\[#+ +\\]  score +[1-9][0-9]* %  0:01  1 overrun"));
    EXPECT_THAT(drawn, testing::EndsWith(" \r")) << "it is wiped away";
}

TEST_F(Listening, TheSoundAroundWhatWasHeardIsSaved)
{
    ListeningSetup setup = SetupWith(PhraseScore() - 1.0);
    setup.audioFolder = SoundFolder();
    std::vector<float> audio(48000, 0.001F);
    const std::vector<float> said = Phrases(1);
    audio.insert(audio.end(), said.begin(), said.end());
    audio.resize(audio.size() + 48000, 0.001F);
    const HeardFile heard = Hear(setup, audio);
    ASSERT_THAT(heard.phrases, SizeIs(1));
    EXPECT_EQ(PathFromUtf8(heard.phrases[0].savedAudio), PathFromUtf8(SoundFolder()) / "a-001-3s.wav");
    const Audio saved = ReadAudio(PathFromUtf8(heard.phrases[0].savedAudio));
    const engine::Detection& place = heard.phrases[0].peak.detection;
    ASSERT_EQ(std::ssize(saved.samples), place.endSample - place.startSample + 24000) << "a second before, half a second behind";
    const auto first = static_cast<std::size_t>(place.startSample) - 16000;
    for (std::size_t i = 0; i < saved.samples.size(); ++i)
    {
        ASSERT_NEAR(saved.samples[i], audio[first + i], 1.0 / 32768.0) << i;
    }
}

TEST_F(Listening, NearMissesAreSavedTooAndNumberedThroughTheRun)
{
    ListeningSetup setup = SetupWith(PhraseScore() + 10.0);
    setup.audioFolder = SoundFolder();
    const Heard heard = Hear(setup, {Record("one.wav", Phrases(1)), Record("two.wav", Phrases(1))});
    EXPECT_THAT(heard.files.at(1).phrases.at(0).savedAudio, HasSubstr("two-002-"));
    EXPECT_EQ(SavedSounds(), 2U);
}

TEST_F(Listening, SoundThatCannotBeSavedIsToldOnceAndLosesNothingElse)
{
    ListeningSetup setup = SetupWith(60.0);
    setup.audioFolder = Write("sounds", "a file, where the folder should be");
    const HeardFile heard = Hear(setup, Phrases(3));
    EXPECT_THAT(heard.phrases, SizeIs(3));
    ASSERT_THAT(heard.failures, SizeIs(1));
    EXPECT_EQ(heard.failures[0].exitCode, ExitCode::WriteFailed);
}

TEST_F(Listening, AfterCtrlCNoSoundIsSaved)
{
    ListeningSetup setup = SetupWith(60.0);
    setup.audioFolder = SoundFolder();
    RequestInterruption();
    const HeardFile heard = Hear(setup, Phrases(1));
    ASSERT_THAT(heard.failures, SizeIs(1));
    EXPECT_EQ(heard.failures[0].exitCode, ExitCode::Interrupted);
    EXPECT_FALSE(std::filesystem::exists(heard.phrases.at(0).savedAudio));
}

} // namespace ListeningTests
