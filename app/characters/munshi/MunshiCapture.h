#pragma once

#include "app/desktop/Bubble.h"
#include "app/desktop/DesktopServices.h"
#include "platform/FrontmostApplication.h"

#include <QTimer>

#include <optional>

class QStackedWidget;

namespace DeskSprites {

class MunshiBook;
class PanelField;
class PanelText;

/// The field alone, near the middle of the screen that has the pointer, whatever the user is working in.
/// Enter writes the line down and says so for a moment, Escape closes; either gives the keyboard back to the
/// application that had it. What was typed and not written down is there again the next time.
class MunshiCapture : public Bubble {
    Q_OBJECT

public:
    static constexpr int confirmationMilliseconds = 1500;

    /// `book` outlives this.
    MunshiCapture(MunshiBook& book, DesktopServices& services);

    /// After a line was written down.
    std::function<void()> onWritten;

    /// Opens the field, or closes it when it is open for writing.
    void toggle();
    bool isWriting() const { return isPresented() && !confirming_; }
    PanelField& field() const { return *field_; }
    /// What is said after Enter.
    QString confirmation() const;

protected:
    void paletteChanged() override;
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void open();
    void writeDown();
    void confirm(const QString& line);
    void showOutcome();
    void askForKeyboard();
    void giveKeyboardBack();
    FellowCore::BubblePlacement placement() const;

    MunshiBook& book_;
    DesktopServices& services_;
    QStackedWidget* pages_;
    PanelField* field_;
    PanelText* said_;
    QString line_; ///< what was written down last
    bool confirming_ = false;
    bool hadKeyboard_ = false;
    std::optional<Platform::RunningApplication> before_; ///< who had the keyboard
    int wishesLeft_ = 0;
    QTimer wish_; ///< runs until the field has the keyboard, or a few wishes were in vain
    QTimer closing_;
};

} // namespace DeskSprites
