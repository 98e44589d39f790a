#pragma once

#include "app/settings/FormControls.h"
#include "platform/KeyCombination.h"

namespace DeskSprites {

/// A button that takes a key combination: press it, then press the keys. Escape, leaving it, or pressing it
/// again gives up; Tab leaves it, so the keyboard is never caught.
class ShortcutRecorder : public FormButton {
    Q_OBJECT
public:
    explicit ShortcutRecorder(QWidget* parent = nullptr);
    /// The shortcut in force, as words; empty for none.
    void setLabel(const QString& label);
    bool isRecording() const { return recording_; }

Q_SIGNALS:
    void recorded(const Platform::KeyCombination& combination);
    /// The keys cannot be a shortcut; the recorder goes on listening.
    void refused();
    void recordingChanged(bool recording);

protected:
    bool event(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void setRecording(bool recording);
    bool takeKey(const QKeyEvent& event);
    void showWords(const QString& pressed = {});

    QString label_;
    bool recording_ = false;
};

} // namespace DeskSprites
