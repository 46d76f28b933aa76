#include "key_codes.h"

#include "view/keys.h"

namespace sky::ui {

int ClassicKeyCode(int qtKey) {
    namespace keys = view::keys;
    if (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z)
        return keys::kA + (qtKey - Qt::Key_A);
    if (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9)
        return keys::k0 + (qtKey - Qt::Key_0);
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F12)
        return keys::kF1 + (qtKey - Qt::Key_F1);
    switch (qtKey) {
    case Qt::Key_Left:
        return keys::kLeft;
    case Qt::Key_Right:
        return keys::kRight;
    case Qt::Key_Up:
        return keys::kUp;
    case Qt::Key_Down:
        return keys::kDown;
    case Qt::Key_Escape:
        return keys::kEscape;
    case Qt::Key_Space:
        return keys::kSpace;
    case Qt::Key_PageUp:
        return keys::kPageUp;
    case Qt::Key_PageDown:
        return keys::kPageDown;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return keys::kEnter;
    case Qt::Key_Exclam:
        return keys::Digit(1);
    case Qt::Key_At:
    case Qt::Key_QuoteDbl:
        return keys::Digit(2);
    case Qt::Key_NumberSign:
    case Qt::Key_section:
        return keys::Digit(3);
    case Qt::Key_Dollar:
        return keys::Digit(4);
    default:
        return 0;
    }
}

int ClassicModifiers(Qt::KeyboardModifiers modifiers) {
    int mask = 0;
    if (modifiers & Qt::ShiftModifier)
        mask |= view::keys::kShift;
    if (modifiers & Qt::ControlModifier)
        mask |= view::keys::kCtrl;
    if (modifiers & Qt::AltModifier)
        mask |= view::keys::kAlt;
    return mask;
}

} // namespace sky::ui
