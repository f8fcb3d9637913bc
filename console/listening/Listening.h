#pragma once

#include "console/audio/Microphone.h"
#include "console/report/Picture.h"
#include "console/text/CommandFailure.h"
#include "console/text/Progress.h"
#include "firmware/DspSimulator.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velox::console
{

/// What the library makes of a result block.
struct ParsedBlock
{
    int32_t result = 0;     ///< HRESULT; what follows it is meaningful only when it is 0
    uint32_t keywordId = 0; ///< 0: no match
    uint16_t language = 0;  ///< of the adapter's last arming
    bool isUserMatch = false;
    uint64_t keywordStart = 0; ///< performance counter
    uint64_t keywordEnd = 0;
    std::string explanation; ///< why the library refused the block; else empty
};

using BlockParser = std::function<ParsedBlock(std::span<const uint8_t>)>;

/// A phrase, by the best peak of its score, and what came of it.
struct HeardPhrase
{
    firmware::Peak peak;
    bool isNear = false;          ///< it did not fire, but nearly
    uint16_t highest = 0;         ///< score of its peaks, Q8; not that of the best one when another's words fit better
    std::vector<uint8_t> block{}; ///< that was reported; empty for none
    ParsedBlock parsed{};         ///< of the block
    std::string savedBlock{};     ///< its file; empty when it was not saved
    std::string savedAudio{};     ///< likewise, of the sound around it
    Picture picture{};            ///< of the sound around it; empty beyond the best MostCloseUps
    bool isOver = false;          ///< the sound behind it was heard

    /// Whether the library told the host of the keyword.
    bool Told() const
    {
        return !block.empty() && parsed.result == 0 && parsed.keywordId != 0;
    }
};

/// A peak this much under the threshold is a near miss: a threshold that it passes gives about seven times as many false alarms.
inline constexpr float NearMissMargin = 20.0F;

/// Adds a peak. Of those that overlap, as peaks of one phrase do, the best one stays: that which fired, else a near miss.
/// @param threshold  Q8
/// @param phrases    in the order of time
void AddPeak(const firmware::Peak& peak, uint32_t threshold, std::vector<HeardPhrase>* phrases);

/// A recording, or a microphone's session, that was listened to.
struct HeardFile
{
    std::string name;
    std::string stem{};       ///< what the names of the files begin with that are saved of it
    std::string conversion{}; ///< what was done to its audio; empty when nothing was
    std::vector<std::string> warnings{};
    double seconds = 0.0;                    ///< that were heard
    std::vector<HeardPhrase> phrases{};      ///< those that fired, and the best near misses, in the order of time
    std::size_t lowerNearMisses = 0;         ///< beyond MostNearMisses
    std::size_t kept = 0;                    ///< phrases that KeepBest left last
    std::optional<uint16_t> highestSilent{}; ///< highest score of a phrase that did not fire, Q8
    std::optional<double> deafFrom{};        ///< second of a reset, after which nothing was heard
    std::size_t overruns = 0;                ///< how often a microphone's sound was lost
    std::vector<SampleRange> wave{};         ///< of the whole
    std::vector<CommandFailure> failures{};  ///< why it was not heard to its end, or a file not written
};

inline constexpr std::size_t MostNearMisses = 2000;
inline constexpr std::size_t MostCloseUps = 200;

/// Leaves what fired and the best near misses, and counts the rest.
void KeepBest(HeardFile* file);

/// The same while more is to come, once in a while: at most twice MostNearMisses are held.
/// @param heardSamples  so far
void KeepBestMeanwhile(int64_t heardSamples, HeardFile* file);

/// Of all files together: of what fired, then of the best near misses. The pictures of others are removed.
void KeepBestCloseUps(std::span<HeardFile> files);

/// What is heard, and how.
struct ListeningSetup
{
    std::vector<std::string> recordings; ///< each is heard from its beginning; none when a microphone is heard
    std::vector<uint8_t> pattern;
    std::vector<uint8_t> newerPattern; ///< set after the first one, for the stale fault; empty for none
    firmware::DetectorId detector{};
    firmware::PerformanceCounter counter;
    firmware::Fault fault = firmware::Fault::None;
    std::size_t blockSamples = engine::FrameSize; ///< that the simulator gets at once, at most
    bool pictures = false;
    std::string blockFolder; ///< for each recording's result blocks when it has ended, counted through the run; empty for none
    std::string audioFolder; ///< likewise for the sound around each detection and near miss, a second after it
};

/// What the files begin with that are saved of a microphone's session.
inline constexpr const char* MicrophoneStem = "microphone";

struct Heard
{
    uint32_t threshold = 0;       ///< Q8, in the simulator
    bool userModel = false;       ///< in the simulator
    std::vector<HeardFile> files; ///< fewer than the recordings after Ctrl-C
};

/// Listens, and arms again after each detection, as the system does. What cannot be read does not keep the rest from being heard.
/// @throws CommandFailure BadInput when the simulator refuses the pattern
Heard HearRecordings(const ListeningSetup& setup, const BlockParser& parse, Progress* progress);

/// Listens to a microphone, and says of each detection at once and of each near miss a second later. Ctrl-C ends it in order.
/// @param seconds  after which it ends; nothing: only Ctrl-C does
/// @throws CommandFailure as HearRecordings
Heard HearMicrophone(const ListeningSetup& setup, std::optional<double> seconds, const BlockParser& parse, Microphone* microphone,
                     Progress* progress);

} // namespace velox::console
