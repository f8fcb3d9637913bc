#pragma once

#include "console/audio/RecentSound.h"
#include "console/listening/Listening.h"

namespace velox::console
{

/// One run of the simulator over one piece of audio, of which nothing is kept but its shape and the last seconds.
class ListeningRun
{
public:
    using PhraseObserver = std::function<void(const HeardPhrase&)>;

    /// Sets the patterns and arms.
    /// @param setup     must outlive this, as parse must
    /// @param observer  is told of each phrase that fires, at once, and of each near miss a second later; may be empty
    /// @param sounds    counts the saved sounds of all runs
    /// @param file      receives what is heard
    /// @throws CommandFailure BadInput when the simulator refuses the pattern
    ListeningRun(const ListeningSetup& setup, const BlockParser& parse, PhraseObserver observer, std::size_t* sounds,
                 HeardFile* file);
    ListeningRun(const ListeningRun&) = delete;
    ListeningRun& operator=(const ListeningRun&) = delete;

    const firmware::DspSimulator& Dsp() const
    {
        return dsp;
    }

    /// Samples heard so far.
    int64_t HeardSamples() const
    {
        return recent.Heard();
    }

    /// @throws CommandFailure Interrupted after Ctrl-C, when a sound is to be saved
    void Hear(std::span<const float> samples);

    /// When no more audio comes.
    /// @throws CommandFailure as Hear
    void Finish();

private:
    void HearBlock(std::span<const float> block);
    void Observe(const HeardPhrase& phrase) const;
    void ConcludePhrases(int64_t upTo);
    void Conclude(HeardPhrase* phrase);
    Picture CloseUp(const engine::Detection& phrase) const;
    void SaveSound(HeardPhrase* phrase);

    const ListeningSetup& setup;
    const BlockParser& parse;
    PhraseObserver observer;
    std::size_t& savedSounds;
    HeardFile& heard;
    firmware::DspSimulator dsp;
    RecentSound recent;
    WaveBuilder wave;
};

} // namespace velox::console
