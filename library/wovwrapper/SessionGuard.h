#pragma once

#include "library/wovwrapper/VeloxWovSDK.h"

/// Destroys an engine session when an exception leaves an operation while the session is open. On every other path the operation
/// destroys it itself and dismisses the guard.
class SessionGuard
{
public:
    explicit SessionGuard(uint32_t openSession) : session(openSession)
    {
    }
    SessionGuard(const SessionGuard&) = delete;
    SessionGuard& operator=(const SessionGuard&) = delete;
    ~SessionGuard()
    {
        if (session == 0)
        {
            return;
        }
        try
        {
            VWoVDestroySession(session);
        }
        catch (...)
        {
            // An engine that throws here, too, must not end the process: the first exception is on its way.
        }
    }

    void Dismiss()
    {
        session = 0;
    }

private:
    uint32_t session;
};
