#pragma once

#include <samplerate.h>

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace velox::console
{

/// Brings mono sound of any rate to 16 kHz, piece by piece.
class Resampler
{
public:
    /// @param source  where the sound comes from, for messages
    /// @param rate    of what comes in, in Hz
    /// @throws CommandFailure BadInput for a rate that cannot be converted
    Resampler(std::string source, int rate);

    /// @param last   nothing follows: what is held back comes out
    /// @param block  what became of the sound is added to it
    void Convert(std::span<const float> mono, bool last, std::vector<float>* block);

private:
    struct DeleteConverter
    {
        void operator()(SRC_STATE* state) const
        {
            src_delete(state);
        }
    };

    void Check(int error) const;

    std::string source;
    int rate;
    std::unique_ptr<SRC_STATE, DeleteConverter> converter; ///< null at 16 kHz
};

/// "converted from 44.1 kHz stereo"; empty when there is nothing to convert.
std::string ConversionText(int rate, int channels);

} // namespace velox::console
