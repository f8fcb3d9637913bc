#include "engine/listening/PhraseDetector.h"

#include "engine/listening/PathDescription.h"
#include "engine/listening/SpeakerRatio.h"
#include "engine/sound/Cepstrum.h"
#include "engine/sound/Endpointing.h"

#include <algorithm>
#include <limits>

namespace velox::engine
{

PhraseDetector::PhraseDetector(const PhraseModel& phrase)
    : model(phrase), stream(phrase.statistics), network(phrase.network), decoder(phrase.states), history(HistoryFrames),
      speakerFrames(CepstralFrameSize, HistoryFrames), peak{std::numeric_limits<float>::lowest(), -1, decoder.BestPath()}
{
    phraseFeatures.reserve(HistoryFrames);
}

int64_t PhraseDetector::FlushFrames() const
{
    return model.network.LookAhead() + PeakFrames;
}

std::optional<Detection> PhraseDetector::Push(const float* samples)
{
    if (!stream.Push(samples, &frame))
    {
        return std::nullopt;
    }
    analysed = true;
    history[static_cast<std::size_t>(frames % HistoryFrames)] = frame.feature;
    ++frames;

    const Eigen::VectorXf* posteriors = network.Push(frame.feature);
    if (posteriors == nullptr)
    {
        return std::nullopt;
    }
    const int64_t decoded = decoder.FrameCount();
    if (decoder.Push(posteriors->data()))
    {
        const float score = SoftMinimumScore(decoder.BestPath());
        firstStage = ScoreScale::FromFactors(model.searchTail.FactorsBelowHalf(score));
        // What is left of a phrase that was judged scores, too, for a while: only a better end or a later start is new.
        const bool isNew = score > peak.score || decoder.BestPath().startFrame > peak.endFrame;
        if (*firstStage >= LeastPeak && isNew)
        {
            peakPending = true;
            peak.score = score;
            peak.endFrame = decoded;
            peak.path = decoder.BestPath();
        }
    }
    if (peakPending && decoded - peak.endFrame >= PeakFrames)
    {
        peakPending = false;
        return Judge(peak);
    }
    return std::nullopt;
}

/// The decoder's frame n is the analysed frame n + look-ahead: the network needs as many before its first output.
float PhraseDetector::JudgeSpeaker(const Peak& found)
{
    phraseFeatures.clear();
    for (int64_t n = found.path.startFrame; n <= found.endFrame; ++n)
    {
        phraseFeatures.push_back(history[static_cast<std::size_t>((n + model.network.LookAhead()) % HistoryFrames)]);
    }
    const auto count = static_cast<Eigen::Index>(phraseFeatures.size());
    StretchCepstra(phraseFeatures, speakerFrames.leftCols(count));
    return SpeakerRatio(*model.speaker, speakerFrames.leftCols(count), found.path.counts);
}

Detection PhraseDetector::Judge(const Peak& found)
{
    Detection detection;
    const int64_t lookAhead = model.network.LookAhead();
    const auto halfFrame = static_cast<int64_t>(FrameSize / 2);
    // The states were learned from takes with padding around the speech; the first one holds the padding, while the last sounds
    // of a phrase often fade into theirs.
    constexpr auto Padding = static_cast<int64_t>(EndpointPadding * FrameSize);
    detection.startSample = FeatureStream::MiddleSample(found.path.startFrame + lookAhead) - halfFrame + Padding;
    detection.endSample = FeatureStream::MiddleSample(found.endFrame + lookAhead) + halfFrame;
    detection.searchScore = ScoreScale::FromFactors(model.searchTail.FactorsBelowHalf(found.score));
    const float phrase = JudgePath(model, found.path);
    detection.phraseScore = ScoreScale::FromFactors(phrase);
    detection.score = detection.phraseScore;
    if (model.speaker)
    {
        detection.score = ScoreScale::Least;
        if (frames - (found.path.startFrame + lookAhead) <= HistoryFrames)
        {
            detection.speakerRatio = JudgeSpeaker(found);
            const float sum = phrase + SpeakerModel::Weight * detection.speakerRatio;
            detection.score =
                ScoreScale::FromFactors(std::min(sum - model.speaker->threshold, phrase + SpeakerModel::MostAbovePhrase));
        }
    }
    return detection;
}

} // namespace velox::engine
