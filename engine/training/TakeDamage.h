#pragma once

#include "engine/base/RandomStream.h"

#include <span>
#include <vector>

namespace velox::engine
{

/// Makes a near phrase of a take: replaces 8 to 35 % of it by other speech, or cuts as much out.
/// @param phrase      samples of the phrase, without the silence around it
/// @param background  recordings to take other speech from; where there are none, a part is always cut out
std::vector<float> DamageTake(std::span<const float> phrase, std::span<const std::vector<float>> background,
                              RandomStream* random);

} // namespace velox::engine
