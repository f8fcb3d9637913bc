#include "evaluation/Corpus.h"

#include "engine/base/AudioFormat.h"
#include "evaluation/AudioFile.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace velox::evaluation
{

std::vector<Entry> ReadManifest(const std::string& folder)
{
    std::ifstream file(folder + "/manifest.tsv");
    if (!file)
    {
        throw std::runtime_error("there is no manifest in " + folder);
    }
    std::vector<Entry> entries;
    for (std::string line; std::getline(file, line);)
    {
        std::istringstream fields(line);
        Entry entry;
        for (std::string* field : {&entry.split, &entry.phrase, &entry.set, &entry.kind, &entry.voice, &entry.sex, &entry.path})
        {
            std::getline(fields, *field, '\t');
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

std::vector<Clip> ReadClips(const std::vector<Entry>& manifest, const std::string& split, const std::string& phrase,
                            const std::string& set)
{
    std::vector<Clip> clips;
    for (const Entry& entry : manifest)
    {
        if (entry.split == split && entry.phrase == phrase && entry.set.starts_with(set))
        {
            clips.push_back({entry, ReadAudioFile(entry.path)});
        }
    }
    return clips;
}

std::vector<Clip> PeopleOf(const std::vector<Clip>& clips, bool human)
{
    std::vector<Clip> chosen;
    std::copy_if(clips.begin(), clips.end(), std::back_inserter(chosen),
                 [human](const Clip& clip) { return (clip.entry.kind == "human") == human; });
    return chosen;
}

double HoursOf(const std::vector<Clip>& clips)
{
    double samples = 0.0;
    for (const Clip& clip : clips)
    {
        samples += static_cast<double>(clip.samples.size());
    }
    return samples / engine::SampleRate / 3600.0;
}

} // namespace velox::evaluation
