#pragma once

#include "tests/support/FaultInjector.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <windows.h>

// What the inputs of several targets are read with.

/// What a caller's object may return: one of the usual results, or any 32 bits.
inline HRESULT AnyResult(FuzzedDataProvider& input)
{
    constexpr HRESULT Usual[]{S_OK, S_FALSE, E_FAIL, E_POINTER, E_OUTOFMEMORY, E_INVALIDARG, E_UNEXPECTED, E_ACCESSDENIED};
    return input.ConsumeBool() ? input.PickValueInArray(Usual) : static_cast<HRESULT>(input.ConsumeIntegral<uint32_t>());
}

/// The number of the one call of the doubles that fails, for FaultPlan::Nth; 0 in one run of two: none does.
inline uint64_t AnyFault(FuzzedDataProvider& input)
{
    const auto call = input.ConsumeIntegral<uint8_t>();
    return call < 128 ? 0 : call - 127U;
}
