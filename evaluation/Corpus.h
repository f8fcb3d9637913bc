#pragma once

#include <string>
#include <vector>

namespace velox::evaluation
{

/// One line of the corpus's manifest.
struct Entry
{
    std::string split;  ///< train, dev or test: no voice stands in two of them
    std::string phrase; ///< a or b; - for background
    std::string set;    ///< take, near-..., background
    std::string kind;   ///< of voice: natural, formant, human; -accent where another language's voice reads the phrase
    std::string voice;
    std::string sex; ///< f or m; - where it was not noted
    std::string path;
};

/// @throws std::runtime_error when there is no manifest in the folder
std::vector<Entry> ReadManifest(const std::string& folder);

/// A recording of the corpus at 16 kHz, in [-1, 1].
struct Clip
{
    Entry entry;
    std::vector<float> samples;
};

/// Reads the recordings of a split whose set begins with `set`. @param phrase  - for background
std::vector<Clip> ReadClips(const std::vector<Entry>& manifest, const std::string& split, const std::string& phrase,
                            const std::string& set);

/// Recordings of people, or those of synthesisers.
std::vector<Clip> PeopleOf(const std::vector<Clip>& clips, bool human);

double HoursOf(const std::vector<Clip>& clips);

} // namespace velox::evaluation
