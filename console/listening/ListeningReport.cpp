#include "console/listening/ListeningReport.h"

#include "console/audio/SampleTime.h"
#include "console/text/LanguageName.h"
#include "console/text/StatusText.h"
#include "console/text/Wording.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

/// Of less audio, in seconds, a rate per hour says nothing.
constexpr double LeastForRate = 360.0;

/// A Q8 score in the unit of the threshold files.
double ScoreOf(uint32_t q8)
{
    return static_cast<double>(q8) / 256.0;
}

std::optional<double> ScoreOf(std::optional<uint16_t> q8)
{
    return q8 ? std::optional(ScoreOf(uint32_t{*q8})) : std::nullopt;
}

/// All files together.
struct ListeningSums
{
    explicit ListeningSums(std::span<const HeardFile> files)
    {
        for (const HeardFile& file : files)
        {
            seconds += file.seconds;
            resets += file.deafFrom ? 1U : 0U;
            nearMisses += file.lowerNearMisses;
            highestSilent = std::max(highestSilent, file.highestSilent);
            for (const HeardPhrase& phrase : file.phrases)
            {
                nearMisses += phrase.isNear ? 1U : 0U;
                reported += phrase.block.empty() ? 0U : 1U;
                told += phrase.Told() ? 1U : 0U;
                refused += phrase.parsed.result != 0 ? 1U : 0U;
            }
            for (const CommandFailure& failure : file.failures)
            {
                unreadable += failure.exitCode == ExitCode::BadInput ? 1U : 0U;
                worst = worst == nullptr || failure.exitCode > worst->exitCode ? &failure : worst;
            }
        }
    }

    double seconds = 0.0;
    std::size_t reported = 0;
    std::size_t told = 0;
    std::size_t refused = 0;
    std::size_t resets = 0;
    std::size_t nearMisses = 0;
    std::size_t unreadable = 0;
    std::optional<uint16_t> highestSilent;
    const CommandFailure* worst = nullptr; ///< that which lost most has the highest exit code
};

/// What came of a phrase: in a word, and as it is drawn.
struct PhraseStatus
{
    const char* text;
    Tone tone;
    Mark::Kind mark;
};

PhraseStatus StatusOf(const HeardPhrase& phrase)
{
    return phrase.isNear   ? PhraseStatus{"near miss", Tone::Note, Mark::Kind::NearMiss}
           : phrase.Told() ? PhraseStatus{"detected", Tone::Good, Mark::Kind::Phrase}
                           : PhraseStatus{phrase.block.empty() ? "lost" : "reported", Tone::Bad, Mark::Kind::Fault};
}

/// Why a peak that was close did not fire, or what the host learned of one that did.
std::string WhatCameOf(const HeardPhrase& phrase, double threshold)
{
    const engine::Detection& place = phrase.peak.detection;
    const ParsedBlock& parsed = phrase.parsed;
    const auto clears = [threshold](float score) {
        return static_cast<double>(score) >= threshold;
    };
    return phrase.isNear
               ? clears(place.phraseScore) ? fmt::format("the words fit (score {:.1f}), the voice does not", place.phraseScore)
                 : clears(place.searchScore)
                     ? fmt::format("it sounds like a part of the phrase (score {:.1f} of the search alone)", place.searchScore)
                     : "the words are not clear enough"
           : phrase.block.empty() ? "the DSP reset itself instead of reporting it"
           : parsed.result != 0
               ? fmt::format("the library refuses the block: {} {}", ResultText(parsed.result), parsed.explanation)
           : parsed.keywordId == 0 ? "keyword id 0, no match: the block names a keyword that was not armed"
                                   : fmt::format("{}, user match: {}, counter {} to {}", LanguageText(parsed.language),
                                                 parsed.isUserMatch ? "yes" : "no", parsed.keywordStart, parsed.keywordEnd);
}

Mark MarkOf(const HeardPhrase& phrase)
{
    const engine::Detection& place = phrase.peak.detection;
    const double score = ScoreOf(phrase.peak.score);
    return {StatusOf(phrase).mark, Seconds(place.startSample), Seconds(place.endSample), fmt::format("score {:.1f}", score),
            score};
}

