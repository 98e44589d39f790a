#include "app/characters/mira/MiraSessionFile.h"

#include "core/base/Json.h"
#include "core/base/WholeFile.h"

#include <QDebug>

namespace DeskSprites {

using FellowCore::BreathingSession;
using FellowCore::BreathingSessionStore;
using FellowCore::FileError;

namespace {

void warnOfMemoryOnly(const std::exception& reason) {
    qWarning("Mira keeps her session in memory only: %s", reason.what());
}

} // namespace

MiraSessionFile::MiraSessionFile(DesktopServices& services)
    : services_(services),
      store_(std::in_place, services.files,
             services.folders.character("mira") / std::string(BreathingSessionStore::fileName)) {}

std::optional<BreathingSession> MiraSessionFile::load() {
    try {
        return store_->read();
    } catch (const FileError& error) {
        if (error.kind() == FileError::Kind::tooLarge) {
            setAside(error.what());
        } else if (error.kind() != FileError::Kind::notFound) {
            warnOfMemoryOnly(error);
            store_.reset();
        }
    } catch (const FellowCore::JsonError& error) {
        setAside(error.what());
    }
    return std::nullopt;
}

void MiraSessionFile::setAside(const std::string& reason) {
    try {
        const auto kept = FellowCore::moveAside(services_.files, store_->url());
        qWarning("Mira's session could not be understood (%s); the file is kept as %s.", reason.c_str(),
                 kept.c_str());
    } catch (const FileError& error) {
        warnOfMemoryOnly(error);
        store_.reset();
    }
}

void MiraSessionFile::save(const BreathingSession& session, FellowCore::Instant at) {
    if (store_) {
        services_.saver.save(
            store_->url().string(), "Mira could not save her session",
            [store = *store_, text = BreathingSessionStore::encoded(session, at)] { store.write(text); });
    }
}

} // namespace DeskSprites
