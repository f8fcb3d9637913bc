#include "tests/support/HostStream.h"

#include "tests/support/ScriptedStream.h"

namespace
{

/// Final, since its interface has no virtual destructor.
class OwnedStream final : public ScriptedStream
{
};

} // namespace

HostStream MakeHostStream()
{
    return std::make_shared<OwnedStream>();
}
