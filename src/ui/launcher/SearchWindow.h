// A text field above a list: typing filters, arrow keys select, Enter carries out, Escape or the loss of the focus
// closes. The launcher and the palette are such windows, at the tile they act on.
#pragma once

#include "ui/launcher/Entries.h"
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
    /// Null when the row is none.
    const LauncherEntry* entryAt(const QModelIndex& index) const;
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    static constexpr int kKindRole = Qt::UserRole;

  private:
    EntryList& entries_;
    IconSource icon_;
    std::vector<std::size_t> shown_;
};

class SearchWindow : public HostedWindow {
    Q_OBJECT

  public:
    explicit SearchWindow(WindowServices& services);
    /// `tile` is the tile to act on; without it, the first tile of the overlay's contents.
    void present(const nlohmann::json& parameters) override;

  protected:
    WindowServices& services() const { return services_; }
    const std::string& tile() const { return tile_; }
    QLineEdit& field() { return *field_; }
    QListView& list() { return *list_; }
    /// A row above the field; the window owns the widget.
    void putAbove(QWidget* widget);
    /// Replaces the entries; the row that is chosen is the first one.
    void offer(std::vector<LauncherEntry> entries);
    void offerMore(std::vector<LauncherEntry> entries);
    /// The list shows this entry whatever is typed.
    void offerOnly(LauncherEntry entry);
    /// Sends the request of the entry to the agent, and closes once it was carried out.
    void perform(const LauncherEntry& entry);
    FieldError& error() { return *error_; }
    /// Asks the agent for the entries.
    virtual void load() = 0;
    /// The entry was chosen.
    virtual void take(const LauncherEntry& entry) { perform(entry); }
    /// The typed text has changed.
    virtual void filter();
    /// Backspace in an empty field.
    virtual void goBack() {}

    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void placeAtTile();
    void choose(const QModelIndex& index);

    WindowServices& services_;
    std::string tile_;
    EntryList entries_;
    EntryModel* model_;
    QLineEdit* field_;
    QListView* list_;
    FieldError* error_;
    bool isAsking_ = false, wasActive_ = false;
};

} // namespace kova::ui
