#include "library/wovwrapper/VeloxWovSDK.h"

#include "engine/api/SessionTable.h"
#include "engine/base/EngineErrors.h"

#include <new>

using namespace velox::engine;

namespace
{

/// The global attributes, and the lock of whoever reads or writes them.
struct Globals
{
    std::mutex lock;
    EngineAttributes attributes;
    SessionTable sessions;
};

Globals& TheGlobals()
{
    static Globals globals;
    return globals;
}

/// Runs a call; an exception must not reach a caller that is written in C.
template <typename Call>
uint32_t Guarded(Call call)
{
    try
    {
        return static_cast<uint32_t>(call());
    }
    catch (...)
    {
        return static_cast<uint32_t>(Status::OutOfMemory);
    }
}

/// Runs a call on a session.
template <typename Call>
uint32_t OnSession(uint32_t handle, Call call)
{
    return Guarded([&] {
        EngineSession* session = TheGlobals().sessions.Find(handle);
        return session == nullptr ? Status::BadHandle : call(*session);
    });
}

} // namespace

extern "C"
{

    uint32_t VWoVSetAttribute(uint32_t attributeId, const char* value)
    {
        return Guarded([&] {
            if (value == nullptr)
            {
                return Status::NullArgument;
            }
            Globals& globals = TheGlobals();
            const std::lock_guard lock(globals.lock);
            switch (attributeId)
            {
            case EngineAttribute::FirmwareConstraints:
                globals.attributes.SetConstraints(value);
                return Status::Success;
            case EngineAttribute::LogLevel:
                return globals.attributes.SetLogLevel(value);
            default:
                return Status::UnknownIdentifier;
            }
        });
    }

    uint32_t VWoVSetBinAttribute(uint32_t attributeId, const uint8_t* blob)
    {
        return Guarded([&] {
            if (blob == nullptr)
            {
                return Status::NullArgument;
            }
            Globals& globals = TheGlobals();
            const std::lock_guard lock(globals.lock);
            switch (attributeId)
            {
            case EngineBinAttribute::AcousticModel:
                return globals.attributes.SetAcousticModel(blob);
            case EngineBinAttribute::ZnormPopulation:
                return globals.attributes.SetPopulation(blob);
            default:
                return Status::UnknownIdentifier;
            }
        });
    }

    uint32_t VWoVInitSession(uint32_t* session)
    {
        return Guarded([&] {
            if (session == nullptr)
            {
                return Status::NullArgument;
            }
            Globals& globals = TheGlobals();
            std::unique_ptr<EngineSession> created;
            {
                const std::lock_guard lock(globals.lock);
                created = std::make_unique<EngineSession>(globals.attributes);
            }
            const uint32_t handle = globals.sessions.Add(std::move(created));
            if (handle == 0)
            {
                return Status::OutOfMemory;
            }
            *session = handle;
            return Status::Success;
        });
    }

    uint32_t VWoVInit(uint32_t session, uint32_t component)
    {
        return OnSession(session, [&](EngineSession& open) { return open.InitComponent(component); });
    }

    uint32_t VWoVSetModel(uint32_t session, const uint8_t* keyphraseModel)
    {
        return OnSession(session, [&](EngineSession& open) {
            return keyphraseModel == nullptr ? Status::NullArgument : open.SetModel(keyphraseModel);
        });
    }

    uint32_t VWoVStartEnrollment(uint32_t session)
    {
        return OnSession(session, [](EngineSession& open) { return open.StartEnrollment(); });
    }

    uint32_t VWoVStartEnrollmentUtterance(uint32_t session, uint32_t /*reserved*/)
    {
        return OnSession(session, [](EngineSession& open) { return open.StartUtterance(); });
    }

    uint32_t VWoVFeedAudioFrame(uint32_t session, const int16_t* samples, uint32_t sampleCount)
    {
        return OnSession(session, [&](EngineSession& open) {
            return samples == nullptr ? Status::NullArgument : open.FeedFrame(samples, sampleCount);
        });
    }

    uint32_t VWoVFinalizeEnrollmentUtterance(uint32_t session)
    {
        return OnSession(session, [](EngineSession& open) { return open.FinalizeUtterance(); });
    }

    uint32_t VWoVFinalizeEnrollment(uint32_t session, uint8_t** phraseModel)
    {
        return OnSession(session, [&](EngineSession& open) {
            return phraseModel == nullptr ? Status::NullArgument : open.FinalizeEnrollment(phraseModel);
        });
    }

    uint32_t VWoVGetScores(uint32_t session, float* scores, uint32_t* count)
    {
        return OnSession(session, [&](EngineSession& open) {
            return count == nullptr ? Status::NullArgument : open.GetScores(scores, count);
        });
    }

    uint32_t VWoVGetIntOutput(uint32_t session, uint32_t outputId, int32_t* values, uint32_t* count)
    {
        return OnSession(session, [&](EngineSession& open) {
            return count == nullptr ? Status::NullArgument : open.GetIntOutput(outputId, values, count);
        });
    }

    uint32_t VWoVFlush(uint32_t session)
    {
        return OnSession(session, [](EngineSession& open) { return open.Flush(); });
    }

    uint32_t VWoVPrepareLpeData(uint32_t session, uint8_t* buffer, uint32_t* size)
    {
        return OnSession(session, [&](EngineSession& open) {
            return size == nullptr ? Status::NullArgument : open.PrepareLpeData(buffer, size);
        });
    }

    uint32_t VWoVDestroySession(uint32_t session)
    {
        return Guarded([&] { return TheGlobals().sessions.Remove(session) ? Status::Success : Status::BadHandle; });
    }

} // extern "C"