/// @param phrase  its picture is moved out
Entry PartOf(HeardPhrase& phrase, double threshold)
{
    const Mark mark = MarkOf(phrase);
    const PhraseStatus status = StatusOf(phrase);
    const ParsedBlock& parsed = phrase.parsed;
    const auto ifAccepted = [accepted = !phrase.block.empty() && parsed.result == 0](auto value) {
        return accepted ? Value(value) : Value();
    };
    const std::string cameOf = WhatCameOf(phrase, threshold);
    Entry part{ClockText(mark.begin) + " to " + ClockText(mark.end), status.text, status.tone};
    part.facts = {{"start", mark.begin},
                  {"end", mark.end},
                  {"score", mark.score, "score", fmt::format("{:.1f}", *mark.score)},
                  {"threshold", threshold, "threshold", fmt::format("{:.1f}", threshold)},
                  {"phraseScore", phrase.peak.detection.phraseScore},
                  {"result", phrase.block.empty() ? Value() : Value(ResultText(parsed.result))},
                  {"keywordId", ifAccepted(parsed.keywordId)},
                  {"language", ifAccepted(parsed.language)},
                  {"userMatch", ifAccepted(parsed.isUserMatch)},
                  {"keywordStart", ifAccepted(parsed.keywordStart)},
                  {"keywordEnd", ifAccepted(parsed.keywordEnd)},
                  {"reason", phrase.isNear ? Value(cameOf) : Value(), "what came of it", cameOf},
                  {"block", phrase.savedBlock.empty() ? Value() : Value(phrase.savedBlock), "block", phrase.savedBlock},
                  {"audio", phrase.savedAudio.empty() ? Value() : Value(phrase.savedAudio), "audio", phrase.savedAudio}};
    part.picture = std::move(phrase.picture);
    part.picture.threshold = threshold;
    return part;
}

/// What befell a file as a whole.
std::vector<Remark> RemarksOf(const HeardFile& file)
{
    std::vector<Remark> remarks;
    for (const CommandFailure& failure : file.failures)
    {
        const char* code = failure.exitCode == ExitCode::WriteFailed ? "NotWritten" : "NotHeard";
        remarks.push_back({Tone::Bad, code, failure.what(), failure.fix});
    }
    for (const std::string& warning : file.warnings)
    {
        remarks.push_back({Tone::Warning, "Audio", warning, ""});
    }
    if (file.overruns > 0)
    {
        remarks.push_back({Tone::Warning, "SoundLost",
                           fmt::format("sound was lost {}: a phrase may have been missed", Counted(file.overruns, "time")),
                           "The computer was too busy: end other programs."});
    }
    if (file.deafFrom)
    {
        remarks.push_back({Tone::Bad, "Reset",
                           fmt::format("the DSP reset itself at {}: pattern and arming are lost, and the last {} were not heard",
                                       ClockText(*file.deafFrom), DurationText(file.seconds - *file.deafFrom)),
                           ""});
    }
    if (file.lowerNearMisses > 0)
    {
        const std::string lower = Counted(file.lowerNearMisses, "lower near miss", "lower near misses");
        remarks.push_back({Tone::Note, "LowerNearMisses", "and " + lower, ""});
    }
    return remarks;
}

Entry EntryOf(HeardFile& file, double threshold, bool isLive)
{
    const ListeningSums sums({&file, 1});
    Entry entry{file.name};
    const bool whole =
        std::ranges::all_of(file.failures, [](const auto& failure) { return failure.exitCode == ExitCode::WriteFailed; });
    entry.status = !whole && sums.unreadable > 0 ? (isLive ? "gone" : "unreadable")
                   : !whole                      ? "interrupted"
                   : file.deafFrom               ? "deaf"
                   : sums.told < sums.reported   ? "reported"
                   : sums.told > 0               ? "detected"
                                                 : "nothing";
    entry.tone = entry.status == "detected" ? Tone::Good : entry.status == "nothing" ? Tone::Neutral : Tone::Bad;
    const auto highest = ScoreOf(file.highestSilent);
    entry.facts = {{"file", file.name},
                   {"seconds", file.seconds, "length", DurationText(file.seconds)},
                   {"conversion", file.conversion, "audio", file.conversion},
                   {"detections", sums.reported, "detections", fmt::format("{}", sums.reported)},
                   {"nearMisses", sums.nearMisses, "near misses", fmt::format("{}", sums.nearMisses)},
                   {"highestSilentScore", highest, "highest that did not fire", highest ? fmt::format("{:.1f}", *highest) : ""},
                   {"deafFrom", file.deafFrom},
                   {"overruns", file.overruns}};
    entry.remarks = RemarksOf(file);
    std::vector<Mark> marks;
    for (HeardPhrase& phrase : file.phrases)
    {
        entry.parts.push_back(PartOf(phrase, threshold));
        marks.push_back(MarkOf(phrase));
    }
    for (Entry& part : entry.parts)
    {
        Picture& closeUp = part.picture;
        std::ranges::copy_if(marks, std::back_inserter(closeUp.marks), [&](const Mark& mark) {
            return mark.end > closeUp.firstSecond && mark.begin < closeUp.firstSecond + closeUp.seconds;
        });
    }
    if (file.deafFrom)
    {
        marks.push_back({Mark::Kind::Fault, *file.deafFrom, file.seconds, "nothing was heard"});
    }
    if (!file.wave.empty())
    {
        entry.picture = {0.0, file.seconds, std::move(file.wave), std::move(marks), {}, {}, threshold};
    }
    return entry;
}

