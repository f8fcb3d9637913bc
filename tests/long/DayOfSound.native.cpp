// A day of sound without a pause, through the simulated DSP and through an engine session: what they hold does not grow, nothing
// but the phrase fires, and the phrase is scored in the last minute as in the first. Not part of the default run: scripts/endure.
// The argument is the number of hours; after 38 of them samples no longer fit 31 bits, after 47 frames no longer fit a float.
#include "engine/api/EngineSession.h"
#include "engine/base/RandomStream.h"
#include "firmware/DspSimulator.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/firmware/support/HandMadePattern.h"

#include <malloc.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <vector>

namespace
{

using namespace velox;
using engine::FrameSize;
using engine::SampleRate;
using Sound = std::vector<float>;

constexpr std::size_t LoopSeconds = 300;
/// Q8. The phrase scores 162, what is most like it in the loop 89.
constexpr uint32_t Threshold = 120 * 256;

void Append(const Sound& added, Sound* sound)
{
    sound->insert(sound->end(), added.begin(), added.end());
}

/// Some minutes of what is heard during a day: other words of the phrase's language, loud and soft, in noise, noise alone, and
/// digital silence. Whole frames.
Sound Loop()
{
    engine::RandomStream random(20);
    Sound loop(10 * SampleRate, 0.0F);
    while (loop.size() < LoopSeconds * SampleRate)
    {
        std::vector<std::size_t> tones;
        for (int64_t i = random.Integer(2, 6); i > 0; --i)
        {
            tones.push_back(static_cast<std::size_t>(random.Integer(0, 7)));
        }
        const std::array<std::size_t, 4> phrase{0, 1, 2, 3};
        if (std::ranges::search(tones, phrase).empty())
        {
            const TinyLanguage::Voice voice{0.02 + 0.2 * random.Uniform(), 0.4 * random.Uniform(),
                                            3000.0 + 800.0 * random.Uniform()};
            const auto pause = static_cast<std::size_t>(random.Integer(20, 120)) * FrameSize;
            Append(TinyLanguage::Say(tones, pause, pause, voice, random.Bits()), &loop);
        }
    }
    loop.resize(LoopSeconds * SampleRate);
    return loop;
}

/// One take, as it was scored: to the last bit.
struct Verdict
{
    float score = 0.0F;
    float searchScore = 0.0F;
    uint16_t reported = 0; ///< Q8

    bool operator==(const Verdict&) const = default;
};

/// The simulated DSP with a user's model; armed again after each detection.
class Simulator
{
public:
    Simulator()
    {
        if (dsp.SetPattern(HandMadePattern::Make(TinyLanguage::UserPhrase(), Threshold)) || !dsp.Arm())
        {
            std::abort();
        }
    }

    void Hear(std::span<const float> sound)
    {
        while (!sound.empty())
        {
            std::span<const float> block = sound.first(std::min<std::size_t>(480, sound.size()));
            sound = sound.subspan(block.size());
            while (!block.empty())
            {
                if (dsp.Hear(&block))
                {
                    dsp.Arm();
                }
            }
        }
    }

    std::vector<Verdict> verdicts; ///< of what has fired

private:
    firmware::DspSimulator dsp{HandMadePattern::Detector, {}, [this](const firmware::Peak& peak) {
                                   if (peak.passed)
                                   {
                                       verdicts.push_back({peak.detection.score, peak.detection.searchScore, peak.score});
                                   }
                               }};
};

/// A session that is fed without an end.
class Session
{
public:
    Session()
    {
        const std::vector<uint8_t> model = engine::WritePhraseModel(TinyLanguage::UserPhrase());
        for (const engine::Status status : {session.InitComponent(2), session.InitComponent(4), session.SetModel(model.data())})
        {
            if (status != engine::Status::Success)
            {
                std::abort();
            }
        }
    }

