#include "engine/enrollment/Room.h"

#include "engine/base/AudioFormat.h"
#include "engine/base/RandomStream.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace velox::engine
{

namespace
{

/// Between the direct sound and the first reflection: 2 ms.
constexpr std::size_t FirstReflection = SampleRate / 500;

} // namespace

std::vector<float> RoomResponse(const Room& room)
{
    const double samples = room.reverberationTime * static_cast<double>(SampleRate);
    const double decay = std::pow(10.0, -3.0 / samples); // 60 dB are a factor of 1000
    std::vector<float> response(std::max(static_cast<std::size_t>(samples), FirstReflection + 1), 0.0F);

    RandomStream random(room.seed);
    double amplitude = 1.0;
    double energy = 0.0;
    for (std::size_t i = FirstReflection; i < response.size(); ++i)
    {
        const double value = amplitude * (2.0 * random.Uniform() - 1.0);
        response[i] = static_cast<float>(value);
        energy += value * value;
        amplitude *= decay;
    }

    const auto gain = static_cast<float>(std::pow(10.0, -room.directToReverberant / 20.0) / std::sqrt(energy));
    for (float& value : response)
    {
        value *= gain;
    }
    response.front() = 1.0F;
    return response;
}

} // namespace velox::engine
