#pragma once

#include <filesystem>

// The two processes of the example, and a part of the first one to look at closely. All return whether everything came as
// expected.
//
// `folder` holds configuration.xml and what it names, recordings/ with a user's speech, results/ with result blocks and
// streams/ with damaged user models.

/// The first process: verifies a user's recordings and trains a user model, which it stores where the second one finds it.
bool EnrollUser(const std::filesystem::path& folder);

/// Verifies one recording only.
bool VerifyOneTake(const std::filesystem::path& folder);

/// The second process: creates an adapter and does with it what a host does in its life.
bool RunDetector(const std::filesystem::path& folder);
