#include "app/settings/ShortcutRecorder.h"

#include <QKeyEvent>
#include <QKeySequence>

namespace DeskSprites {

namespace {

constexpr auto usedModifiers = Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier | Qt::MetaModifier;

bool isModifierKey(int key) {
    switch (key) {
    case Qt::Key_Control:
    case Qt::Key_Shift:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
        return true;
    default:
        return false;
    }
}

Qt::KeyboardModifiers modifierOf(int key) {
    switch (key) {
    case Qt::Key_Control:
        return Qt::ControlModifier;
    case Qt::Key_Shift:
        return Qt::ShiftModifier;
    case Qt::Key_Alt:
        return Qt::AltModifier;
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
        return Qt::MetaModifier;
    default:
        return {};
    }
}

} // namespace

ShortcutRecorder::ShortcutRecorder(QWidget* parent) : FormButton(parent) {
    setAutoDefault(false);
    showWords();
    connect(this, &QPushButton::clicked, this, [this] { setRecording(!recording_); });
}

void ShortcutRecorder::setLabel(const QString& label) {
    label_ = label;
    if (!recording_) {
        showWords();
    }
}

void ShortcutRecorder::setRecording(bool recording) {
    if (recording_ == recording) {
        return;
    }
    recording_ = recording;
    showWords();
    Q_EMIT recordingChanged(recording);
}

void ShortcutRecorder::showWords(const QString& pressed) {
    const QString kept = label_.isEmpty() ? tr("Choose keys") : label_;
    const QString words = !recording_ ? kept : pressed.isEmpty() ? tr("Press the keys now") : pressed;
    setText(QString(words).replace(QLatin1Char('&'), QLatin1String("&&")));
    setAccessibleName(tr("Shortcut, %1").arg(words));
}

bool ShortcutRecorder::event(QEvent* event) {
    if (!recording_) {
        return FormButton::event(event);
    }
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::KeyPress && takeKey(*static_cast<QKeyEvent*>(event))) {
        return true;
    }
    // A released Space or Enter would press the button; a released modifier is no longer held.
    if (event->type() == QEvent::KeyRelease) {
        showWords();
        return true;
    }
    return FormButton::event(event);
}

bool ShortcutRecorder::takeKey(const QKeyEvent& event) {
    const int key = event.key();
    const Qt::KeyboardModifiers held = event.modifiers() & usedModifiers;
    if (isModifierKey(key)) {
        const auto together = QKeySequence(int((held | modifierOf(key)).toInt()));
        showWords(together.toString(QKeySequence::NativeText));
        return true;
    }
    const bool bare = !(held & ~Qt::ShiftModifier);
    if (bare && (key == Qt::Key_Tab || key == Qt::Key_Backtab)) {
        setRecording(false);
        return false;
    }
    if (bare && key == Qt::Key_Escape) {
        setRecording(false);
        return true;
    }
    const Platform::KeyCombination combination{key, int(held.toInt())};
    if (!combination.isValid()) {
        Q_EMIT refused();
        return true;
    }
    setRecording(false);
    Q_EMIT recorded(combination);
    return true;
}

void ShortcutRecorder::focusOutEvent(QFocusEvent* event) {
    setRecording(false);
    FormButton::focusOutEvent(event);
}

} // namespace DeskSprites
