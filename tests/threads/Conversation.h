#pragma once

#include "tests/support/HostStream.h"
#include "tests/support/LibraryHost.h"
#include "tests/support/MediaBuffer.h"

#include <string>
#include <vector>

/// What a host does with a library object of its own: it arms the predefined model, verifies takes, trains a model from them,
/// arms it, and has a detection parsed.
inline Answers Converse(const std::string& configurationFile, const std::vector<std::vector<float>>& takes)
{
    const HostStream stream = MakeHostStream();
    std::vector<MediaBuffer> owned;
    std::vector<IMFMediaBuffer*> recordings;
    for (const std::vector<float>& take : takes)
    {
        recordings.push_back(owned.emplace_back(MakeMediaBuffer(take)).get());
    }

    LibraryHost host(configurationFile);
    host.Arm(stream.get());
    for (IMFMediaBuffer* recording : recordings)
    {
        host.Verify(recording);
    }
    host.Train(stream.get(), recordings);
    host.Arm(stream.get());
    host.Parse(stream.get());
    return host.Take();
}
