#pragma once

#include "oemadapter/detector/KeywordLibrary.h"
#include "oemadapter/detector/LastArming.h"
#include "oemadapter/logging/AdapterLogger.h"
#include "oemadapter/settings/AdapterSettings.h"
#include "oemadapter/windows/ProcessingFailed.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <new>
#include <optional>

namespace velox::oemadapter
{

/// What a call may use as long as it holds the detector's lock.
struct DetectorContents
{
    AdapterSettings settings;
    LastArming lastArming;
    AdapterLogger logger;
    std::optional<KeywordLibrary> library; ///< there while there is a user
};

/// The process's one detector, which all COM objects share.
///
/// There is one object of the library in it and one lock around it: the keyword engine's models are the process's, so that two
/// objects at once would mix them; the library serves one thread at a time; and what was armed through one COM object is known
/// when another one parses.
class Detector
{
public:
    Detector() = default;
    Detector(const Detector&) = delete;
    Detector& operator=(const Detector&) = delete;
    ~Detector() = default;

    /// A COM object begins to use the detector. The first one, also when all others have gone, has the settings read; they take
    /// effect when they are others than before.
    /// @return S_OK; HRESULT_FROM_WIN32(ERROR_NO_UNICODE_TRANSLATION) when the library could not open the configuration file by
    /// its
    ///     name; E_OUTOFMEMORY; ProcessingFailed. The detector has no further user then
    HRESULT AddUser() noexcept;
    void RemoveUser() noexcept;

    uint32_t Users() const
    {
        return users;
    }

    /// Does a COM method's work, alone, and logs its result. There must be a user.
    /// @param method  its name, a constant
    /// @param work    HRESULT(DetectorContents&)
    /// @return what the work returns; E_OUTOFMEMORY or ProcessingFailed for what it throws
    template <typename Work>
    HRESULT Call(const char* method, Work work) noexcept
    try
    {
        const std::scoped_lock lock(mutex);
        contents.logger.operation.Begin(method);
        const HRESULT result = Result(work);
        LogResult(result);
        return result;
    }
    catch (...)
    {
        return ProcessingFailed; // The lock cannot be had.
    }

private:
    template <typename Work>
    HRESULT Result(Work& work)
    try
    {
        return work(contents);
    }
    catch (const std::bad_alloc&)
    {
        return E_OUTOFMEMORY;
    }
    catch (...)
    {
        return ProcessingFailed;
    }

    void LogResult(HRESULT result);

    std::mutex mutex;
    DetectorContents contents;
    std::atomic<uint32_t> users = 0;
};

/// A COM object's part in the detector.
class DetectorUse
{
public:
    /// @param used  has been given a user for this
    explicit DetectorUse(Detector& used) : detector(used)
    {
    }
    DetectorUse(const DetectorUse&) = delete;
    DetectorUse& operator=(const DetectorUse&) = delete;
    ~DetectorUse()
    {
        detector.RemoveUser();
    }

private:
    Detector& detector;
};

} // namespace velox::oemadapter
