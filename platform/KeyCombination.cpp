#include "platform/KeyCombination.h"

#include <QKeySequence>

namespace Platform {
namespace {

constexpr int usefulModifiers =
    static_cast<int>(Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);

bool isModifierKey(int key) {
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
        return true;
    default:
        return false;
    }
}

bool isFunctionKey(int key) {
    return key >= Qt::Key_F1 && key <= Qt::Key_F35;
}

} // namespace

bool KeyCombination::isValid() const {
    // Shift alone would take a capital letter away from everyone.
    const bool strong = (modifiers & usefulModifiers & ~static_cast<int>(Qt::ShiftModifier)) != 0;
    const bool known = key > 0 && key < Qt::Key_unknown && (modifiers & ~usefulModifiers) == 0;
    return known && !isModifierKey(key) && (strong || isFunctionKey(key));
}

QString KeyCombination::label() const {
    return isValid() ? QKeySequence(key | modifiers).toString(QKeySequence::NativeText) : QString();
}

} // namespace Platform
