#pragma once

#include "library/wovwrapper/VeloxWovSDK.h"

/// Owns an open engine session while an operation uses it: an exception that leaves the operation destroys it. On every other
/// path the operation says when.
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
        if (!owns || session == 0)
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

    /// The operation's last destroy. The handle goes to the engine as it is, 0 included.
    void Destroy()
    {
        Dismiss();
        VWoVDestroySession(session);
    }

    /// The session has been destroyed otherwise.
    void Dismiss()
    {
        owns = false;
    }

private:
    uint32_t session;
    bool owns = true;
};
