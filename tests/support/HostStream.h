#pragma once

#include <windows.h>

#include <objidl.h>

#include <memory>

/// Released when it goes out of scope.
using HostStream = std::shared_ptr<IStream>;

/// An empty stream as a host hands it over: on Windows one of the platform's on memory, natively a ScriptedStream.
HostStream MakeHostStream();
