#pragma once

#include "engine/models/Blob.h"
#include "engine/models/GaussianMixture.h"

#include <optional>

namespace velox::engine
{

/// Writes mixtures that share their variances. At least one.
void WriteMixtures(std::span<const GaussianMixture> mixtures, BlobWriter* writer);

/// @return nothing when a weight, mean or variance is out of bounds, or when the mixtures are not of cepstral frames
std::optional<std::vector<GaussianMixture>> ReadMixtures(std::size_t count, BlobReader* reader);

} // namespace velox::engine
