#pragma once

#include "core/art/ManifestError.h"

#include <cstddef>
#include <filesystem>
#include <string>

namespace FellowCore {

/// The folder of one pack, read so that no link in it can lead out of it.
class PackFolder {
public:
    explicit PackFolder(const std::filesystem::path& directory);

    /// Absolute, links resolved.
    const std::filesystem::path& directory() const { return directory_; }
    /// Where a file of the pack really stands. Throws `ManifestError` (invalidAsset) when that is outside.
    std::filesystem::path locate(const std::string& file) const;
    /// A file of at most `limit` bytes. Blocks. Throws `ManifestError`: invalidAsset when it lies outside,
    /// and `unreadable` when it cannot be read or is too large.
    std::string read(const std::string& file, std::size_t limit, ManifestError::Kind unreadable) const;

private:
    std::filesystem::path directory_;
};

} // namespace FellowCore
