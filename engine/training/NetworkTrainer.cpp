#include "engine/training/NetworkTrainer.h"

#include "engine/base/WorkerPool.h"
#include "engine/training/Adam.h"
#include "engine/training/CropSampler.h"
#include "engine/training/OneCycleSchedule.h"
#include "engine/training/SmoothedCrossEntropy.h"
#include "engine/training/SpectrogramMasking.h"
#include "engine/training/TrainingNetwork.h"
#include "engine/training/TrainingPass.h"

#include <algorithm>
#include <stdexcept>

namespace velox::engine
{

namespace
{

/// Batches from which the fixed means and variances are taken, after the training.
constexpr int StatisticsBatches = 60;

/// A part of each batch, computed by one thread.
class Slice
{
public:
    Slice(const NetworkTrainerOptions& trainerOptions, const CropSampler& cropSampler, const TrainingNetwork& network,
          uint64_t seed)
        : options(trainerOptions), sampler(cropSampler), random(seed), crops(options.batchSize / options.slices),
          outputs(options.cropFrames / options.outputStep), pass(network, crops, outputs, options.outputStep),
          features(MelChannels, pass.CropFrames()), labels(static_cast<std::size_t>(crops) * static_cast<std::size_t>(outputs))
    {
    }

    /// Computes the gradient for fresh crops.
    void Learn()
    {
        const DroppingRectifier rectifier(options.dropout);
        DrawCrops();
        Eigen::MatrixXf& values = pass.Forward(rectifier, &random);
        const float scale = 1.0F / static_cast<float>(labels.size() * static_cast<std::size_t>(options.slices));
        SmoothedCrossEntropy(labels, static_cast<float>(options.labelSmoothing), scale, &values);
        pass.Backward(rectifier);
    }

    void PassWithoutDropout()
    {
        DrawCrops();
        pass.Forward(DroppingRectifier(0.0), &random);
    }

    const TrainingPass& Pass() const
    {
        return pass;
    }

private:
    void DrawCrops()
    {
        for (int crop = 0; crop < crops; ++crop)
        {
            const auto [sequence, first] = sampler.Draw(crop % 2 == 0, options.cropFrames, &random);
            for (Eigen::Index i = 0; i < outputs; ++i)
            {
                labels[static_cast<std::size_t>(i * crops + crop)] = sequence->Label(first + i * options.outputStep);
            }
            // The first output lies in the middle of its field.
            const int field = pass.CropFrames() - (outputs - 1) * options.outputStep;
            sequence->Copy(first - field / 2, &features);
            SpectrogramMasking::Apply(&random, &features);
            pass.SetCrop(crop, features);
        }
    }

    const NetworkTrainerOptions& options;
    const CropSampler& sampler;
    RandomStream random;
    int crops;
    int outputs;
    TrainingPass pass;
    Eigen::MatrixXf features;
    std::vector<int> labels;
};

/// The network, and the slices that the threads take through it.
class TrainingRun
{
public:
    TrainingRun(const NetworkTrainerOptions& trainerOptions, const CropSampler& sampler)
        : options(trainerOptions), random(options.seed), network(TimeDelayShapes(options.states), &random),
          pool(std::min(options.threads, options.slices))
    {
        slices.reserve(static_cast<std::size_t>(options.slices));
        for (int i = 0; i < options.slices; ++i)
        {
            slices.emplace_back(options, sampler, network, random.Bits());
        }
    }

    /// @return false when it was cancelled
    bool Learn(const TrainingProgress& progress)
    {
        const OneCycleSchedule schedule(options.peakRate, options.batches);
        Adam adam(network.Parameters().size());
        Eigen::VectorXf gradient;
        for (int batch = 0; batch < options.batches; ++batch)
        {
            pool.Run(options.slices, learnSlice);
            gradient = slices.front().Pass().Gradient();
            for (std::size_t i = 1; i < slices.size(); ++i)
            {
                gradient += slices[i].Pass().Gradient();
            }
            adam.Step(gradient, schedule.Rate(batch), &network.Parameters());
            if (!progress(static_cast<double>(batch + 1) / options.batches))
            {
                return false;
            }
        }
        return true;
    }

    /// The network for use, its normalisation held fast at the means and variances of fresh batches (Wu and Johnson, "Rethinking
    /// batch in BatchNorm", 2021).
    Network Fold()
    {
        std::vector<RowStatistics> statistics(network.Shapes().size() - 1);
        for (std::size_t layer = 0; layer < statistics.size(); ++layer)
        {
            statistics[layer].mean.setZero(network.Shapes()[layer].outputs);
            statistics[layer].variance.setZero(network.Shapes()[layer].outputs);
        }
        for (int batch = 0; batch < StatisticsBatches; ++batch)
        {
            pool.Run(options.slices, passSlice);
            AddStatistics(&statistics);
        }
        for (RowStatistics& rows : statistics)
        {
            const float share = 1.0F / static_cast<float>(StatisticsBatches * options.slices);
            rows.mean *= share;
            rows.variance = share * rows.variance - rows.mean.cwiseAbs2();
        }
        return network.Fold(statistics);
    }

private:
    /// Adds means, and squares to the variances.
    void AddStatistics(std::vector<RowStatistics>* statistics) const
    {
        for (const Slice& slice : slices)
        {
            for (std::size_t layer = 0; layer < statistics->size(); ++layer)
            {
                const BatchNormalization& normalization = slice.Pass().Normalization(layer);
                (*statistics)[layer].mean += normalization.Mean();
                (*statistics)[layer].variance += normalization.Variance() + normalization.Mean().cwiseAbs2();
            }
        }
    }

    const NetworkTrainerOptions& options;
    RandomStream random;
    TrainingNetwork network;
    std::vector<Slice> slices;
    WorkerPool pool;
    const WorkerPool::Work learnSlice = [this](int i) {
        slices[static_cast<std::size_t>(i)].Learn();
    };
    const WorkerPool::Work passSlice = [this](int i) {
        slices[static_cast<std::size_t>(i)].PassWithoutDropout();
    };
};

} // namespace

std::optional<Network> TrainNetwork(const std::vector<TrainingSequence>& sequences, const NetworkTrainerOptions& options,
                                    const TrainingProgress& progress)
{
    const CropSampler sampler(sequences, options.states, options.leftOut);
    if (sampler.Empty())
    {
        throw std::invalid_argument("No training sequence has any frames and weight.");
    }
    TrainingRun trainer(options, sampler);
    if (!trainer.Learn(progress))
    {
        return std::nullopt;
    }
    return trainer.Fold();
}

} // namespace velox::engine
