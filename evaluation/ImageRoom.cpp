#include "evaluation/ImageRoom.h"

#include "engine/base/AudioFormat.h"
#include "engine/base/RandomStream.h"

#include <array>
#include <cmath>

namespace velox::evaluation
{

namespace
{

constexpr double SpeedOfSound = 343.0;
constexpr double EyringConstant = 0.161;

using Place = std::array<double, 3>; // metres

struct Box
{
    Place size{};
    Place microphone{};
    Place talker{};
};

double Distance(const Place& a, const Place& b)
{
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

double Between(engine::RandomStream* random, double least, double most)
{
    return least + (most - least) * random->Uniform();
}

Box DrawBox(engine::RandomStream* random)
{
    Box box;
    box.size = {Between(random, 3.0, 6.0), Between(random, 2.5, 5.0), Between(random, 2.3, 3.0)};
    do
    {
        for (std::size_t axis = 0; axis < 3; ++axis)
        {
            box.microphone[axis] = Between(random, 0.3, box.size[axis] - 0.3);
            box.talker[axis] = Between(random, 0.3, box.size[axis] - 0.3);
        }
    } while (Distance(box.microphone, box.talker) < 0.5 || Distance(box.microphone, box.talker) > 1.2);
    return box;
}

/// Share of a sound's pressure that a wall throws back: inverted, or the many late images would add up to a pressure that hardly
/// changes.
double Reflection(const Place& size, double reverberationTime)
{
    const double volume = size[0] * size[1] * size[2];
    const double surface = 2.0 * (size[0] * size[1] + size[0] * size[2] + size[1] * size[2]);
    return -std::exp(-EyringConstant * volume / (2.0 * surface * reverberationTime));
}

/// A talker's images along one axis: where they stand and how many walls they went by.
struct Image
{
    double distance = 0.0; ///< to the microphone along this axis
    int walls = 0;
};

std::vector<Image> ImagesAlong(double size, double microphone, double talker, double reach)
{
    std::vector<Image> images;
    const int most = static_cast<int>(reach / (2.0 * size)) + 1;
    for (int n = -most; n <= most; ++n)
    {
        images.push_back({2.0 * n * size + talker - microphone, 2 * std::abs(n)});
        images.push_back({2.0 * n * size - talker - microphone, std::abs(2 * n - 1)});
    }
    return images;
}

} // namespace

std::vector<float> ImageRoomResponse(double reverberationTime, uint64_t seed)
{
    engine::RandomStream random(seed);
    const Box box = DrawBox(&random);
    const double reflection = Reflection(box.size, reverberationTime);
    const double direct = Distance(box.microphone, box.talker);
    const double reach = direct + reverberationTime * SpeedOfSound;
    std::array<std::vector<Image>, 3> images;
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        images[axis] = ImagesAlong(box.size[axis], box.microphone[axis], box.talker[axis], reach);
    }
    std::vector<float> response(static_cast<std::size_t>(reverberationTime * engine::SampleRate) + 1, 0.0F);
    for (const Image& x : images[0])
    {
        for (const Image& y : images[1])
        {
            for (const Image& z : images[2])
            {
                const double distance = std::hypot(x.distance, y.distance, z.distance);
                const auto delay = static_cast<std::size_t>((distance - direct) / SpeedOfSound * engine::SampleRate + 0.5);
                if (delay < response.size())
                {
                    response[delay] += static_cast<float>(direct / distance * std::pow(reflection, x.walls + y.walls + z.walls));
                }
            }
        }
    }
    return response;
}

} // namespace velox::evaluation
