#pragma once

#include "Arming.h"
#include "Logger.h"

#include <filesystem>
#include <memory>

/// The detector that this host serves.
inline constexpr GUID DetectorId{0x6F1D3A52, 0x8C47, 0x4E0B, {0x9A, 0x61, 0x2D, 0x5B, 0x7C, 0x90, 0xE3, 0x14}};

inline constexpr uint16_t English = 1033;

/// The file that the user's stream lies on.
inline constexpr const char* UserModelFile = "user-model.bin";

using AdapterPointer = std::unique_ptr<Adapter, KeywordDetectorAdapterImplementation::AdapterCustomDeleter>;

/// An adapter that works on the configuration file of the folder.
AdapterPointer CreateAdapter(const std::filesystem::path& folder, Logger& logger);

/// Sets the library's registry values, for the whole machine, so that every line is logged.
void SwitchLoggingOn();
