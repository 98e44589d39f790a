#include "core/base/SupportFolders.h"

#include "core/base/WholeFile.h"

namespace FellowCore {

namespace {

std::filesystem::path absoluteOr(const std::optional<std::filesystem::path>& stated,
                                 const std::filesystem::path& fallback) {
    return stated && stated->is_absolute() ? *stated : fallback;
}

} // namespace

SupportFolders::SupportFolders(const FolderEnvironment& environment)
    : home_(environment.home), data_(absoluteOr(environment.dataHome, home_ / ".local" / "share")),
      cache_(absoluteOr(environment.cacheHome, home_ / ".cache")),
      config_(absoluteOr(environment.configHome, home_ / ".config")) {
    if (environment.runtimeDir && environment.runtimeDir->is_absolute()) {
        runtime_ = environment.runtimeDir;
    }
}

std::filesystem::path SupportFolders::deskSprites() const {
    return data_ / "DeskSprites";
}

std::filesystem::path SupportFolders::deskfellow() const {
    return data_ / "Deskfellow";
}

std::filesystem::path SupportFolders::cache() const {
    return cache_ / "deskfellow";
}

std::filesystem::path SupportFolders::preferencesFile() const {
    return config_ / "deskfellow" / "preferences.json";
}

std::filesystem::path SupportFolders::autostartFolder() const {
    return config_ / "autostart";
}

std::filesystem::path SupportFolders::character(std::string_view identifier) const {
    return deskSprites() / "sprites" / identifier;
}

std::string SupportFolders::shortened(const std::filesystem::path& path) const {
    return liesBelow(path, home_) ? ("~" / path.lexically_relative(home_)).string() : path.string();
}

std::filesystem::path SupportFolders::focusTimerFile(std::string_view identifier) const {
    return character(identifier) / "focus-timer.json";
}

std::filesystem::path SupportFolders::ledgerFile() const {
    return character("munshi") / "ledger.json";
}

} // namespace FellowCore
