// Lets the user point at a window on the screen: the next click, wherever it is, picks the window there. Escape or
// another button ends it. Main thread only.
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

    /// Whether the system gives a program the clicks on other programs' windows: not on a Mac.
    static bool isPossible();
    /// Takes the pointer and the keyboard; `owner` is a visible widget.
    void start(QWidget* owner);
    bool isActive() const { return owner_ != nullptr; }

  Q_SIGNALS:
    /// In pixels of the screen, from the top left of the first display.
    void picked(QPoint position);
    void cancelled();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void end();

    QPointer<QWidget> owner_; // while it is active
};

} // namespace kova::ui
