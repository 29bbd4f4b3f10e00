// Lets the user pick a window on the screen with a click of the left button. Escape or another button cancels.
// Main thread only.
#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QWidget>

namespace kova::ui {

class WindowPicker : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;
    ~WindowPicker() override { end(); }

    /// Whether the system lets a program grab clicks on other programs' windows; a Mac does not.
    static bool isPossible();
    /// Grabs the pointer and the keyboard for `owner`, a visible widget.
    void start(QWidget* owner);
    bool isActive() const { return owner_ != nullptr; }

  Q_SIGNALS:
    /// `position` is in pixels on the screen.
    void picked(QPoint position);
    void canceled();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void end();

    QPointer<QWidget> owner_; // null while the picker is not active
};

} // namespace kova::ui
