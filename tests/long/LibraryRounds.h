#pragma once

#include "tests/scripted-engine/ScriptedEngine.h"
#include "tests/support/LibraryHost.h"
#include "tests/support/MediaBuffer.h"
#include "tests/support/TestConfiguration.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Heap that the library loses on purpose.
struct KeptLoss
{
    std::string what;
    uint64_t times;
    std::size_t bytes; ///< each time
};

/// What a host does with the library, over the scripted engine. Each round of a kind gives the same answers; none keeps anything
/// but what Losses() tells.
class LibraryRounds
{
public:
    LibraryRounds();
    LibraryRounds(const LibraryRounds&) = delete;
    LibraryRounds& operator=(const LibraryRounds&) = delete;
    ~LibraryRounds();

    /// With an object of its own: the predefined model is armed, a detection parsed, a user's model armed, a detection parsed.
    /// The deleter releases the object.
    Answers Cycle();

    // With the one object that stays.
    Answers Verify();
    Answers Train();
    Answers TrainForAStreamThatCannotBeWritten();
    Answers ArmFromAStreamThatCannotBeRead();

    /// What all rounds so far have lost.
    std::vector<KeptLoss> Losses() const;

private:
    /// The engine begins anew, and what it was asked goes with the answers.
    Answers TakeWithCalls();
    void Train(IStream* stream);

    TestConfiguration configuration;
    ScriptedEngine script;
    MediaBuffer recording;
    LibraryHost host;

    uint64_t objectsReleased = 0;
    uint64_t wrappersReleased = 0;
    uint64_t modelsNotWritten = 0;
    uint64_t modelsNotRead = 0;
};
