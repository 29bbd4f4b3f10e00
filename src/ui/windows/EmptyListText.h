// The text in the middle of a list without rows, which says why the list is empty. Main thread only.
#pragma once

#include <QAbstractItemView>
#include <QLabel>

namespace kova::ui {

class EmptyListText final : public QLabel {
    Q_OBJECT

  public:
    /// The list, which has its model already, owns the text. The text is shown while no row of the list is visible.
    explicit EmptyListText(QAbstractItemView& list);

    /// An empty text shows nothing.
    void say(const QString& text);
    /// Says that the rows have been requested.
    void sayLoading() { say(tr("Loading…")); }
    /// To be called after rows were hidden or shown again; rows that come and go are noticed.
    void refresh();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool hasVisibleRow() const;

    QAbstractItemView& list_;
    QString description_; // the list's own, while the text stands in its place for screen readers
};

} // namespace kova::ui
