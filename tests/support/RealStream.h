#pragma once

#include <windows.h>

#include <objidl.h>

#include <array>
#include <memory>
#include <string>
#include <string_view>

struct StreamRelease
{
    void operator()(IStream* stream) const
    {
        stream->Release();
    }
};

using RealStream = std::unique_ptr<IStream, StreamRelease>;

/// A kind of stream that the platform makes.
struct RealStreamKind
{
    const char* name;
    IStream* (*create)(); ///< an empty stream, or null

    /// A stream with this content.
    RealStream Create(std::string_view content = {}) const;
};

inline std::ostream& operator<<(std::ostream& out, const RealStreamKind& kind)
{
    return out << kind.name;
}

extern const std::array<RealStreamKind, 2> RealStreamKinds;

/// A stream's whole content; it stands at the end afterwards.
std::string ContentOf(IStream* stream);
