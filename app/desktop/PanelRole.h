#pragma once

#include <QAccessible>

class QWidget;

namespace DeskSprites {

/// What a widget without a role of its own is to assistive technology, such as one line of a list. Its
/// accessible name and description tell the rest. Called before anyone asks for it.
void announceAs(QWidget& widget, QAccessible::Role role);

} // namespace DeskSprites
