#include "benchmarks/Measurement.h"
#include "engine/base/RandomStream.h"
#include "engine/sound/Cepstrum.h"
#include "engine/training/TrainingNetwork.h"
#include "firmware/DspSimulator.h"
#include "firmware/LittleEndian.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <vector>

namespace
{

using namespace velox;

constexpr double Goal = 0.003;
constexpr double Seconds = 10.0;
constexpr std::size_t BlockSize = 480; // 30 ms
/// States of a phrase of four syllables.
constexpr int States = 24;
constexpr Eigen::Index MixtureComponents = 10;
constexpr firmware::DetectorId Detector{};
/// Nothing fires, so that all of the audio is listened to.
constexpr uint32_t HighestThreshold = 255 * 256;

engine::GaussianMixture RandomMixture(engine::RandomStream* random)
{
    Eigen::MatrixXf means(engine::CepstralFrameSize, MixtureComponents);
    for (float& mean : means.reshaped())
    {
        mean = static_cast<float>(random->Uniform());
    }
    return {Eigen::VectorXf::Constant(MixtureComponents, 1.0F / MixtureComponents), means,
            Eigen::MatrixXf::Ones(engine::CepstralFrameSize, MixtureComponents)};
}

/// A user's model with the sizes of a trained one. Its weights are random: the work does not depend on them.
engine::PhraseModel FullSizeModel()
{
    engine::RandomStream random(1);
    engine::TrainingNetwork network(engine::TimeDelayShapes(States), &random);
    std::vector<engine::RowStatistics> rows;
    for (const engine::LayerShape& shape : network.Shapes())
    {
        rows.push_back({Eigen::VectorXf::Zero(shape.outputs), Eigen::VectorXf::Ones(shape.outputs)});
    }
    rows.pop_back();

    engine::PhraseModel model;
    model.statistics.startShape.fill(0.0F);
    model.statistics.mean.fill(0.0F);
    model.statistics.deviation.fill(1.0F);
    model.network = network.Fold(rows);
    model.states.meanDuration.assign(States, 5.0F);
    model.states.logPrior.assign(States + 1, -1.0F);
    model.judge.weights = Eigen::VectorXf::Ones(engine::PhraseModel::PathFeatures);
    std::vector<engine::GaussianMixture> mixtures;
    for (int i = 0; i < States; ++i)
    {
        mixtures.push_back(RandomMixture(&random));
    }
    model.speaker = engine::SpeakerModel{mixtures, mixtures, 100.0F};
    return model;
}

/// As BuildArmingPatternData returns it.
std::vector<uint8_t> Pattern(const engine::PhraseModel& model)
{
    using Layout = firmware::PatternLayout;
    const std::vector<uint8_t> blob = engine::WritePhraseModel(model);
    std::vector<uint8_t> block(Layout::ModelOffset + blob.size());
    std::copy(blob.begin(), blob.end(), block.begin() + Layout::ModelOffset);
    firmware::WriteUnsigned(static_cast<uint32_t>(block.size()), Layout::SizeOffset, block);
    firmware::WriteUnsigned(Layout::Signature, Layout::SignatureOffset, block);
    firmware::WriteUnsigned(HighestThreshold, Layout::ThresholdOffset, block);
    firmware::WriteUnsigned(Layout::Limit, Layout::LimitOffset, block);
    firmware::WriteUnsigned(static_cast<uint32_t>(blob.size()), Layout::ModelSizeOffset, block);
    return block;
}

struct Listener
{
    explicit Listener(const engine::PhraseModel& model)
    {
        engine::RandomStream random(2);
        for (std::size_t i = 0; i < static_cast<std::size_t>(Seconds) * engine::SampleRate; ++i)
        {
            audio.push_back(static_cast<float>(0.2 * random.Uniform() - 0.1));
        }
        if (dsp.SetPattern(Pattern(model)) || !dsp.Arm())
        {
            throw std::runtime_error("the pattern is refused");
        }
    }

    void Listen()
    {
        for (std::span<const float> rest = audio; !rest.empty();)
        {
            std::span<const float> block = rest.first(std::min(BlockSize, rest.size()));
            rest = rest.subspan(block.size());
            if (dsp.Hear(&block) || !dsp.IsArmed())
            {
                throw std::runtime_error("something fired");
            }
        }
    }

    std::vector<float> audio;
    uint64_t peaks = 0;
    firmware::DspSimulator dsp{Detector, {}, [this](const firmware::Peak&) {
                                   ++peaks;
                               }};
};

} // namespace

void RegisterListening()
{
    engine::PhraseModel model = FullSizeModel();
    model.searchTail.start = 100.0F; // no score comes near
    const auto background = std::make_shared<Listener>(model);
    Register(
        RealTimeMeasurement{"DspSimulator::Hear, to the audio's length", Goal, [background] { background->Listen(); }, Seconds});

    // Every peak of the score is judged by the second stage.
    model.searchTail.start = -100.0F;
    const auto peaks = std::make_shared<Listener>(model);
    Register(RealTimeMeasurement{"DspSimulator::Hear, peaks without end", Goal,
                                 [peaks] {
                                     const uint64_t before = peaks->peaks;
                                     peaks->Listen();
                                     if (peaks->peaks == before)
                                     {
                                         throw std::runtime_error("nothing was judged");
                                     }
                                 },
                                 Seconds});
}
