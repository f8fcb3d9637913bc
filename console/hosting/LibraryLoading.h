#pragma once

namespace velox::console
{

/// The library is loaded at its first call, so that doctor can tell what is missing. Whoever calls it asks here before.
/// @throws CommandFailure LibraryFailure when the library cannot be loaded
void RequireLibrary();

} // namespace velox::console
