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
    /// `drawing` is the style that draws; this object takes ownership of it.
    explicit WindowStyle(QStyle* drawing) : QProxyStyle(drawing) {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override {
        // Some desktops let a single click activate an entry. Here a single click only selects, since activating an
        // entry may move windows.
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
