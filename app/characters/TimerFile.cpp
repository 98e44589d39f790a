#include "app/characters/TimerFile.h"

#include "core/base/Json.h"
#include "core/base/WholeFile.h"

#include <QDebug>

#include <system_error>

namespace DeskSprites {

using FellowCore::FileError;

TimerFile::TimerFile(const FellowCore::CharacterManifest& manifest, DesktopServices& services)
    : services_(services), name_(manifest.name) {
    try {
        services.files.makeFolders(services.folders.character(manifest.id));
        store_.emplace(services.files, services.folders.focusTimerFile(manifest.id));
    } catch (const std::system_error& error) {
        qWarning("%s keeps its timer in memory only: %s", name_.c_str(), error.what());
    }
}

std::optional<FellowCore::FocusTimer> TimerFile::load(TimerRules rules, FellowCore::Instant at) {
    if (!store_) {
        return std::nullopt;
    }
    try {
        return rules == TimerRules::batti ? store_->loadForBatti(at) : store_->load(at);
    } catch (const FileError& error) {
        if (error.kind() == FileError::Kind::tooLarge) {
            setAside(error.what());
        } else if (error.kind() != FileError::Kind::notFound) {
            qWarning("%s keeps its timer in memory only: %s", name_.c_str(), error.what());
            store_.reset();
        }
    } catch (const FellowCore::JsonError& error) {
        setAside(error.what());
    }
    return std::nullopt;
}

void TimerFile::setAside(const std::string& reason) {
    try {
        const auto kept = FellowCore::moveAside(services_.files, store_->url());
        qWarning("The timer of %s could not be understood (%s); the file is kept as %s.", name_.c_str(),
                 reason.c_str(), kept.c_str());
    } catch (const FileError& error) {
        qWarning("%s keeps its timer in memory only: %s", name_.c_str(), error.what());
        store_.reset();
    }
}

void TimerFile::save(const FellowCore::FocusTimer& timer) {
    if (store_) {
        services_.saver.save(
            store_->url().string(), name_ + " could not save its timer",
            [store = *store_, text = FellowCore::FocusTimerStore::encoded(timer)] { store.write(text); });
    }
}

} // namespace DeskSprites