    void Hear(std::span<const int16_t> sound)
    {
        for (; !sound.empty(); sound = sound.subspan(FrameSize))
        {
            float score = 0.0F;
            uint32_t room = 1;
            if (session.FeedFrame(sound.data(), FrameSize) == engine::Status::Success &&
                session.GetScores(&score, &room) == engine::Status::Success && score * 256.0F >= Threshold)
            {
                if (!within)
                {
                    scores.push_back(score);
                }
                within = true;
            }
            else
            {
                within = false;
            }
        }
    }

    std::vector<float> scores; ///< of what stood above the threshold

private:
    engine::EngineSession session{{}};
    bool within = false;
};

struct Held
{
    int64_t pages; // first, since looking at it may take something of the heap for ever
    std::size_t heap;
    double processorSeconds;
};

bool Tell(const char* what, bool holds)
{
    std::printf("%s: %s\n", what, holds ? "yes" : "NO");
    return holds;
}

/// Resident pages of the process's own: those of programs and libraries come as they are first needed.
int64_t OwnPages()
{
    std::ifstream figures("/proc/self/statm");
    int64_t all = 0;
    int64_t resident = 0;
    int64_t shared = 0;
    figures >> all >> resident >> shared;
    return resident - shared;
}

/// What is held after an hour of loops, and how long that took.
Held Hour(const Sound& loop, const std::vector<int16_t>& pcm, Simulator* simulator, Session* session)
{
    const std::clock_t begun = std::clock();
    for (std::size_t heard = 0; heard < 3600; heard += LoopSeconds)
    {
        simulator->Hear(loop);
        session->Hear(pcm);
    }
    return {OwnPages(), mallinfo2().uordblks, static_cast<double>(std::clock() - begun) / static_cast<double>(CLOCKS_PER_SEC)};
}

void Tell(int hour, const Held& held)
{
    std::printf("hour %2d: %zu bytes of the heap, %lld pages; %.1f s of processor time\n", hour, held.heap,
                static_cast<long long>(held.pages), held.processorSeconds);
}

} // namespace

int main(int argc, char** argv)
{
    const int hours = std::max(2, argc > 1 ? std::atoi(argv[1]) : 24);
    const Sound loop = Loop();
    const Sound phrase = TinyLanguage::SayPhrase();
    const std::vector<int16_t> loopPcm = TinyLanguage::ToPcm(loop);
    const std::vector<int16_t> phrasePcm = TinyLanguage::ToPcm(phrase);
    Simulator simulator;
    Session session;
    const auto hearPhrase = [&] {
        simulator.Hear(loop);
        simulator.Hear(phrase);
        session.Hear(loopPcm);
        session.Hear(phrasePcm);
    };

    hearPhrase();
    const Held first = Hour(loop, loopPcm, &simulator, &session);
    Held last{};
    for (int hour = 2; hour <= hours; ++hour)
    {
        last = Hour(loop, loopPcm, &simulator, &session);
    }
    hearPhrase();

    // Only now, so that what printing takes is no growth.
    Tell(1, first);
    Tell(hours, last);
    bool asMeant = Tell("The heap holds what it held after the first hour", last.heap == first.heap);
    asMeant = Tell("No page was added", last.pages <= first.pages) && asMeant;
    const std::vector<Verdict>& verdicts = simulator.verdicts;
    asMeant = Tell("The simulator fired at the phrase, and at nothing else", verdicts.size() == 2) && asMeant;
    asMeant = Tell("Both times with the same scores", verdicts.size() == 2 && verdicts[0] == verdicts[1]) && asMeant;
    const std::vector<float>& scores = session.scores;
    asMeant = Tell("The session found the phrase, and nothing else", scores.size() == 2) && asMeant;
    asMeant = Tell("Both times with the same score", scores.size() == 2 && scores[0] == scores[1]) && asMeant;
    for (const Verdict& verdict : verdicts)
    {
        std::printf("simulator: %.9g, search %.9g, reported %u\n", static_cast<double>(verdict.score),
                    static_cast<double>(verdict.searchScore), unsigned{verdict.reported});
    }
    for (const float score : scores)
    {
        std::printf("session:   %.9g\n", static_cast<double>(score));
    }
    return asMeant ? EXIT_SUCCESS : EXIT_FAILURE;
}
