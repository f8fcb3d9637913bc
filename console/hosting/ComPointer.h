#pragma once

#include <memory>

namespace velox::console
{

struct ComRelease
{
    template <class Interface>
    void operator()(Interface* object) const
    {
        object->Release();
    }
};

/// The one owner of a COM object.
template <class Interface>
using ComPointer = std::unique_ptr<Interface, ComRelease>;

} // namespace velox::console
