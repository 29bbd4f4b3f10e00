#include "ui/launcher/SearchWindow.h"

#include <QApplication>
#include <QIcon>
#include <QKeyEvent>
#include <QPainter>
#include <QPixmapCache>
#include <QScreen>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QVBoxLayout>
#include <QWindow>
#include <QtMath>

#include <algorithm>

namespace kova::ui {

namespace {

constexpr int kSearchColumns = 64; // width, in average characters
constexpr int kRows = 10;          // entries that are visible at once

int iconSizeOf(const QWidget& widget) {
    return widget.fontMetrics().height() * 3 / 2;
}

/// Draws the icon, the title beside it, and the entry's kind at the right.
class EntryDelegate final : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
        return {option.fontMetrics.averageCharWidth() * kSearchColumns / 2, option.fontMetrics.height() * 2};
    }
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QString kind = index.data(EntryModel::kKindRole).toString();
        const int margin = option.fontMetrics.averageCharWidth();
        const int kindWidth = kind.isEmpty() ? 0 : option.fontMetrics.horizontalAdvance(kind) + 2 * margin;
        QStyleOptionViewItem item = option;
        initStyleOption(&item, index);
        if (item.icon.isNull()) { // an empty icon aligns the title with titles beside an icon
            QPixmap none(item.decorationSize);
            none.fill(Qt::transparent);
            item.icon = none;
            item.features |= QStyleOptionViewItem::HasDecoration;
        }
        const int room = item.rect.width() - item.decorationSize.width() - kindWidth - 2 * margin;
        item.text = item.fontMetrics.elidedText(item.text, Qt::ElideRight, room);
        const QStyle* style = item.widget ? item.widget->style() : QApplication::style();
        style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
        if (kind.isEmpty()) return;
        painter->save();
        painter->setPen(option.palette.color(QPalette::PlaceholderText));
        painter->drawText(option.rect.adjusted(margin, 0, -margin, 0), Qt::AlignVCenter | Qt::AlignRight, kind);
        painter->restore();
    }
};

/// Closes the window when a mouse button is pressed over another window of this program. Waiting for the loss of the
/// focus is not enough: footers, for example, do not take the focus.
class OutsidePressFilter final : public QObject {
  public:
    explicit OutsidePressFilter(QWidget& window) : QObject(&window), window_(window) { qApp->installEventFilter(this); }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::MouseButtonPress || !window_.isVisible()) return false;
        const auto* pressed = qobject_cast<QWindow*>(watched);
        const bool isOther = pressed && pressed != window_.windowHandle() && pressed->type() != Qt::Popup;
        if (isOther) QMetaObject::invokeMethod(&window_, &QWidget::close, Qt::QueuedConnection);
        return false;
    }

  private:
    QWidget& window_;
};

} // namespace

EntryModel::EntryModel(EntryList& entries, IconSource icon, QObject* parent) :
    QAbstractListModel(parent), entries_(entries), icon_(std::move(icon)) {}

void EntryModel::filter(const QString& query) {
    beginResetModel();
    shown_ = entries_.matching(query);
    endResetModel();
}

const LauncherEntry* EntryModel::entryAt(const QModelIndex& index) const {
    const auto row = static_cast<std::size_t>(index.row());
    return index.isValid() && row < shown_.size() ? &entries_.at(shown_[row]) : nullptr;
}

int EntryModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

/// `size` is in toolkit units; one unit is `ratio` pixels.
QPixmap EntryModel::iconOf(const LauncherEntry& entry, int size, qreal ratio) const {
    const int pixels = qCeil(size * ratio);
    QPixmap picture;
    if (entry.iconName.startsWith(u'/')) {
        picture = QPixmap(entry.iconName);
        if (!picture.isNull()) picture = picture.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    } else if (!entry.iconName.isEmpty()) {
        picture = QIcon::fromTheme(entry.iconName).pixmap(QSize(size, size), ratio);
    }
    if (picture.isNull() && icon_) picture = icon_(entry.application, pixels);
    if (picture.isNull()) { // an empty square keeps the titles aligned
        picture = QPixmap(pixels, pixels);
        picture.fill(Qt::transparent);
    }
    picture.setDevicePixelRatio(ratio);
    return picture;
}

QVariant EntryModel::data(const QModelIndex& index, int role) const {
    const LauncherEntry* entry = entryAt(index);
    if (!entry) return {};
    switch (role) {
    case Qt::DisplayRole:
        return entry->title;
    case kKindRole:
    case Qt::AccessibleDescriptionRole:
        return entry->kind;
    case Qt::DecorationRole: {
        if (entry->application.id.empty() && entry->application.name.empty()) return {};
        const auto* view = qobject_cast<const QListView*>(QObject::parent());
        return iconOf(*entry, view ? view->iconSize().height() : 16, view ? view->devicePixelRatioF() : 1);
    }
    default:
        return {};
    }
}

SearchWindow::SearchWindow(WindowServices& services) :
    services_(services), field_(new QLineEdit), list_(new QListView), error_(new FieldError) {
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    model_ = new EntryModel(entries_, services.icon, list_);
    field_->setObjectName(QStringLiteral("search"));
    field_->setClearButtonEnabled(false);
    field_->installEventFilter(this);
    list_->setObjectName(QStringLiteral("entries"));
    list_->setModel(model_);
    list_->setItemDelegate(new EntryDelegate(list_));
    list_->setUniformItemSizes(true);
    list_->setFrameShape(QFrame::NoFrame);
    list_->setIconSize({iconSizeOf(*this), iconSizeOf(*this)});
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->installEventFilter(this);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(field_);
    layout->addWidget(error_);
    layout->addWidget(list_, 1);
    nothingFound_ = new EmptyListText(*list_);
    setFocusProxy(field_);
    new OutsidePressFilter(*this);
    connect(field_, &QLineEdit::textChanged, this, [this] { filter(); });
    connect(list_, &QListView::clicked, this, [this](const QModelIndex& index) { choose(index); });
}

