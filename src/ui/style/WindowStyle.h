// The style of kova-ui's windows: the same on every desktop, so that they look and act as the golden pictures and tests
// show them.
#pragma once

#include <QAbstractItemView>
#include <QProxyStyle>
#include <QTreeView>

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

    // Lists have some space beside and above their texts, and headings stand exactly above their columns.
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        const bool isList = qobject_cast<const QAbstractItemView*>(widget);
        if (isList && metric == PM_FocusFrameHMargin) return widget->fontMetrics().height() / 3;
        if (isList && metric == PM_HeaderMargin) return widget->fontMetrics().height() / 3 + 1;
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override {
        QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
        if (type == CT_ItemViewItem && qobject_cast<const QTreeView*>(widget))
            size.rheight() += widget->fontMetrics().height() / 3;
        return size;
    }
};

} // namespace kova::ui
