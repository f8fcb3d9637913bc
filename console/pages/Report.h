#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velox::console
{

/// How something turned out. The page shows it by a sign and a word besides the colour.
enum class Tone
{
    Good,
    Bad,
    Neutral,
};

/// A line of the page's head: what it is, its value, and what that means; the meaning may be empty.
struct ReportFact
{
    std::string name;
    std::string value;
    std::string meaning{};
};

/// Takes or detections. Rows beyond MostRows are counted, not shown.
struct ReportTable
{
    static constexpr std::size_t MostRows = 500;

    std::string title;
    std::vector<std::string> columns;
    std::vector<std::vector<std::string>> rows; ///< each as long as columns
};

/// Lowest and highest sample of a stretch.
struct SampleRange
{
    float least = 0.0F;
    float most = 0.0F;
};

/// A recording's shape as it is drawn: stretches of equal length, at most MostWaveStretches however long it is; NaNs where a
/// stretch has no values.
inline constexpr std::size_t MostWaveStretches = 1200;
std::vector<SampleRange> WaveOf(std::span<const float> samples);

/// Values at equal distances over time. What there is no value for is a NaN; it leaves a gap.
struct ReportCurve
{
    double firstSecond = 0.0;
    double secondsPerValue = 0.01;
    std::vector<float> values; ///< empty: nothing is drawn
};

/// A place in a recording.
struct ReportMark
{
    enum class Kind
    {
        Speech,
        Phrase,   ///< found, or detected and told
        NearMiss, ///< not far below the threshold
        Clipped,
        Fault, ///< anything else that is wrong there
    };

    Kind kind = Kind::Speech;
    double begin = 0.0; ///< seconds
    double end = 0.0;   ///< not before begin; equal for a moment
    std::string text{}; ///< what is there, "score 112"; may be empty
};

/// One recording with its pictures. What is not known stays empty and is left out.
struct ReportRecording
{
    std::string name;
    std::string conversion{}; ///< what was done to the audio; empty when nothing was
    double seconds = 0.0;
    Tone tone = Tone::Neutral;
    std::string verdict;                ///< "Accepted", "Refused", "2 detections"
    std::vector<std::string> reasons{}; ///< sentences
    std::vector<std::string> fixes{};   ///< what to do
    std::vector<SampleRange> wave{};    ///< WaveOf
    std::vector<ReportMark> marks{};
    ReportCurve quality{};             ///< dB above the noise
    ReportCurve score{};               ///< in the unit of the threshold
    std::optional<double> threshold{}; ///< that the score is held against
};

/// What a command did, as a page.
struct Report
{
    std::string command; ///< "verify"
    std::string verdict; ///< the outcome's
    Tone tone = Tone::Neutral;
    std::vector<ReportFact> facts{}; ///< what was run, language, thresholds
    std::vector<std::string> notes{};
    std::optional<ReportTable> table{};
    std::vector<ReportRecording> recordings{};
};

} // namespace velox::console
