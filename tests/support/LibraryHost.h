#pragma once

#include "AdapterCustomDeleter.h"
#include "IVeloxKeywordDetectorAdapterImpl.h"
#include "tests/support/RecordingLogger.h"

#include <windows.h>

#include <mfobjects.h>
#include <objidl.h>

#include <memory>
#include <string>
#include <vector>

/// All that a host can tell one run of the library's operations from another by.
struct Answers
{
    std::vector<HRESULT> results;
    std::vector<std::string> outputs; ///< an arming's pattern, and what was read out of a block
    Lines lines;

    bool operator==(const Answers&) const = default;
};

/// A host with an object of the library, from the factory, which the factory's deleter releases. It asks for keyword 1 in
/// English.
class LibraryHost
{
public:
    explicit LibraryHost(const std::string& configurationFile);

    void Verify(IMFMediaBuffer* recording);
    void Train(IStream* stream, std::vector<IMFMediaBuffer*> recordings);
    void Arm(IStream* stream);

    /// Has a detection parsed that is always the same.
    void Parse(IStream* stream);

    /// What came back since the last time, the lines of the object's making among it; it is forgotten then.
    Answers Take();

private:
    RecordingLogger logger;
    Answers answers;
    std::unique_ptr<KeywordDetectorAdapterImplementation::IVeloxKeywordDetectorAdapterImpl,
                    KeywordDetectorAdapterImplementation::AdapterCustomDeleter>
        library;
};
