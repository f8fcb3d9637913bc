#include "engine/training/DroppingRectifier.h"

#include <cmath>

namespace velox::engine
{

namespace
{

constexpr unsigned ChanceBits = 16;
constexpr uint64_t ChanceMask = (1U << ChanceBits) - 1;

} // namespace

DroppingRectifier::DroppingRectifier(double share)
    : threshold(static_cast<uint64_t>(std::lround(share * (1U << ChanceBits)))), scale(static_cast<float>(1.0 / (1.0 - share)))
{
}

void DroppingRectifier::Forward(RandomStream* random, Eigen::MatrixXf* values) const
{
    *values = scale * values->cwiseMax(0.0F);
    if (threshold == 0)
    {
        return;
    }
    uint64_t chances = 0;
    for (Eigen::Index i = 0; i < values->size(); ++i)
    {
        chances = i % (64 / ChanceBits) == 0 ? random->Bits() : chances >> ChanceBits;
        if ((chances & ChanceMask) < threshold)
        {
            values->data()[i] = 0.0F;
        }
    }
}

void DroppingRectifier::Backward(const Eigen::MatrixXf& outputs, Eigen::MatrixXf* gradient) const
{
    gradient->array() *= scale * (outputs.array() > 0.0F).cast<float>();
}

} // namespace velox::engine
