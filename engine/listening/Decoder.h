#pragma once

#include "engine/models/StateModel.h"

#include <array>
#include <cstdint>
#include <vector>

namespace velox::engine
{

/// A way through the phrase's states that ends at some frame.
struct PhrasePath
{
    int64_t startFrame = 0;
    /// How well each state fits: the mean log ratio of the three frames in a row that fit best. What else a state lasts may be a
    /// pause between two words.
    std::vector<float> fits;
    std::vector<int32_t> counts;   ///< frames in each state
    std::array<float, 2> recent{}; ///< log ratios of the two last frames

    /// Adds a frame to a state, the last one so far or the next.
    void Add(std::size_t state, float ratio);
};

/// Finds the best way through the phrase's states that ends at the current frame (Viterbi 1967; keyword spotting against a
/// background: Rohlicek 1989; neural posteriors: Bourlard and Morgan 1994; Sun 2017). A phrase may begin at every frame. Each
/// state lasts at least three frames, and then geometrically, so that its mean is kept.
class Decoder
{
public:
    /// Sub-states of a state: the least duration in frames.
    static constexpr std::size_t SubStates = 3;
    /// A phrase that has lasted so many times its mean hurries to its end: no noise may draw it out over seconds.
    static constexpr float LongestPhrase = 2.0F;
    /// Bounds of a frame's log ratio: a few frames must not decide.
    static constexpr float LeastRatio = -4.0F;
    static constexpr float MostRatio = 3.0F;

    explicit Decoder(const StateModel& model);

    /// @param logPosteriors  of the states and, last, of the background
    /// @return whether a path reaches the phrase's end at this frame
    bool Push(const float* logPosteriors);

    /// The best path that ends at the last frame pushed; meaningful after Push gave true.
    const PhrasePath& BestPath() const
    {
        return paths.back();
    }

    /// Frames pushed so far; the last one has the number FrameCount() - 1.
    int64_t FrameCount() const
    {
        return frames;
    }

private:
    std::vector<float> logPrior;
    std::vector<float> logStay;
    std::vector<float> logLeave;
    std::vector<float> totals; ///< best total of each sub-state
    std::vector<PhrasePath> paths;
    std::vector<float> ratios;
    int64_t framesToStay = 0; ///< since a path's start
    int64_t frames = 0;
};

/// How well a path's parts fit, dominated by the worst: -ln(mean over states of exp(-fit)), between LeastRatio and
/// MostRatio. A mean over frames would accept half of the phrase.
float SoftMinimumScore(const PhrasePath& path);

} // namespace velox::engine
