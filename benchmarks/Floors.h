#pragma once

#include "tests/support/TestConfiguration.h"

#include <cstdint>
#include <memory>
#include <string>

// The least work behind an operation, written straight down: what the ratios are measured against. Each throws when its work
// does not succeed, so that no ratio is told of work that was not done.

/// Parses the configuration file.
void LoadDocumentOnly(const std::string& path);

/// The loads behind a language's detection parameters: the configuration file and three reads of threshold files, of which the
/// user-defined one is read twice.
void LoadDocumentAndThresholdsOnly(const TestConfiguration& configuration, uint16_t languageId);

/// Opens a file, asks for its length and reads it whole into a new block.
std::unique_ptr<uint8_t[]> ReadFileOnly(const std::string& path);
