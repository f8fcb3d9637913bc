#pragma once

#include <windows.h>

#include <mfobjects.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// A recording on the stack of a test, whatever its reference count, that counts its locks and fails as it is told. Locking and
/// unlocking count as FallibleCall::Buffer.
class ScriptedRecording final : public IMFMediaBuffer
{
public:
    explicit ScriptedRecording(const std::vector<float>& samples);

    /// Bytes of any number, also one that ends within a sample.
    explicit ScriptedRecording(std::vector<uint8_t> bytes);

    /// What Lock and Unlock return. A Lock that fails does not lock; an Unlock that fails unlocks all the same: its caller has
    /// no second way.
    HRESULT lockResult = S_OK;
    HRESULT unlockResult = S_OK;

    int locks = 0;   ///< that succeeded
    int unlocks = 0; ///< of a locked recording, whatever was returned
    bool unlockedWithoutLock = false;

    /// Locks that no Unlock followed.
    int OpenLocks() const
    {
        return locks - unlocks;
    }

    /// Called with "Lock" and "Unlock" before they are answered. May throw; nothing is locked or unlocked then.
    std::function<void(const std::string&)> onCall;

    STDMETHODIMP QueryInterface(REFIID, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP Lock(BYTE** bytes, DWORD* maxLength, DWORD* currentLength) override;
    STDMETHODIMP Unlock() override;
    STDMETHODIMP GetCurrentLength(DWORD* length) override;
    STDMETHODIMP SetCurrentLength(DWORD length) override;
    STDMETHODIMP GetMaxLength(DWORD* length) override;

private:
    /// @return the result of the call: an injected fault, or `scripted`
    HRESULT Begin(const char* operation, HRESULT scripted);

    std::vector<uint8_t> content;
};