void SearchWindow::insertAbove(QWidget* widget) {
    static_cast<QVBoxLayout*>(layout())->insertWidget(0, widget);
}

void SearchWindow::present(const nlohmann::json& parameters) {
    const OverlayContents* contents = services_.overlay ? services_.overlay() : nullptr;
    tile_ = parameters.is_object() ? parameters.value("tile", "") : "";
    if (tile_.empty() && contents && !contents->tiles.empty()) tile_ = contents->tiles.front().id;
    field_->clear();
    error_->clear();
    wasActive_ = false;
    placeAtTile();
    field_->setFocus();
    load();
}

/// Places the window in the middle of its tile, but within the display.
void SearchWindow::placeAtTile() {
    const QFontMetrics letters = fontMetrics();
    QSize size(letters.averageCharWidth() * kSearchColumns, letters.height() * 2 * (kRows + 2));
    const OverlayContents* contents = services_.overlay ? services_.overlay() : nullptr;
    const TileContents* tile = contents ? contents->tile(tile_) : nullptr;
    const DisplayContents* display = tile ? contents->display(tile->display) : nullptr;
    if (!display) {
        resize(size);
        return;
    }
    const Style style{.scale = display->scale, .firstDisplay = services_.origin ? services_.origin() : QPoint()};
    const QRect room = style.px(display->visibleFrame);
    size = size.boundedTo(room.size());
    QRect place(QPoint(), size);
    place.moveCenter(style.px(tile->frame).center());
    place.moveLeft(std::clamp(place.left(), room.left(), room.left() + room.width() - size.width()));
    place.moveTop(std::clamp(place.top(), room.top(), room.top() + room.height() - size.height()));
    setGeometry(place);
}

void SearchWindow::setEntries(std::vector<LauncherEntry> entries) {
    entries_.set(std::move(entries));
    filter();
}

void SearchWindow::addEntries(std::vector<LauncherEntry> entries) {
    const QModelIndex current = list_->currentIndex();
    const LauncherEntry* chosen = current.row() > 0 ? model_->entryAt(current) : nullptr;
    const auto kept = chosen ? std::optional(*chosen) : std::nullopt;
    entries_.add(std::move(entries));
    filter();
    for (int row = 0; kept && row < model_->rowCount({}); ++row) {
        const LauncherEntry* entry = model_->entryAt(model_->index(row, 0));
        if (entry->title != kept->title || entry->method != kept->method || entry->parameters != kept->parameters)
            continue;
        return list_->setCurrentIndex(model_->index(row, 0));
    }
}

void SearchWindow::showOnly(LauncherEntry entry) {
    std::vector<LauncherEntry> entries;
    entries.push_back(std::move(entry));
    entries_.set(std::move(entries));
    model_->filter({});
    list_->setCurrentIndex(model_->index(0, 0));
}

void SearchWindow::filter() {
    model_->filter(field_->text());
    list_->setCurrentIndex(model_->index(0, 0));
    explainEmptyList();
}

void SearchWindow::setLoading(bool isLoading) {
    isLoading_ = isLoading;
    explainEmptyList();
}

void SearchWindow::explainEmptyList() {
    if (isLoading_) return nothingFound_->sayLoading();
    // Without a query, the error already explains the empty list.
    const bool isExplained = !error_->text().isEmpty() && field_->text().isEmpty();
    nothingFound_->say(isExplained ? QString() : tr("Nothing found"));
}

void SearchWindow::choose(const QModelIndex& index) {
    const LauncherEntry* entry = model_->entryAt(index);
    if (entry && !isRequestPending_)
        entryChosen(LauncherEntry(*entry)); // a copy, since `entryChosen` may replace the list
}

void SearchWindow::perform(const LauncherEntry& entry) {
    isRequestPending_ = true;
    callFor(*error_, services_.agent, entry.method, entry.parameters,
            {.done =
                 [this](const nlohmann::json&) {
                     isRequestPending_ = false;
                     close();
                 },
             .refused = [this] { isRequestPending_ = false; }});
}

/// The field keeps the keyboard focus and forwards the keys that move the selection to the list.
bool SearchWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return HostedWindow::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        choose(list_->currentIndex());
        return true;
    case Qt::Key_Backspace:
        if (watched != field_ || !field_->text().isEmpty()) return false;
        goBack();
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        if (watched != field_) return false;
        QCoreApplication::sendEvent(list_, event);
        return true;
    default:
        return false;
    }
}

/// Closes the window when another window takes the focus, for example after a click on it. A window manager may focus
/// this window late, so this window is closed only if it has had the focus.
void SearchWindow::changeEvent(QEvent* event) {
    HostedWindow::changeEvent(event);
    if (event->type() != QEvent::ActivationChange) return;
    if (isActiveWindow()) {
        wasActive_ = true;
    } else if (wasActive_ && isVisible()) {
        close();
    }
}

} // namespace kova::ui
