#pragma once

#include "core/base/FileOperations.h"

#include <filesystem>
#include <optional>
#include <string>

namespace FellowCore {

/// The bytes of another program's settings file, or nothing when there is none. Blocks. Throws
/// `PumpHookSettings::Failure` (invalid) for one too long to be settings and `FileError` (notReadable).
std::optional<std::string> readSettings(FileOperations& files, const std::filesystem::path& path);

/// Gives another program's settings file other bytes, or, with nothing in `bytes`, removes it, provided that
/// it still holds `expected` (or is still absent) at the last moment before; otherwise throws
/// `PumpHookSettings::Failure` (changed). A link is followed to its target; mode and owner are kept. Blocks.
/// After any failure the file is as it was; throws `FileError` (notWritable), also when the owner could not
/// be kept.
void replaceSettings(FileOperations& files, const std::filesystem::path& path,
                     const std::optional<std::string>& expected, const std::optional<std::string>& bytes);

} // namespace FellowCore
