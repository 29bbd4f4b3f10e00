// The style of kova-ui's windows: the same on every desktop, so that they look and act as the golden pictures and tests
// show them.
#pragma once

#include <QProxyStyle>

namespace kova::ui {

class WindowStyle final : public QProxyStyle {
  public:
    WindowStyle() : QProxyStyle(QStringLiteral("fusion")) {}
    /// Takes ownership of the style that draws.
    explicit WindowStyle(QStyle* drawing) : QProxyStyle(drawing) {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override {
        // Some desktops let one click activate an entry, but here a click selects, and what is activated may move
        // windows.
        if (hint == SH_ItemView_ActivateItemOnSingleClick) return 0;
        return QProxyStyle::styleHint(hint, option, widget, result);
    }
};

} // namespace kova::ui
