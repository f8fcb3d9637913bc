#pragma once

#include "engine/base/RandomStream.h"
#include "engine/enrollment/Augmentation.h"
#include "engine/training/TakePreparation.h"

#include <cstddef>
#include <span>
#include <vector>

namespace velox::engine
{

/// A near phrase made of a take.
struct DamagedTake
{
    std::vector<float> samples; ///< as many as the take's
    std::size_t begin = 0;      ///< first frame that is not the take's own
    std::size_t end = 0;        ///< one past the last one
};

/// Replaces an eighth to three fifths of a take's phrase, at its start, within it or at its end, by silence or by other speech.
/// @param background  recordings to take other speech from; where there are none, and where one is too short, silence is put
DamagedTake DamageTake(const PreparedTake& take, std::span<const std::vector<float>> background, RandomStream* random);

/// A near phrase as it sounds in another voice and place.
struct DamagedCopy
{
    DamagedTake take;
    AugmentationPlan plan;
};

/// Six damaged copies of a take, the first one clean. Always the same ones, so that they can be made where they are needed.
/// @param number  of the take
std::vector<DamagedCopy> DamagedCopies(const PreparedTake& take, std::size_t number,
                                       std::span<const std::vector<float>> background, uint64_t seed);

} // namespace velox::engine
