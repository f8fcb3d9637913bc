#pragma once

#include <windows.h>

#include <mfobjects.h>

#include <cstdint>
#include <utility>

/// Keeps a recording locked and unlocks it when an exception leaves.
class RecordingLock
{
public:
    RecordingLock() = default;
    RecordingLock(const RecordingLock&) = delete;
    RecordingLock& operator=(const RecordingLock&) = delete;
    ~RecordingLock()
    {
        try
        {
            Unlock();
        }
        catch (...)
        {
            // A recording that throws here, too, must not end the process: the first exception is on its way.
        }
    }

    /// Locks the recording; one that is null cannot be locked.
    HRESULT Lock(IMFMediaBuffer* buffer)
    {
        if (buffer == nullptr)
        {
            return E_POINTER;
        }
        const HRESULT result = buffer->Lock(&data, nullptr, &length);
        if (SUCCEEDED(result))
        {
            recording = buffer;
        }
        return result;
    }

    /// Unlocks the recording, if it is locked.
    HRESULT Unlock()
    {
        IMFMediaBuffer* locked = std::exchange(recording, nullptr);
        return locked == nullptr ? S_OK : locked->Unlock();
    }

    /// 32-bit float samples, of any alignment.
    const uint8_t* Samples() const
    {
        return data;
    }
    uint32_t SampleCount() const
    {
        return length >> 2U;
    }

private:
    IMFMediaBuffer* recording = nullptr;
    BYTE* data = nullptr;
    DWORD length = 0;
};
