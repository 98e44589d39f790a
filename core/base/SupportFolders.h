#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace FellowCore {

/// What the environment says about the user's folders; read once, in `main`.
struct FolderEnvironment {
    std::filesystem::path home = {};                      ///< absolute
    std::optional<std::filesystem::path> dataHome = {};   ///< XDG_DATA_HOME
    std::optional<std::filesystem::path> cacheHome = {};  ///< XDG_CACHE_HOME
    std::optional<std::filesystem::path> configHome = {}; ///< XDG_CONFIG_HOME
    std::optional<std::filesystem::path> runtimeDir = {}; ///< XDG_RUNTIME_DIR
};

/// The one answer to where the system's files stand. Pure: nothing is created or looked at. A relative path
/// in the environment is ignored, as the XDG base directory rules have it (freedesktop.org, version 0.8).
class SupportFolders {
public:
    explicit SupportFolders(const FolderEnvironment& environment);

    const std::filesystem::path& home() const { return home_; }
    std::filesystem::path deskSprites() const; ///< characters' own files
    std::filesystem::path deskfellow() const;  ///< what is shared with other programs
    std::filesystem::path cache() const;
    std::filesystem::path preferencesFile() const;
    std::filesystem::path autostartFolder() const;
    std::optional<std::filesystem::path> runtime() const { return runtime_; }
    /// A path as people read it, with "~" for their home.
    std::string shortened(const std::filesystem::path& path) const;
    /// The folder of one character's files; `identifier` is a valid manifest identifier.
    std::filesystem::path character(std::string_view identifier) const;
    /// The focus timer of a character with the timer behaviour, Batti's among them.
    std::filesystem::path focusTimerFile(std::string_view identifier) const;
    /// Munshi's day book.
    std::filesystem::path ledgerFile() const;

private:
    std::filesystem::path home_;
    std::filesystem::path data_;
    std::filesystem::path cache_;
    std::filesystem::path config_;
    std::optional<std::filesystem::path> runtime_;
};

} // namespace FellowCore
