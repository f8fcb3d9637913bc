#pragma once

#include <memory>

namespace velox::oemadapter
{

struct ComRelease
{
    template <typename Interface>
    void operator()(Interface* object) const
    {
        object->Release();
    }
};

/// The one owner of a reference to a COM object.
template <typename Interface>
using ComPointer = std::unique_ptr<Interface, ComRelease>;

} // namespace velox::oemadapter
