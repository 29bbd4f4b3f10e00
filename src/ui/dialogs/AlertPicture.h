// The picture beside the text of an alert: a warning or an information sign. Main thread only.
#pragma once

#include "ui/style/Palette.h"

#include <QWidget>

#include <functional>

namespace kova::ui {

enum class AlertKind { information, warning };

class AlertPicture final : public QWidget {
    Q_OBJECT

  public:
    explicit AlertPicture(std::function<Palette()> palette);
    void show(AlertKind kind);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    std::function<Palette()> palette_;
    AlertKind kind_ = AlertKind::information;
};

} // namespace kova::ui
