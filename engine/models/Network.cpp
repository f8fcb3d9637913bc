#include "engine/models/Network.h"

namespace velox::engine
{

int Network::Field() const
{
    int field = 1;
    for (const NetworkLayer& layer : layers)
    {
        field += layer.Span() - 1;
    }
    return field;
}

} // namespace velox::engine
