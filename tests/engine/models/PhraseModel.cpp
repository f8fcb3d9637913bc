#include "engine/models/PhraseModel.h"

#include "engine/listening/PhraseDetector.h"
#include "tests/engine/support/BlobDamage.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <functional>

namespace PhraseModelTests
{

using namespace velox::engine;
using Model = velox::engine::PhraseModel;

Status Read(const std::vector<uint8_t>& blob)
{
    Model model;
    return ReadPhraseModel(blob.data(), &model);
}

TEST(PhraseModel, ComesBackAsItWasWritten)
{
    const Model written = TinyLanguage::UserPhrase();
    const std::vector<uint8_t> blob = WritePhraseModel(written);
    Model read;
    ASSERT_EQ(ReadPhraseModel(blob.data(), &read), Status::Success);
    EXPECT_EQ(read.statistics.startShape, written.statistics.startShape);
    EXPECT_EQ(read.statistics.deviation, written.statistics.deviation);
    EXPECT_EQ(read.states.meanDuration, written.states.meanDuration);
    EXPECT_EQ(read.states.logPrior, written.states.logPrior);
    ASSERT_EQ(read.network.layers.size(), 1U);
    EXPECT_EQ(read.network.layers[0].kernel, 3);
    EXPECT_EQ(read.network.layers[0].dilation, 2);
    EXPECT_TRUE(read.network.layers[0].weights.isApprox(written.network.layers[0].weights));
    EXPECT_EQ(read.network.layers[0].bias, written.network.layers[0].bias);
    EXPECT_EQ(read.searchTail.start, written.searchTail.start);
    EXPECT_EQ(read.searchTail.slope, written.searchTail.slope);
    EXPECT_EQ(read.judge.weights, written.judge.weights);
    EXPECT_EQ(read.judge.bias, written.judge.bias);
    EXPECT_EQ(read.tail.start, written.tail.start);
    EXPECT_EQ(read.tail.slope, written.tail.slope);
    ASSERT_TRUE(read.speaker.has_value());
    EXPECT_EQ(read.speaker->threshold, written.speaker->threshold);
    EXPECT_EQ(read.speaker->user.size(), TinyLanguage::States);
}

TEST(PhraseModel, WhatWasReadWritesTheSameBytes)
{
    for (const Model& model : {TinyLanguage::Phrase(), TinyLanguage::UserPhrase()})
    {
        const std::vector<uint8_t> blob = WritePhraseModel(model);
        Model read;
        ASSERT_EQ(ReadPhraseModel(blob.data(), &read), Status::Success);
        EXPECT_EQ(WritePhraseModel(read), blob);
    }
}

TEST(PhraseModel, ContentsThatCannotBeAModelAreRefused)
{
    const std::vector<std::pair<const char*, std::function<void(Model*)>>> faults{
        {"a deviation of 0",
         [](Model* model) {
             model->statistics.deviation[3] = 0.0F;
         }},
        {"a duration of 0",
         [](Model* model) {
             model->states.meanDuration[1] = 0.0F;
         }},
        {"a tail that does not fall",
         [](Model* model) {
             model->tail.slope = 0.0F;
         }},
        {"a tail of the search that rises",
         [](Model* model) {
             model->searchTail.slope = -1.0F;
         }},
        {"no layers",
         [](Model* model) {
             model->network.layers.clear();
         }},
        {"a kernel of 0",
         [](Model* model) {
             model->network.layers[0].kernel = 0;
             model->network.layers[0].weights.resize(5, 0);
         }},
        {"a dilation of 0",
         [](Model* model) {
             model->network.layers[0].dilation = 0;
         }},
        {"fewer outputs than states and the background",
         [](Model* model) {
             model->network.layers[0].weights.conservativeResize(4, Eigen::NoChange);
             model->network.layers[0].bias.conservativeResize(4);
         }},
        {"no states",
         [](Model* model) {
             model->states.meanDuration.clear();
             model->states.logPrior.resize(1);
         }},
        {"mixtures of another dimension",
         [](Model* model) {
             const GaussianMixture mixture(Eigen::VectorXf::Ones(1), Eigen::MatrixXf::Zero(13, 1), Eigen::MatrixXf::Ones(13, 1));
             model->speaker->user.assign(TinyLanguage::States, mixture);
         }},
    };
    for (const auto& [name, spoil] : faults)
    {
        SCOPED_TRACE(name);
        Model model = TinyLanguage::UserPhrase();
        spoil(&model);
        EXPECT_EQ(Read(WritePhraseModel(model)), Status::MalformedBlob);
    }
}

TEST(PhraseModel, NumbersThatCannotBeLearnedAreRefused)
{
    const std::vector<std::pair<const char*, std::function<void(Model*)>>> faults{
        {"a deviation that divides to infinity",
         [](Model* model) {
             model->statistics.deviation[3] = 1e-40F;
         }},
        {"a shape",
         [](Model* model) {
             model->statistics.startShape[3] = 1e30F;
         }},
        {"a duration",
         [](Model* model) {
             model->states.meanDuration[0] = 1e-40F;
         }},
        {"a prior",
         [](Model* model) {
             model->states.logPrior[0] = -1e30F;
         }},
        {"a weight",
         [](Model* model) {
             model->network.layers[0].weights(0, 0) = 1e30F;
         }},
        {"a bias",
         [](Model* model) {
             model->network.layers[0].bias(0) = 1e30F;
         }},
        {"the tail",
         [](Model* model) {
             model->tail.start = 1e30F;
         }},
        {"the judge",
         [](Model* model) {
             model->judge.weights[2] = -1e30F;
         }},
        {"its bias",
         [](Model* model) {
             model->judge.bias = 1e30F;
         }},
        {"the user's threshold",
         [](Model* model) {
             model->speaker->threshold = 1e30F;
         }},
    };
    for (const auto& [name, spoil] : faults)
    {
        SCOPED_TRACE(name);
        Model model = TinyLanguage::UserPhrase();
        spoil(&model);
        EXPECT_EQ(Read(WritePhraseModel(model)), Status::MalformedBlob);
    }
}

TEST(PhraseModel, TheModelIsUntouchedWhenReadingFails)
{
    std::vector<uint8_t> blob = WritePhraseModel(TinyLanguage::Phrase());
    blob.back() ^= 1U;
    Model model;
    model.tail.start = 42.0F;
    EXPECT_EQ(ReadPhraseModel(blob.data(), &model), Status::BlobChecksum);
    EXPECT_EQ(model.tail.start, 42.0F);
}

/// A model that is read is fit for use, whatever stands in it.
TEST(PhraseModel, DamageIsRefusedOrHarmless)
{
    const std::vector<float> audio = TinyLanguage::SayPhrase();
    BlobDamage::ExpectDamageIsRefused(WritePhraseModel(TinyLanguage::UserPhrase()), [&](const std::vector<uint8_t>& blob) {
        Model model;
        const Status status = ReadPhraseModel(blob.data(), &model);
        if (status == Status::Success)
        {
            PhraseDetector detector(model);
            for (std::size_t start = 0; start + FrameSize <= audio.size(); start += FrameSize)
            {
                if (const auto detection = detector.Push(audio.data() + start))
                {
                    EXPECT_GE(detection->score, ScoreScale::Least);
                    EXPECT_LE(detection->score, ScoreScale::Most);
                }
            }
        }
        return status;
    });
}

} // namespace PhraseModelTests
