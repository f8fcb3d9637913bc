#pragma once

#include "engine/models/Blob.h"
#include "engine/models/LogisticRegression.h"
#include "engine/models/Network.h"
#include "engine/models/ScoreScale.h"
#include "engine/models/SpeakerModel.h"
#include "engine/models/StateModel.h"
#include "engine/sound/ChannelNormalizer.h"

#include <optional>

namespace velox::engine
{

/// All that listening for one phrase needs: what the firmware runs, and what a key-phrase model holds. With a speaker part it is
/// a user's model.
struct PhraseModel
{
    /// Numbers by which a path is judged.
    static constexpr Eigen::Index PathFeatures = 9;

    FeatureStatistics statistics;
    Network network;
    StateModel states;
    BackgroundTail searchTail; ///< of the search's scores
    /// Judges a peak of the search: log odds that its path is the phrase, and neither a near phrase nor background (two stages:
    /// Gruenstein, Alvarez, Thornton and Ghodrat, "A cascade architecture for keyword spotting on mobile devices", 2017).
    LogisticRegression judge;
    BackgroundTail tail; ///< of the judge's log odds
    std::optional<SpeakerModel> speaker;
};

/// The model's bytes, of the kind BlobKind::Firmware. Weights are quantised to 16 bits.
std::vector<uint8_t> WritePhraseModel(const PhraseModel& model);

/// @param blob   at least as many bytes as its header says
/// @param model  written only on success
Status ReadPhraseModel(const uint8_t* blob, PhraseModel* model);

/// Reads a phrase model that stands in another model, behind its length.
Status ReadNestedPhraseModel(BlobReader* reader, PhraseModel* model);

} // namespace velox::engine
