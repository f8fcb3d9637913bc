#pragma once

#include <filesystem>

// The two processes of the example. Both return whether everything came as expected.
//
// `folder` holds configuration.xml and what it names, results/ with result blocks and streams/ with damaged user models.

/// The first process: stores a user model in a stream, where a later one finds it.
bool StoreUserModel(const std::filesystem::path& folder);

/// The second process: creates an adapter and does with it what a host does in its life.
bool RunDetector(const std::filesystem::path& folder);
