#pragma once

#include <QAccessibleObject>
#include <QString>

namespace Platform {

class X11SurfaceWindow;

/// What a surface says to assistive technology.
struct SurfaceLabel {
    QString name;
    QString value;
    QString description;
};

/// A surface as assistive technology sees it: a button that can be pressed and that has a menu.
class SurfaceAccessible final : public QAccessibleObject, public QAccessibleActionInterface {
public:
    explicit SurfaceAccessible(X11SurfaceWindow& window);

    /// Teaches Qt to make these for surfaces; calling it again does nothing.
    static void install();

    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QWindow* window() const override;
    QRect rect() const override;
    QString text(QAccessible::Text kind) const override;
    QAccessible::Role role() const override { return QAccessible::Button; }
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    X11SurfaceWindow* surface() const;
};

} // namespace Platform
