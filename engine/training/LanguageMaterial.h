#pragma once

#include <string>
#include <vector>

namespace velox::engine
{

/// One recording of the phrase.
struct PhraseTake
{
    std::vector<float> samples; ///< 16 kHz, in [-1, 1]
    std::string name;           ///< for the report, for example the file's
    std::string voice;          ///< who says it; takes of one voice share it
    float weight = 1.0F;        ///< how often it is drawn in training, for rare kinds of voice
};

/// Recordings that a language is learned from.
struct LanguageMaterial
{
    std::vector<PhraseTake> takes;
    std::vector<std::vector<float>> background; ///< other speech and sounds, no phrase
};

} // namespace velox::engine
