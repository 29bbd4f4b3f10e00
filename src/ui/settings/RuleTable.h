// The list of rules: ordered by dragging, by Alt with an arrow key, or by buttons. It never changes its own contents:
// the user's changes are signals, and it shows the list that the agent sends.
#pragma once

#include <QTreeWidget>

#include <nlohmann/json_fwd.hpp>

namespace kova::ui {

class RuleTable : public QTreeWidget {
    Q_OBJECT

  public:
    explicit RuleTable(QWidget* parent = nullptr);

    /// The `rules` of `rule.list`, an array. The selected rule stays selected wherever it is then.
    void show(const nlohmann::json& rules);
    /// The selected rule's id; empty when none is selected.
    QString selectedID() const;
    /// At once, or as soon as the agent has sent the rule.
    void select(const QString& id);
    /// Moves the selected rule by so many places.
    void moveSelected(int places);

    void dropEvent(QDropEvent* event) override;

  Q_SIGNALS:
    void moveWanted(const QString& id, int place); // from 1
    void switchWanted(const QString& id, bool isEnabled);
    void deletionWanted(const QString& id);
    void selectionMoved();

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    bool hasRowsOf(const nlohmann::json& rules) const;
    bool selectShown(const QString& id);
    void rebuild(int rows);
    QString idAt(int row) const;
    int selectedRow() const;
    int gapAt(QPoint position) const;

    QString awaited_;        // to be selected
    QString selectedBefore_; // while the rows are created again
    int rowBefore_ = -1;
    bool isFilling_ = false;
};

} // namespace kova::ui
