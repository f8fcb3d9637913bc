#include "tests/support/MediaBuffer.h"

#include "tests/support/ScriptedRecording.h"

MediaBuffer MakeMediaBuffer(const std::vector<float>& samples)
{
    return {new ScriptedRecording(samples), [](IMFMediaBuffer* buffer) {
                delete static_cast<ScriptedRecording*>(buffer);
            }};
}
