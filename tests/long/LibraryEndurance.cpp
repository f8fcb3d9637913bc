// What is left of a million uses of the library: exactly what is kept on purpose, and the first answer is also the last. Not part
// of the default run: scripts/endure. The arguments are how many objects are made and released, and how many verifications and
// trainings there are.
#include "tests/long/HeapUse.h"
#include "tests/long/LibraryRounds.h"
#include "tests/long/PlatformUse.h"

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <set>

namespace
{

struct Kind
{
    const char* name;
    uint64_t times;
    std::function<Answers()> round;
    Answers first;
};

std::vector<Kind> Kinds(LibraryRounds& rounds, uint64_t cycles, uint64_t operations)
{
    return {{"create, arm, parse, arm, parse, release", cycles, [&] { return rounds.Cycle(); }, {}},
            {"verify", operations, [&] { return rounds.Verify(); }, {}},
            {"train, arm", operations, [&] { return rounds.Train(); }, {}},
            {"train for a stream that cannot be written",
             operations,
             [&] { return rounds.TrainForAStreamThatCannotBeWritten(); },
             {}},
            {"arm from a stream that cannot be read", operations, [&] { return rounds.ArmFromAStreamThatCannotBeRead(); }, {}}};
}

/// Whether every round answers as the first one did.
bool Repeat(const Kind& kind)
{
    for (uint64_t round = 1; round <= kind.times; ++round)
    {
        if (kind.round() != kind.first)
        {
            std::printf("%s: round %llu answers otherwise than the first\n", kind.name, static_cast<unsigned long long>(round));
            return false;
        }
    }
    std::printf("%-42s %8llu times, %zu results, %zu outputs and %zu lines each: always the same\n", kind.name,
                static_cast<unsigned long long>(kind.times), kind.first.results.size(), kind.first.outputs.size(),
                kind.first.lines.size());
    std::fflush(stdout);
    return true;
}

bool TellLine(const std::string& what, uint64_t times, std::size_t bytes, int64_t measured)
{
    const auto total = static_cast<int64_t>(times * bytes);
    std::printf("%-64s | %8llu | %5zu | %10lld | %10lld%s\n", what.c_str(), static_cast<unsigned long long>(times), bytes,
                static_cast<long long>(total), static_cast<long long>(measured), measured == total ? "" : " WRONG");
    return measured == total;
}

/// Tells what the heap has lost beside what it was meant to lose. @return whether that is the same
bool TellHeap(const std::vector<KeptLoss>& losses, const HeapUse& before, const HeapUse& after)
{
    std::printf("\n%-64s | %8s | %5s | %10s | %10s\n", "lost on purpose", "times", "bytes", "in all", "measured");
    bool asMeant = true;
    int64_t named = 0;
    std::set<std::size_t> sizes;
    for (const KeptLoss& loss : losses)
    {
        const int64_t measured = (after.blocks.at(loss.bytes) - before.blocks.at(loss.bytes)) * static_cast<int64_t>(loss.bytes);
        asMeant = TellLine(loss.what, loss.times, loss.bytes, measured) && sizes.insert(loss.bytes).second && asMeant;
        named += measured;
    }
    return TellLine("anything else", 0, 0, after.bytes - before.bytes - named) && asMeant;
}

bool TellPlatform(const std::vector<PlatformFigure>& before, const std::vector<PlatformFigure>& after)
{
    std::printf("\n%-64s | %10s | %10s\n", "held of the platform", "before", "after");
    bool asMeant = true;
    for (std::size_t i = 0; i < before.size(); ++i)
    {
        const bool isLoss = after[i].amount - before[i].amount > after[i].mostGrowth;
        std::printf("%-64s | %10lld | %10lld%s\n", after[i].what.c_str(), static_cast<long long>(before[i].amount),
                    static_cast<long long>(after[i].amount), isLoss ? " WRONG" : "");
        asMeant = asMeant && !isLoss;
    }
    return asMeant;
}

/// What has been lost since an earlier count.
std::vector<KeptLoss> Since(const std::vector<KeptLoss>& earlier, std::vector<KeptLoss> now)
{
    for (std::size_t i = 0; i < now.size(); ++i)
    {
        now[i].times -= earlier[i].times;
    }
    return now;
}

} // namespace

int main(int argc, char** argv)
{
    const uint64_t cycles = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1'000'000;
    const uint64_t operations = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 10'000;
    // Before anything is counted, so that what printing takes is no loss.
    std::printf("%llu objects, and %llu times each other operation\n", static_cast<unsigned long long>(cycles),
                static_cast<unsigned long long>(operations));
    std::fflush(stdout);
    WatchPlatform();
    LibraryRounds rounds;
    std::vector<Kind> kinds = Kinds(rounds, cycles, operations);
    for (Kind& kind : kinds)
    {
        kind.first = kind.round(); // What is made only once is made then.
    }

    const std::vector<KeptLoss> lostBefore = rounds.Losses();
    const std::vector<PlatformFigure> platformBefore = PlatformUse(0);
    static HeapUse heapBefore;
    static HeapUse heapAfter;
    GetHeapUse(&heapBefore);
    bool asMeant = true;
    for (const Kind& kind : kinds)
    {
        asMeant = Repeat(kind) && asMeant;
    }
    GetHeapUse(&heapAfter);
    asMeant = TellHeap(Since(lostBefore, rounds.Losses()), heapBefore, heapAfter) && asMeant;
    asMeant = TellPlatform(platformBefore, PlatformUse(heapAfter.bytes - heapBefore.bytes)) && asMeant;
    return asMeant ? EXIT_SUCCESS : EXIT_FAILURE;
}
