#pragma once

#include "app/desktop/Bubble.h"
#include "app/desktop/PanelButton.h"
#include "app/desktop/QuickActionsContent.h"
#include "platform/BubbleWindow.h"
#include "tests/support/Waiting.h"

#include <QAccessible>
#include <QApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QWindow>

#include <gmock/gmock.h>

#include <algorithm>

namespace KitHarness {

using namespace DeskSprites;
using Testing::runFor;
using Testing::waitUntil;
using Log = std::vector<std::string>;

inline FellowCore::BubblePlacement placementFor(const Bubble& bubble, double x = 200, double y = 300) {
    FellowCore::BubblePlacement placement;
    const FellowCore::Size size = bubble.preferredSize();
    placement.frame = {x, y, size.width, size.height};
    placement.pointerOnLeft = true;
    placement.pointerY = size.height / 2;
    placement.canPresent = true;
    return placement;
}

/// Shows a bubble without motion and waits until the desktop has it.
inline bool showStill(Bubble& bubble) {
    return bubble.present(placementFor(bubble), BubbleMotion::reduced) &&
           waitUntil([&bubble] { return bubble.windowHandle()->isExposed(); });
}

/// Gives a shown bubble the keyboard, as a click into it would. Qt forgets a hidden window's focus only after
/// a while. A window manager that is still busy with the last window may drop the wish, so it is repeated.
inline bool activate(Bubble& bubble) {
    waitUntil([] { return QGuiApplication::focusWindow() == nullptr; });
    int looks = 0;
    return waitUntil([&bubble, &looks] {
        constexpr int looksBetweenWishes = 20;
        if (!bubble.isActiveWindow() && looks++ % looksBetweenWishes == 0) {
            Platform::activateBubbleWindow(bubble);
        }
        return bubble.isActiveWindow();
    });
}

inline void key(QWidget& window, int code, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWidget* target = QApplication::focusWidget() != nullptr ? QApplication::focusWidget() : &window;
    QKeyEvent press(QEvent::KeyPress, code, modifiers,
                    code == Qt::Key_Space ? QStringLiteral(" ") : QString());
    QApplication::sendEvent(target, &press);
    QKeyEvent release(QEvent::KeyRelease, code, modifiers);
    QApplication::sendEvent(target, &release);
}

inline void mouse(QWidget& widget, QEvent::Type type, const QPointF& place,
                  Qt::MouseButton button = Qt::LeftButton) {
    const bool held = type != QEvent::MouseButtonRelease;
    QMouseEvent event(type, place, widget.mapToGlobal(place),
                      type == QEvent::MouseMove ? Qt::NoButton : button,
                      held ? Qt::LeftButton | button : Qt::MouseButtons(), Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

/// The shown button of that title, or null.
inline PanelButton* button(const QWidget& root, const char* title) {
    for (PanelButton* candidate : root.findChildren<PanelButton*>()) {
        if (candidate->title() == QString::fromUtf8(title) && !candidate->isHidden()) {
            return candidate;
        }
    }
    return nullptr;
}

inline std::string focused() {
    const auto* widget = qobject_cast<const PanelButton*>(QApplication::focusWidget());
    return widget != nullptr                        ? widget->title().toStdString()
           : QApplication::focusWidget() != nullptr ? QApplication::focusWidget()->metaObject()->className()
                                                    : "nothing";
}

inline std::string spokenName(QWidget* widget) {
    const QAccessibleInterface* face = QAccessible::queryAccessibleInterface(widget);
    return face != nullptr ? face->text(QAccessible::Name).toStdString() : "no interface";
}

/// Counts what happens to the widgets under `root` while it lives, by event type.
class EventCount : public QObject {
public:
    EventCount(QWidget& root, std::vector<QEvent::Type> types) : root_(root), types_(std::move(types)) {
        qApp->installEventFilter(this);
    }
    ~EventCount() override { qApp->removeEventFilter(this); }

    /// The widgets it happened to, by class name, each time once.
    Log seen;

    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* widget = qobject_cast<const QWidget*>(watched);
        if (widget != nullptr && (widget == &root_ || root_.isAncestorOf(widget)) &&
            std::count(types_.begin(), types_.end(), event->type()) > 0) {
            seen.emplace_back(widget->metaObject()->className());
        }
        return false;
    }

private:
    QWidget& root_;
    std::vector<QEvent::Type> types_;
};

inline QuickAction action(const char* id, const char* title, std::function<void()> onPress,
                          Emphasis emphasis = Emphasis::plain) {
    QuickAction made;
    made.id = QString::fromUtf8(id);
    made.title = QString::fromUtf8(title);
    made.emphasis = emphasis;
    made.onPress = std::move(onPress);
    return made;
}

/// A timer's panel as it stands at one second of its session; each press writes its title to the log.
inline QuickActionsContent timerContent(Log& log, const char* badge = "24:59", double progress = 0.5) {
    const auto pressed = [&log](const char* title) { return [&log, title] { log.emplace_back(title); }; };
    QuickActionsContent content;
    content.name = QStringLiteral("Batti");
    content.role = QStringLiteral("Focus");
    content.status = QStringLiteral("Focus");
    content.badge = QString::fromUtf8(badge);
    content.badgeSpoken = QStringLiteral("%1 in words").arg(*content.badge);
    content.progress = progress;
    content.lamp = QColor(200, 60, 50);
    content.actions = {action("primary", "Pause", pressed("Pause"), Emphasis::primary),
                       action("reset", "Reset", pressed("Reset")), action("skip", "Skip", pressed("Skip"))};
    content.footer = {action("hide", "Hide", pressed("Hide")), action("swap", "Swap", pressed("Swap")),
                      action("settings", "Settings", pressed("Settings"))};
    content.size = SizeRow{};
    content.size->onBegin = pressed("begin");
    content.size->onRequest = [&log](int height) { log.push_back(std::to_string(height)); };
    content.size->onEnd = pressed("end");
    content.size->onSmaller = pressed("Smaller");
    content.size->onLarger = pressed("Larger");
    return content;
}

} // namespace KitHarness
