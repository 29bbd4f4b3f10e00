// The pictures that show a new user what KOVA does. Main thread only.
#pragma once

#include "ui/style/Palette.h"

#include <QWidget>

#include <functional>

namespace kova::ui {

class OnboardingPicture : public QWidget {
    Q_OBJECT

  public:
    enum class Subject { tiles, dividers, scenes };
    /// `palette` is called each time the picture is drawn.
    OnboardingPicture(Subject subject, std::function<Palette()> palette, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return width * 10 / 16; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    const Subject subject_;
    const std::function<Palette()> palette_;
};

} // namespace kova::ui
