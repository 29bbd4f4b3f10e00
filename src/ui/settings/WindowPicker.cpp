#include "ui/settings/WindowPicker.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include <utility>

namespace kova::ui {

bool WindowPicker::isPossible() {
    return QGuiApplication::platformName() != QLatin1String("cocoa");
}

void WindowPicker::start(QWidget* owner) {
    end();
    owner_ = owner;
    qApp->installEventFilter(this);
    owner->grabMouse(Qt::CrossCursor);
    owner->grabKeyboard();
}

void WindowPicker::end() {
    const QPointer<QWidget> owner = std::exchange(owner_, nullptr);
    if (!owner) return;
    qApp->removeEventFilter(this);
    owner->releaseKeyboard();
    owner->releaseMouse();
}

bool WindowPicker::eventFilter(QObject* watched, QEvent* event) {
    if (!watched->isWidgetType()) return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const auto* press = static_cast<QMouseEvent*>(event);
        const bool picks = press->button() == Qt::LeftButton;
        const QPoint position = press->globalPosition().toPoint();
        end();
        if (picks) {
            Q_EMIT picked(position);
        } else {
            Q_EMIT canceled();
        }
        return true;
    }
    case QEvent::ShortcutOverride:
        event->accept(); // so that Escape ends the picking and does not close the window
        return true;
    case QEvent::KeyPress:
        if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            end();
            Q_EMIT canceled();
        }
        return true;
    default:
        return false;
    }
}

} // namespace kova::ui
