#pragma once

#include "core/base/FileOperations.h"

#include <filesystem>
#include <optional>
#include <string>

namespace Platform {

/// Whether the desktop starts the program when the user logs in: an entry "deskfellow.desktop" in the
/// autostart folder (freedesktop.org, Desktop Application Autostart and Desktop Entry specifications).
class Autostart {
public:
    /// `folder` is the user's autostart folder, made when first needed; `executable` the program's absolute
    /// path.
    Autostart(FellowCore::FileOperations& files, std::filesystem::path folder,
              std::filesystem::path executable);

    /// Whether an entry stands there that is not switched off (`Hidden`, `X-GNOME-Autostart-enabled`). An
    /// entry that cannot be read counts as none.
    bool isEnabled() const;
    /// Writes the entry whole, for this executable, or removes it. Blocks. Nothing when done, else a sentence
    /// for the user; what stood there stands unchanged then.
    std::optional<std::string> setEnabled(bool enabled);

    std::filesystem::path entryFile() const;

private:
    std::string entry() const;

    FellowCore::FileOperations& files_;
    std::filesystem::path folder_;
    std::filesystem::path executable_;
};

/// The path as one argument of an entry's `Exec` line, quoted and escaped by the Desktop Entry rules.
std::string execArgument(const std::filesystem::path& executable);

} // namespace Platform
