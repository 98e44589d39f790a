#include "app/settings/ShortcutSetting.h"

#include "app/settings/ShortcutRecorder.h"

#include <QHBoxLayout>

namespace DeskSprites {

namespace {

QString sentence(Platform::ShortcutResult result) {
    switch (result) {
    case Platform::ShortcutResult::registered:
        return {};
    case Platform::ShortcutResult::taken:
        return ShortcutSetting::tr("That shortcut is already taken by another program.");
    case Platform::ShortcutResult::unsupported:
        return ShortcutSetting::tr("This desktop cannot give that shortcut to a program.");
    case Platform::ShortcutResult::invalid:
        break;
    }
    return ShortcutSetting::tr("Hold Ctrl, Alt or Super together with a key.");
}

} // namespace

ShortcutSetting::ShortcutSetting(QWidget* parent)
    : QWidget(parent), recorder_(new ShortcutRecorder(this)), clear_(new FormButton(tr("Clear"), this)) {
    clear_->setAccessibleName(tr("Clear shortcut"));
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(FormMetrics::unit);
    line->addWidget(recorder_);
    line->addWidget(clear_);
    setFocusProxy(recorder_);
    connect(recorder_, &ShortcutRecorder::recorded, this, &ShortcutSetting::take);
    connect(recorder_, &ShortcutRecorder::refused, this,
            [this] { Q_EMIT complained(sentence(Platform::ShortcutResult::invalid)); });
    connect(recorder_, &ShortcutRecorder::recordingChanged, this, [this] { Q_EMIT complained({}); });
    connect(clear_, &QPushButton::clicked, this, [this] {
        Q_EMIT complained({});
        if (onCleared) {
            onCleared();
        }
    });
}

void ShortcutSetting::showShortcut(const QString& label, bool supported) {
    recorder_->setLabel(label);
    recorder_->setEnabled(supported);
    clear_->setEnabled(supported && !label.isEmpty());
}

void ShortcutSetting::take(const Platform::KeyCombination& combination) {
    const QString label = combination.label();
    const auto result = onChosen ? onChosen(combination, label) : std::nullopt;
    if (!result) {
        return;
    }
    Q_EMIT complained(sentence(*result));
    if (*result == Platform::ShortcutResult::registered) {
        recorder_->setLabel(label);
        clear_->setEnabled(true);
    }
}

} // namespace DeskSprites
