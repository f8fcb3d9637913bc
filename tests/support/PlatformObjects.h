#pragma once

#include <gmock/gmock.h>

#include <windows.h>

#include <mfapi.h>
#include <objidl.h>

#include <algorithm>
#include <memory>
#include <span>

/// Objects of the platform's own, for tests that go through the library and an engine DLL.
namespace PlatformObjects
{

template <typename Interface>
struct Release
{
    void operator()(Interface* object) const
    {
        object->Release();
    }
};
template <typename Interface>
using Owned = std::unique_ptr<Interface, Release<Interface>>;

inline Owned<IMFMediaBuffer> Recording(std::span<const float> samples)
{
    const auto size = static_cast<DWORD>(samples.size_bytes());
    IMFMediaBuffer* buffer = nullptr;
    EXPECT_EQ(MFCreateMemoryBuffer(size, &buffer), S_OK);
    BYTE* data = nullptr;
    EXPECT_EQ(buffer->Lock(&data, nullptr, nullptr), S_OK);
    std::copy_n(reinterpret_cast<const BYTE*>(samples.data()), size, data);
    buffer->Unlock();
    buffer->SetCurrentLength(size);
    return Owned<IMFMediaBuffer>(buffer);
}

inline Owned<IStream> NewStream()
{
    IStream* stream = nullptr;
    EXPECT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, &stream), S_OK);
    return Owned<IStream>(stream);
}

} // namespace PlatformObjects