std::vector<Fact> FactsOf(const ListeningSubject& subject, const Heard& heard, const ListeningSums& all)
{
    const auto highest = ScoreOf(all.highestSilent);
    const double perHour = all.seconds > 0.0 ? static_cast<double>(all.reported) * 3600.0 / all.seconds : 0.0;
    const bool hasRate = all.seconds >= LeastForRate;
    return {
        {"pattern", subject.pattern, "pattern", fmt::format("{}, {} bytes", subject.pattern, subject.patternBytes)},
        {"patternBytes", subject.patternBytes},
        {"language", subject.language, "language", LanguageText(subject.language)},
        {"userModel", heard.userModel, "model", heard.userModel ? "a user's" : "everybody's"},
        {"threshold", ScoreOf(heard.threshold), "threshold", fmt::format("{:g}", ScoreOf(heard.threshold)),
         "the least score that fires; with ten more there are 2.7 times fewer false alarms"},
        {"seconds", all.seconds, "heard",
         DurationText(all.seconds) + (subject.isLive ? "" : " in " + Counted(heard.files.size(), "file"))},
        {"detections", all.reported, "detections",
         fmt::format("{}", all.reported) + (hasRate ? fmt::format(" ({:.1f} per hour)", perHour) : "")},
        {"detectionsPerHour", hasRate ? Value(perHour) : Value()},
        {"nearMisses", all.nearMisses, "near misses", fmt::format("{}", all.nearMisses)},
        {"highestSilentScore", highest, "did not fire",
         highest ? fmt::format("{:.1f} at most: a lower threshold fires there", *highest) : "nothing else came near the phrase"},
    };
}

std::string ListeningVerdict(const ListeningSums& all, std::size_t files, bool isLive)
{
    const std::string heard = " in " + DurationText(all.seconds);
    const std::string blocks = Counted(all.reported, "result block");
    std::string verdict =
        all.refused > 0 ? fmt::format("The library refused {} of {}{}", all.refused, blocks, heard)
        : all.resets > 0
            ? fmt::format("The DSP reset itself{} and was deaf from then on", isLive ? "" : " in " + Counted(all.resets, "file"))
        : all.told < all.reported ? fmt::format("{} of {} named a keyword that was not armed", all.reported - all.told, blocks)
        : all.told > 0            ? Counted(all.told, "detection") + heard
                                  : "Nothing was detected" + heard;
    if (all.unreadable > 0)
    {
        verdict += isLive ? "; then the microphone was gone"
                          : fmt::format("; {} of {} could not be read", all.unreadable, Counted(files, "recording"));
    }
    return verdict + (all.worst != nullptr && all.worst->exitCode == ExitCode::Interrupted ? "; interrupted." : ".");
}

} // namespace

std::string PhraseLine(const HeardPhrase& phrase, double threshold)
{
    const Mark mark = MarkOf(phrase);
    return fmt::format("{}  {} to {}  {}, {}", StatusOf(phrase).text, ClockText(mark.begin), ClockText(mark.end), mark.text,
                       WhatCameOf(phrase, threshold));
}

Report ListeningReport(const ListeningSubject& subject, Heard heard)
{
    const ListeningSums all(heard.files);
    Report report;
    const bool isQuiet = subject.isLive && all.reported == 0 && all.resets == 0;
    report.exitCode = all.worst != nullptr      ? all.worst->exitCode
                      : all.refused > 0         ? ExitCode::LibraryFailure
                      : all.told > 0 || isQuiet ? ExitCode::Success
                                                : ExitCode::Refused;
    report.verdict = ListeningVerdict(all, heard.files.size(), subject.isLive);
    report.facts = FactsOf(subject, heard, all);
    report.remarks = subject.remarks;
    if (all.worst != nullptr)
    {
        report.error = Problem{all.worst->what(), all.worst->fix};
    }
    for (HeardFile& file : heard.files)
    {
        report.results.push_back(EntryOf(file, ScoreOf(heard.threshold), subject.isLive));
    }
    return report;
}

} // namespace velox::console
