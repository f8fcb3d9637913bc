#pragma once

#include <windows.h>

#include <mfobjects.h>

#include <functional>
#include <memory>
#include <vector>

/// Released when it goes out of scope.
using MediaBuffer = std::unique_ptr<IMFMediaBuffer, std::function<void(IMFMediaBuffer*)>>;

/// A recording as a host hands it over: on Windows Media Foundation's own memory buffer, natively a ScriptedRecording.
MediaBuffer MakeMediaBuffer(const std::vector<float>& samples);
