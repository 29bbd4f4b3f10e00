// The list of rules. The user moves rules by dragging, by Alt with an arrow key, or by buttons. The list never changes
// its own contents: it emits a signal for each change by the user, and shows the rules that the agent sends.
#pragma once

#include <QTreeWidget>

#include <nlohmann/json_fwd.hpp>

namespace kova::ui {

class RuleTable : public QTreeWidget {
    Q_OBJECT

  public:
    explicit RuleTable(QWidget* parent = nullptr);

    /// Shows the array `rules` of `rule.list`. The selected rule stays selected even if its row changes.
    void show(const nlohmann::json& rules);
    /// The selected rule's id; empty if no rule is selected.
    QString selectedID() const;
    /// Selects the rule, at once or as soon as the agent has sent it.
    void select(const QString& id);
    /// Requests to move the selected rule by `places` rows; a negative value moves it up.
    void moveSelected(int places);

    void dropEvent(QDropEvent* event) override;

  Q_SIGNALS:
    void moveWanted(const QString& id, int place); // `place` is counted from 1
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

    QString idToSelect_;     // the rule to select as soon as the agent has sent it
    QString selectedBefore_; // while rows are created again: id of the rule that was selected
    int rowBefore_ = -1;     // the row of that rule; -1 if there was none
    bool isFilling_ = false;
};

} // namespace kova::ui
