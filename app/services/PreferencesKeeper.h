#pragma once

#include "app/services/BackgroundSaver.h"
#include "core/base/MemoryPreferences.h"
#include "core/base/PreferencesFile.h"

#include <QTimer>

#include <optional>
#include <string>

namespace DeskSprites {

/// The user's preferences while the program runs: loaded once, changed in memory, written in the background a
/// moment after the first of a burst of changes, the whole burst at once.
class PreferencesKeeper {
public:
    PreferencesKeeper(FellowCore::FileOperations& files, const std::filesystem::path& path,
                      BackgroundSaver& saver);
    ~PreferencesKeeper();

    FellowCore::Preferences& preferences() { return values_; }
    /// What was wrong when the file was loaded, as a sentence.
    const std::optional<std::string>& loadProblem() const { return loadProblem_; }
    /// Hands an outstanding change to the saver at once.
    void saveNow();

private:
    FellowCore::MemoryPreferences values_;
    FellowCore::PreferencesFile file_;
    BackgroundSaver& saver_;
    std::optional<std::string> loadProblem_;
    QTimer delay_;
    bool changed_ = false; ///< since what was handed to the saver last
};

} // namespace DeskSprites
