// The text in the middle of a list without rows, which says why the list is empty. Main thread only.
#pragma once

#include <QAbstractItemView>
#include <QLabel>

namespace kova::ui {

class EmptyListText final : public QLabel {
    Q_OBJECT

  public:
    /// `list` must already have its model; it owns the text. The text is shown while no row of the list is visible.
    explicit EmptyListText(QAbstractItemView& list);

    /// An empty text shows nothing.
    void say(const QString& text);
    /// Says that the rows have been requested.
    void sayLoading() { say(tr("Loading…")); }
    /// Call after rows were hidden or shown again. Not needed after rows were added or removed.
    void refresh();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool hasVisibleRow() const;

    QAbstractItemView& list_;
    QString description_; // the list's own accessible description, while the text replaces it
};

} // namespace kova::ui
