#pragma once

#include "engine/base/AudioFormat.h"
#include "engine/sound/MelFilterbank.h"
#include "engine/training/LanguageMaterial.h"

#include <span>
#include <string>
#include <vector>

namespace velox::engine
{

/// A usable take of the training with silence around it, and where in it the phrase lies.
struct PreparedTake
{
    std::vector<float> samples;
    std::vector<MelFrame> logMel;
    std::size_t begin = 0; ///< first frame of the phrase
    std::size_t end = 0;   ///< one past its last frame
    std::string voice{};
    float weight = 1.0F;

    std::vector<MelFrame> PhraseLogMel() const;
    std::span<const float> PhraseSamples() const;
};

/// Cuts the takes to their speech. A take that starts or ends within speech is cut tightly, as training folders often are: the
/// silence put around it makes it usable.
/// @param warnings  receives a line for each take that is left out
std::vector<PreparedTake> PrepareTakes(const std::vector<PhraseTake>& takes, std::vector<std::string>* warnings);

/// Puts silence around a recording.
std::vector<float> Pad(std::span<const float> samples);

} // namespace velox::engine
