#include "engine/sound/FastConvolution.h"

#include <kiss_fftr.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <new>

namespace velox::engine
{

namespace
{

using Spectrum = std::vector<kiss_fft_cpx>;

/// A transform of real signals, forth and back.
class RealTransform
{
public:
    explicit RealTransform(std::size_t size)
        : length(size), forward(kiss_fftr_alloc(static_cast<int>(size), 0, nullptr, nullptr), &kiss_fftr_free),
          backward(kiss_fftr_alloc(static_cast<int>(size), 1, nullptr, nullptr), &kiss_fftr_free), buffer(size)
    {
        if (forward == nullptr || backward == nullptr)
        {
            throw std::bad_alloc();
        }
    }

    /// @param samples  at most the transform's size; zeros follow
    void Forward(std::span<const float> samples, Spectrum* spectrum)
    {
        std::copy(samples.begin(), samples.end(), buffer.begin());
        std::fill(buffer.begin() + static_cast<std::ptrdiff_t>(samples.size()), buffer.end(), 0.0F);
        spectrum->resize(length / 2 + 1);
        kiss_fftr(forward.get(), buffer.data(), spectrum->data());
    }

    /// @return as many samples as the transform's size, valid until the next call
    std::span<const float> Backward(const Spectrum& spectrum)
    {
        kiss_fftri(backward.get(), spectrum.data(), buffer.data());
        return buffer;
    }

private:
    using State = std::unique_ptr<kiss_fftr_state, void (*)(void*)>;

    std::size_t length;
    State forward;
    State backward;
    std::vector<float> buffer;
};

void Multiply(const Spectrum& factor, float scale, Spectrum* product)
{
    for (std::size_t i = 0; i < factor.size(); ++i)
    {
        const kiss_fft_cpx a = (*product)[i];
        const kiss_fft_cpx b = factor[i];
        (*product)[i].r = scale * (a.r * b.r - a.i * b.i);
        (*product)[i].i = scale * (a.r * b.i + a.i * b.r);
    }
}

} // namespace

std::vector<float> FilterSignal(std::span<const float> signal, std::span<const float> response, std::size_t delay)
{
    constexpr std::size_t ResponsesPerBlock = 3;
    constexpr std::size_t LeastBlock = 1024;

    if (signal.empty())
    {
        return {};
    }
    const std::size_t block = std::min(signal.size(), std::max(LeastBlock, ResponsesPerBlock * response.size()));
    const std::size_t length = block + response.size() - 1;
    const auto size = static_cast<std::size_t>(kiss_fftr_next_fast_size_real(static_cast<int>(std::max<std::size_t>(length, 2))));
    RealTransform transform(size);
    Spectrum responseSpectrum;
    transform.Forward(response, &responseSpectrum);
    std::vector<float> sum(signal.size() + length, 0.0F);
    Spectrum spectrum;
    for (std::size_t start = 0; start < signal.size(); start += block)
    {
        transform.Forward(signal.subspan(start, std::min(block, signal.size() - start)), &spectrum);
        Multiply(responseSpectrum, 1.0F / static_cast<float>(size), &spectrum);
        const std::span<const float> filtered = transform.Backward(spectrum).first(length);
        std::transform(filtered.begin(), filtered.end(), sum.begin() + static_cast<std::ptrdiff_t>(start),
                       sum.begin() + static_cast<std::ptrdiff_t>(start), std::plus<>());
    }
    const auto first = sum.begin() + static_cast<std::ptrdiff_t>(delay);
    return {first, first + static_cast<std::ptrdiff_t>(signal.size())};
}

} // namespace velox::engine
