#pragma once

#include "engine/models/Population.h"
#include "engine/sound/Endpointing.h"
#include "engine/training/LanguageMaterial.h"
#include "engine/training/LanguageOptions.h"

#include <cstdint>
#include <span>
#include <vector>

/// A language made by hand, whose models need no training: the phrase is four tones of 150 ms one after the other, and the
/// network looks only at the four mel channels in which they lie. On the phrase every frame's log ratio is at its upper bound.
namespace TinyLanguage
{

inline constexpr std::size_t States = 4;
inline constexpr int ToneFrames = 15;
inline constexpr std::size_t ToneSamples = ToneFrames * velox::engine::FrameSize;
inline constexpr std::size_t PhraseSamples = States * ToneSamples;
/// How much later than its first tone a phrase is told to start, in samples: the padding of a learned phrase is taken off, which
/// the tones' model does not have.
inline constexpr std::size_t StartPadding = velox::engine::EndpointPadding * velox::engine::FrameSize;
/// Noise under every recording, so that silence is not digital zero.
inline constexpr double NoiseAmplitude = 0.003;

/// @return without a speaker part
velox::engine::PhraseModel Phrase();
/// The phrase with a speaker part, for which the user is like everybody.
velox::engine::PhraseModel UserPhrase();
velox::engine::AcousticModel Acoustic();
velox::engine::Population Background();

/// One speaker's way: a second, weaker tone goes with every tone.
struct Voice
{
    double amplitude = 0.2;
    double second = 0.0;    ///< amplitude of the second tone, relative
    double frequency = 0.0; ///< of the second tone
};

/// Tones by their state's number, or 4 to 7 for others, with noise around them.
/// @param before  samples of noise before
/// @param after   and after
std::vector<float> Say(std::span<const std::size_t> tones, std::size_t before, std::size_t after, const Voice& voice = {},
                       uint64_t seed = 1);

/// The four tones in their order, with half a second of noise before and after.
std::vector<float> SayPhrase(const Voice& voice = {}, uint64_t seed = 1);

/// Sound that is too quiet, with silence around it.
std::vector<float> Whisper();

/// Material to learn the same phrase from: a few voices say the four tones; the background is of other tones and half of these.
velox::engine::LanguageMaterial Material();
/// A training of a second, enough for tones.
velox::engine::LanguageOptions QuickTraining();

/// As callers of the engine feed it.
std::vector<int16_t> ToPcm(std::span<const float> samples);

} // namespace TinyLanguage
