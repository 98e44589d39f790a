#pragma once

#include "app/settings/FormKit.h"
#include "app/settings/LibraryWindowController.h"
#include "tests/support/Waiting.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QListWidget>
#include <QPointer>
#include <QSlider>

#include <gmock/gmock.h>

namespace SettingsHarness {

using namespace DeskSprites;
using Log = std::vector<std::string>;

/// The settings window with three characters, and a line in `log` for each call that it makes.
class Library {
public:
    Library()
        : controller(actions(), [](const std::string& id, QWidget* parent) {
              return id == "mira" ? miraForm(parent) : nullptr;
          }) {
        controller.setRoster(
            {entry("batti", "Batti", "Focus", true), entry("mira", "Mira", "Breathing", false),
             entry("munshi", "Munshi", "Ledger", false), entry("fourth", "A & B", "", true)});
        controller.setActive("batti", {"batti", "munshi"}, {"batti", "mira", "munshi", "fourth"});
        CharacterSettings settings;
        settings.sounds = true;
        settings.volume = 0.8;
        settings.mirrored = false;
        settings.reducedMotion = true;
        controller.setCharacter("batti", settings);
        controller.setTimer("batti", FellowCore::TimerSettings(25, 5, 15, 4, true));
        general.shortcutLabel = QStringLiteral("Ctrl+Alt+D");
        general.version = QStringLiteral("1.2");
        general.dataFolder = QStringLiteral("~/files");
        controller.setGeneral(general);
    }

    static LibraryEntry entry(const char* id, const char* name, const char* role, bool hasTimer) {
        return {id, QString::fromUtf8(name), QString::fromUtf8(role), {}, QColor(196, 97, 64), hasTimer};
    }

    static QWidget* miraForm(QWidget* parent) {
        auto* form = new FormSection(QStringLiteral("Breath"), parent);
        form->addSwitch(QStringLiteral("Own switch"));
        return form;
    }

    /// The visible control of that accessible name, in the open pane.
    template <typename Widget>
    Widget* find(const char* name) const {
        for (Widget* each : controller.window()->findChildren<Widget*>()) {
            if (each->isVisible() && each->accessibleName() == QString::fromUtf8(name)) {
                return each;
            }
        }
        ADD_FAILURE() << "no visible control is called " << name;
        return nullptr;
    }

    bool shows(const char* text) const {
        for (const QLabel* label : controller.window()->findChildren<QLabel*>()) {
            if (label->isVisible() && label->text() == QString::fromUtf8(text)) {
                return true;
            }
        }
        return false;
    }

    QListWidget* list() const { return find<QListWidget>("Characters and settings"); }

    Log log;
    GeneralSettings general;
    Platform::ShortcutResult shortcutAnswer = Platform::ShortcutResult::registered;
    QString startAtLoginAnswer;
    LibraryWindowController controller;

private:
    LibraryActions actions();

    template <typename... Values>
    void note(const char* what, const Values&... values) {
        std::ostringstream line;
        line << std::boolalpha << what;
        ((line << ' ' << values), ...);
        log.push_back(line.str());
    }
};

inline LibraryActions Library::actions() {
    using Id = LibraryActions::Id;
    LibraryActions a;
    a.onPaneChanged = [this](Id id) { note("pane", id); };
    a.onSelect = [this](Id id) { note("select", id); };
    a.onBringOut = [this](Id id) { note("bring out", id); };
    a.onHide = [this](Id id) { note("hide", id); };
    a.onSizePreview = [this](Id id, double height) { note("size preview", id, height); };
    a.onSizeChosen = [this](Id id, double height) { note("size", id, height); };
    a.onSizeStep = [this](Id id, SizeStep step) {
        note(step == SizeStep::larger ? "larger" : "smaller", id);
    };
    a.onCharacterSounds = [this](Id id, bool on) { note("sounds", id, on); };
    a.onCharacterVolume = [this](Id id, double volume) { note("volume", id, volume); };
    a.onMirrored = [this](Id id, bool on) { note("mirrored", id, on); };
    a.onReducedMotion = [this](Id id, bool on) { note("reduced motion", id, on); };
    a.onTimerSettings = [this](Id id, const FellowCore::TimerSettings& timer) {
        note("timer", id, timer.focusMinutes, timer.shortBreakMinutes, timer.longBreakMinutes,
             timer.longBreakEvery, timer.startRestsAutomatically);
    };
    a.onInterfaceSounds = [this](bool on) { note("interface sounds", on); };
    a.onInterfaceVolume = [this](double volume) { note("interface volume", volume); };
    a.onShortcutChanged = [this](const Platform::KeyCombination&, const QString& label) {
        note("shortcut", label.toStdString());
        return shortcutAnswer;
    };
    a.onShortcutCleared = [this] { note("no shortcut"); };
    a.onStartAtLogin = [this](bool on) {
        note("start at login", on);
        return startAtLoginAnswer;
    };
    a.onDefaultHeight = [this](double height) { note("default height", height); };
    a.onArrangeEdge = [this](FellowCore::ArrangeLayout::Edge edge) {
        note("edge", edge == FellowCore::ArrangeLayout::Edge::right ? "right" : "bottom");
    };
    a.onArrangeCompact = [this](bool on) { note("compact", on); };
    a.onArrange = [this] { note("arrange"); };
    a.onOpenDataFolder = [this] { note("open folder"); };
    return a;
}

/// A key as the keyboard would send it to a widget.
inline void press(QWidget* widget, int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {}) {
    QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(widget, &down);
    QKeyEvent up(QEvent::KeyRelease, key, modifiers, text);
    QApplication::sendEvent(widget, &up);
}

inline std::string accessibleName(QWidget* widget) {
    QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(widget);
    return seen == nullptr ? std::string() : seen->text(QAccessible::Name).toStdString();
}

} // namespace SettingsHarness
