#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velox::console
{

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

/// The same of audio that comes piece by piece and whose length nobody knows: stretches are joined in pairs as they become too
/// many.
class WaveBuilder
{
public:
    void Add(std::span<const float> samples);
    std::vector<SampleRange> Finish();

private:
    std::vector<SampleRange> ranges;
    std::size_t samplesPerRange = 16;
    std::size_t inLast = 0; ///< samples in the last range
};

/// Values at equal distances over time. What there is no value for is a NaN; it leaves a gap.
struct Curve
{
    double firstSecond = 0.0;
    double secondsPerValue = 0.01;
    std::vector<float> values{}; ///< empty: nothing is drawn
};

/// A place in a recording.
struct Mark
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
    double begin = 0.0;            ///< seconds
    double end = 0.0;              ///< not before begin; equal for a moment
    std::string text{};            ///< what is there, "score 112"; may be empty
    std::optional<double> score{}; ///< that was compared with the threshold at its end
};

/// A recording, or a piece of one, as it is drawn. What is not known stays empty and is left out.
struct Picture
{
    double firstSecond = 0.0; ///< where the piece begins in its recording
    double seconds = 0.0;     ///< 0: no picture
    std::vector<SampleRange> wave{};
    std::vector<Mark> marks{};
    Curve quality{};                   ///< dB above the noise
    Curve score{};                     ///< in the unit of the threshold
    std::optional<double> threshold{}; ///< that the scores are held against
};

/// A curve over a quantity, with the interval in which the truth lies.
struct Chart
{
    struct Point
    {
        double x = 0.0;
        double y = 0.0;
        double least = 0.0;
        double most = 0.0;
    };

    std::string title;
    std::string xName;              ///< drawn on a logarithmic scale
    std::string yName;              ///< in percent, 0 to 100
    std::vector<Point> points;      ///< x rises and is above 0
    std::optional<double> marked{}; ///< an x that was asked for
};

} // namespace velox::console
