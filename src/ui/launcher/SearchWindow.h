// The base of launcher and palette, which open over the tile on which they act. A text field above a list: typing
// filters the list, arrow keys select an entry, Enter chooses it, Escape or losing the focus closes the window.
#pragma once

#include "ui/launcher/Entries.h"
#include "ui/windows/EmptyListText.h"
#include "ui/windows/FieldError.h"
#include "ui/windows/HostedWindow.h"

#include <QAbstractListModel>
#include <QLineEdit>
#include <QListView>

#include <vector>

namespace kova::ui {

/// The entries as rows of the list. Icons are looked up when a row is first drawn.
class EntryModel : public QAbstractListModel {
    Q_OBJECT

  public:
    EntryModel(EntryList& entries, IconSource icon, QObject* parent);
    void filter(const QString& query);
    /// Null if the index is invalid.
    const LauncherEntry* entryAt(const QModelIndex& index) const;
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    static constexpr int kKindRole = Qt::UserRole;

  private:
    QPixmap iconOf(const LauncherEntry& entry, int size, qreal ratio) const;

    EntryList& entries_;
    IconSource icon_;
    std::vector<std::size_t> shown_;
};

class SearchWindow : public HostedWindow {
    Q_OBJECT

  public:
    explicit SearchWindow(WindowServices& services);
    /// The parameter `tile` is the id of the tile to act on; the default is the first tile of the overlay's contents.
    void present(const nlohmann::json& parameters) override;

  protected:
    WindowServices& services() const { return services_; }
    const std::string& tile() const { return tile_; }
    QLineEdit& field() { return *field_; }
    QListView& list() { return *list_; }
    /// Inserts a row above the field; the window owns the widget.
    void insertAbove(QWidget* widget);
    /// Replaces the entries and selects the first row.
    void setEntries(std::vector<LauncherEntry> entries);
    /// Adds entries. An entry that the user has selected with the arrow keys stays selected.
    void addEntries(std::vector<LauncherEntry> entries);
    /// Shows only this entry, whatever is typed.
    void showOnly(LauncherEntry entry);
    /// While entries are loading, an empty list says so.
    void setLoading(bool isLoading);
    /// Sends the entry's request to the agent, and closes the window when the request has succeeded.
    void perform(const LauncherEntry& entry);
    FieldError& error() { return *error_; }
    /// Requests the entries from the agent.
    virtual void load() = 0;
    /// Called when the user has chosen the entry.
    virtual void entryChosen(const LauncherEntry& entry) { perform(entry); }
    /// Called when the typed text has changed.
    virtual void filter();
    /// Called at Backspace in an empty field.
    virtual void goBack() {}

    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void placeAtTile();
    void explainEmptyList();
    void choose(const QModelIndex& index);

    WindowServices& services_;
    std::string tile_;
    EntryList entries_;
    EntryModel* model_;
    QLineEdit* field_;
    QListView* list_;
    FieldError* error_;
    EmptyListText* nothingFound_ = nullptr;
    bool isRequestPending_ = false, wasActive_ = false, isLoading_ = false;
};

} // namespace kova::ui
