#include "engine/sound/FastConvolution.h"

#include "tests/engine/support/Signals.h"

#include <gmock/gmock.h>

namespace FastConvolutionTests
{

using namespace velox::engine;
using testing::FloatNear;
using testing::IsEmpty;
using testing::Pointwise;

std::vector<float> Directly(const std::vector<float>& signal, const std::vector<float>& response, std::size_t delay)
{
    std::vector<float> result(signal.size());
    for (std::size_t i = 0; i < signal.size(); ++i)
    {
        double sum = 0.0;
        for (std::size_t k = 0; k < response.size() && k <= i + delay; ++k)
        {
            if (i + delay - k < signal.size())
            {
                sum += static_cast<double>(response[k]) * static_cast<double>(signal[i + delay - k]);
            }
        }
        result[i] = static_cast<float>(sum);
    }
    return result;
}

TEST(FastConvolution, GivesTheSumsOfProductsByHand)
{
    EXPECT_THAT(FilterSignal(std::vector{1.0F, 2.0F, 0.0F, -1.0F}, std::vector{1.0F, 10.0F, 100.0F}),
                Pointwise(FloatNear(1e-4F), {1.0F, 12.0F, 120.0F, 199.0F}));
}

TEST(FastConvolution, TakesTheDelayOut)
{
    EXPECT_THAT(FilterSignal(std::vector{1.0F, 2.0F, 0.0F, -1.0F}, std::vector{1.0F, 10.0F, 100.0F}, 1),
                Pointwise(FloatNear(1e-4F), {12.0F, 120.0F, 199.0F, -10.0F}));
}

TEST(FastConvolution, IsTheDirectSumAcrossBlocksOfEveryLength)
{
    for (const std::size_t signalSize : {1U, 7U, 1024U, 1025U, 5000U})
    {
        for (const std::size_t responseSize : {1U, 2U, 129U, 600U})
        {
            SCOPED_TRACE(testing::Message() << signalSize << " by " << responseSize);
            const std::vector<float> signal = Signals::Noise(1.0, signalSize, 1);
            const std::vector<float> response = Signals::Noise(0.1, responseSize, 2);
            const std::size_t delay = responseSize / 2;
            EXPECT_THAT(FilterSignal(signal, response, delay), Pointwise(FloatNear(1e-4F), Directly(signal, response, delay)));
        }
    }
}

TEST(FastConvolution, NothingStaysNothing)
{
    EXPECT_THAT(FilterSignal({}, std::vector{1.0F}), IsEmpty());
}

} // namespace FastConvolutionTests
