#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace velox::console
{

/// How loud it is just now.
class LevelMeter
{
public:
    void Hear(std::span<const float> samples);

    /// Of what was heard since the last time: "-32 dB [#########           ]", relative to a full-scale square wave; the bar
    /// begins at -60 dB.
    std::string Text();

private:
    double energy = 0.0;
    std::size_t count = 0;
};

} // namespace velox::console
