// What the user does to a fader.

#include <optional>

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QWheelEvent>
#include <QtQuick/QQuickWindow>

#include "panel/quick/FaderItem.h"

namespace noctra {

namespace {

/// In the window, as far down the screen as that stands: on a desktop of several screens the
/// event's own global position jumps where the pointer crosses from one to the next, if they are
/// scaled. There y grows downwards.
PointerEvent pointerEvent(const QMouseEvent& event, const QQuickWindow* window) {
    if (window == nullptr)
        return {};
    return {-(event.scenePosition().y() + window->y())};
}

std::optional<FaderKey> faderKey(const QKeyEvent& event) {
    if ((event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) != Qt::NoModifier)
        return std::nullopt;
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Right:
        return FaderKey::up;
    case Qt::Key_Down:
    case Qt::Key_Left:
        return FaderKey::down;
    case Qt::Key_PageUp:
        return FaderKey::pageUp;
    case Qt::Key_PageDown:
        return FaderKey::pageDown;
    case Qt::Key_Home:
        return FaderKey::home;
    case Qt::Key_End:
        return FaderKey::end;
    default:
        return std::nullopt;
    }
}

} // namespace

void FaderItem::mousePressEvent(QMouseEvent* event) {
    if (view_ == nullptr) {
        event->ignore();
        return;
    }
    forceActiveFocus(Qt::MouseFocusReason);
    view_->mouseDown(pointerEvent(*event, window()));
    announce();
}

void FaderItem::mouseMoveEvent(QMouseEvent* event) {
    if (!isDragging())
        return;
    view_->mouseDragged(pointerEvent(*event, window()));
    announce();
}

void FaderItem::mouseReleaseEvent(QMouseEvent*) {
    if (!isDragging())
        return;
    view_->mouseUp();
    announce();
}

void FaderItem::mouseDoubleClickEvent(QMouseEvent* event) {
    event->accept(); // its press has been seen
}

void FaderItem::mouseUngrabEvent() {
    if (view_ == nullptr)
        return;
    view_->cancelDrag();
    announce();
}

void FaderItem::wheelEvent(QWheelEvent* event) {
    if (!takesWheel_) {
        event->ignore();
        return;
    }
    const int units = event->angleDelta().y();
    if (const int steps = wheel_.turn(units); view_ != nullptr && steps != 0)
        setByUser(faderValueOf(hundredthsOf(view_->latestValue()) + steps), true);
    event->accept();
}

void FaderItem::keyPressEvent(QKeyEvent* event) {
    const std::optional<FaderKey> key = faderKey(*event);
    if (view_ == nullptr || !key) {
        event->ignore();
        return;
    }
    const bool glides = *key != FaderKey::up && *key != FaderKey::down;
    setByUser(faderValueAfter(*key, view_->latestValue(), view_->minimumValue), glides);
}

void FaderItem::setByUser(double value, bool glides) {
    if (view_ == nullptr)
        return;
    view_->setValueByUser(value, glides);
    announce();
}

} // namespace noctra
