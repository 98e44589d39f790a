#pragma once

#include "core/base/FileOperations.h"
#include "core/base/MemoryPreferences.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace FellowCore {

/// Where `MemoryPreferences` come from and go to: one JSON file, read and written whole. Loading and saving
/// block; `save` takes the document as text so that it can run on another thread than the one that owns the
/// values.
class PreferencesFile {
public:
    static constexpr std::size_t sizeLimit = 8U << 20U; ///< bytes; a larger file counts as corrupt

    PreferencesFile(FileOperations& files, std::filesystem::path path);

    /// Fills `into`. An absent file leaves it empty. A file that is corrupt or too large is moved aside; one
    /// that cannot be read or moved aside is left alone and never written (`isWritable` turns false). Returns
    /// a sentence for the log when something was wrong. Never throws.
    std::optional<std::string> load(MemoryPreferences& into);

    /// False when saving could destroy settings that this program could not read.
    bool isWritable() const { return writable_; }

    /// Writes the whole document with mode 0600, making the folder when needed. Throws `FileError`.
    void save(const std::string& document) const;

    const std::filesystem::path& path() const { return path_; }

private:
    FileOperations& files_;
    std::filesystem::path path_;
    bool writable_ = true;
};

} // namespace FellowCore
