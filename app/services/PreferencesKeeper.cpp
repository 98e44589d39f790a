#include "app/services/PreferencesKeeper.h"

namespace DeskSprites {

namespace {

constexpr int burstMilliseconds = 300;

} // namespace

PreferencesKeeper::PreferencesKeeper(FellowCore::FileOperations& files, const std::filesystem::path& path,
                                     BackgroundSaver& saver)
    : file_(files, path), saver_(saver) {
    loadProblem_ = file_.load(values_);
    delay_.setSingleShot(true);
    delay_.setInterval(burstMilliseconds);
    QObject::connect(&delay_, &QTimer::timeout, &delay_, [this] { saveNow(); });
    // A burst is not extended by later changes: a drag that saves once a second must not postpone for ever.
    values_.onChange = [this] {
        if (file_.isWritable() && !changed_) {
            changed_ = true;
            delay_.start();
        }
    };
}

PreferencesKeeper::~PreferencesKeeper() {
    saveNow();
}

void PreferencesKeeper::saveNow() {
    delay_.stop();
    if (!changed_) {
        return;
    }
    changed_ = false;
    saver_.save(file_.path().string(), "Deskfellow could not save its settings",
                [file = file_, document = values_.document()] { file.save(document); });
}

} // namespace DeskSprites
