#pragma once

#include <cstdint>
#include <limits>
#include <optional>

/// The calls that the tests' doubles can make fail.
enum class FallibleCall
{
    Allocation,        ///< operator new that throws
    NothrowAllocation, ///< operator new that returns null
    FileOpen,
    RegistryOpen,
    RegistryQuery,
    RegistryClose,
    RegistryChange, ///< of a key or a value
    TaskMemory,
    CreateMediaType,
    InitMediaType,
    CreateWaveFormat,
    CreateBuffer,
    CreateStream,
    CreateMarshaler,
    Stream,
    Buffer,
    Engine,
};

/// Decides which call fails. Calls are counted, and may fail, only while a plan stands and no FaultPause does. Both hold for the
/// thread that made them alone.
///
///     FaultPlan plan(FaultPlan::Nth(3, FallibleCall::Stream));   // the third stream call fails
class FaultPlan
{
public:
    /// Nothing fails; the calls are counted.
    static FaultPlan Count()
    {
        return FaultPlan(std::numeric_limits<uint64_t>::max(), std::numeric_limits<uint64_t>::max(), std::nullopt);
    }
    /// Only the n-th call fails, counted from 1, of all kinds or of one.
    static FaultPlan Nth(uint64_t n, std::optional<FallibleCall> kind = std::nullopt)
    {
        return FaultPlan(n, n, kind);
    }
    /// The n-th call and all that follow fail.
    static FaultPlan From(uint64_t n, std::optional<FallibleCall> kind = std::nullopt)
    {
        return FaultPlan(n, std::numeric_limits<uint64_t>::max(), kind);
    }

    FaultPlan(const FaultPlan&) = delete;
    FaultPlan& operator=(const FaultPlan&) = delete;
    ~FaultPlan();

    /// Calls of the plan's kind so far.
    uint64_t Calls() const
    {
        return calls;
    }

    /// Asked by the doubles, once for each call: whether it is to fail.
    static bool ShouldFail(FallibleCall kind);

private:
    FaultPlan(uint64_t first, uint64_t last, std::optional<FallibleCall> kind);

    uint64_t firstFailing;
    uint64_t lastFailing;
    std::optional<FallibleCall> failingKind;
    uint64_t calls = 0;
};

/// While it lives, calls are neither counted nor failed: the doubles' own work.
class FaultPause
{
public:
    FaultPause();
    FaultPause(const FaultPause&) = delete;
    FaultPause& operator=(const FaultPause&) = delete;
    ~FaultPause();
};
