#include "ui/settings/LayoutsPane.h"

#include "ui/style/LayoutPicture.h"
#include "ui/windows/JsonText.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QSignalBlocker>

#include <algorithm>
#include <cmath>

namespace kova::ui {

using nlohmann::json;

namespace {

const PaneRegistration
    layoutsRegistration({20, "layouts", [] { return LayoutsPane::tr("Layouts"); },
                         [](WindowServices& services) -> Pane* { return new LayoutsPane(services); }});

constexpr int kLayoutIDRole = Qt::UserRole, kShortfallRole = Qt::UserRole + 1;
constexpr double kPictureInset = 0.015; // of the picture's width
const QString kAutomatic = QStringLiteral("automatic");

/// The number of points by which a tile is too small; 0 in a direction in which the tile is large enough.
QSize shortfallOf(const json& lacking) {
    const auto points = [&](const char* key) {
        return std::max(0, static_cast<int>(std::ceil(lacking.at(key).get<double>())));
    };
    return {points("width"), points("height")};
}

/// Names only the directions in which the tile is too small.
QString sentenceFor(QSize shortfall) {
    if (shortfall.height() == 0) return LayoutsPane::tr("%1 pt too narrow").arg(shortfall.width());
    if (shortfall.width() == 0) return LayoutsPane::tr("%1 pt too short").arg(shortfall.height());
    return LayoutsPane::tr("%1 pt too narrow and %2 pt too short").arg(shortfall.width()).arg(shortfall.height());
}

/// A shorter text, which fits below a layout's picture.
QString remarkFor(QSize shortfall) {
    if (shortfall.width() == 0 || shortfall.height() == 0) return sentenceFor(shortfall);
    return LayoutsPane::tr("%1 × %2 pt too small").arg(shortfall.width()).arg(shortfall.height());
}

} // namespace

LayoutsPane::LayoutsPane(WindowServices& services) :
    services_(services), displays_(new QComboBox(this)), layouts_(new QListWidget(this)), fit_(explanation({}, this)),
    reset_(new QPushButton(tr("&Reset Sizes"), this)), error_(new FieldError(this)) {
    auto* label = new QLabel(tr("&Display:"), this);
    label->setBuddy(displays_);
    auto* top = new QHBoxLayout;
    top->addWidget(label);
    top->addWidget(displays_, 1);
    top->addWidget(reset_);
    auto* column = new QVBoxLayout(this);
    column->addLayout(top);
    column->addWidget(layouts_, 1);
    column->addWidget(fit_);
    column->addWidget(error_);
    setTabOrder(displays_, reset_);
    setTabOrder(reset_, layouts_);

    displays_->setObjectName(QStringLiteral("displays"));
    displays_->setAccessibleDescription(tr("The display whose layouts are shown"));
    reset_->setObjectName(QStringLiteral("resetSizes"));
    reset_->setAccessibleDescription(tr("Restores the original sizes of the tiles in the layout in force"));
    layouts_->setObjectName(QStringLiteral("layouts"));
    layouts_->setAccessibleName(tr("Layouts"));
    layouts_->setAccessibleDescription(tr("Return selects the layout for the display"));
    layouts_->setViewMode(QListView::IconMode);
    layouts_->setMovement(QListView::Static);
    layouts_->setResizeMode(QListView::Adjust);
    layouts_->setWordWrap(true);
    const int line = fontMetrics().height();
    layouts_->setIconSize(QSize(8 * line, 5 * line));
    layouts_->setGridSize(QSize(12 * line, 8 * line + line / 2));
    noLayout_ = new EmptyListText(*layouts_);
    noLayout_->sayLoading();
    connect(displays_, &QComboBox::activated, this, &LayoutsPane::showState);
    connect(layouts_, &QListWidget::itemActivated, this, &LayoutsPane::select);
    connect(layouts_, &QListWidget::itemClicked, this, &LayoutsPane::select);
    connect(layouts_, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem* item) {
        fit_->setText(item ? item->data(kShortfallRole).toString() : QString());
    });
    connect(reset_, &QPushButton::clicked, this, [this] {
        callFor(*error_, services_.agent, "layout.resetSizes", {{"display", chosenDisplay()}});
    });
    followSections(services_.agent, this, {"layouts", "displays"}, [this](const json&) { showState(); });
}

void LayoutsPane::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) showState();
    Pane::changeEvent(event);
}

std::string LayoutsPane::chosenDisplay() const {
    return displays_->currentData().toString().toStdString();
}

void LayoutsPane::select(const QListWidgetItem* item) {
    if (!item) return;
    callFor(*error_, services_.agent, "layout.select",
            {{"layout", item->data(kLayoutIDRole).toString().toStdString()}, {"display", chosenDisplay()}},
            {.refused = [this] { showState(); }});
}

void LayoutsPane::showState() {
    const json& state = services_.agent.state();
    const json& layouts = sectionOf(state, "layouts");
    const json& known = sectionOf(state, "displays");
    if (!layouts.is_object() || !known.is_array()) return;
    noLayout_->say(tr("No display is connected"));
    showDisplays(layouts);
    const std::string chosen = chosenDisplay();
    const auto isChosen = [&](const json& display) { return display.at("id") == chosen; };
    const auto shown = std::ranges::find_if(layouts.at("displays"), isChosen);
    const auto selection = std::ranges::find_if(known, isChosen);
    const bool isAutomatic = selection != known.end() && selection->at("selection") == "automatic";
    if (shown != layouts.at("displays").end()) return showLayouts(*shown, isAutomatic);
    layouts_->clear();
    reset_->setEnabled(false);
}

void LayoutsPane::showDisplays(const json& layouts) {
    QStringList ids;
    for (const json& display : layouts.at("displays")) ids.append(memberText(display, "id"));
    QStringList shown;
    for (int i = 0; i < displays_->count(); ++i) shown.append(displays_->itemData(i).toString());
    if (ids == shown) return;
    const QVariant before = displays_->currentData();
    displays_->clear();
    for (const json& display : layouts.at("displays"))
        displays_->addItem(memberText(display, "name"), memberText(display, "id"));
    displays_->setCurrentIndex(std::max(0, displays_->findData(before)));
}

void LayoutsPane::showLayouts(const json& display, bool isAutomatic) {
    const QSignalBlocker blocker(layouts_);
    const QListWidgetItem* current = layouts_->currentItem();
    const QString before = current ? current->data(kLayoutIDRole).toString() : QString();
    layouts_->clear();
    auto* automatic = new QListWidgetItem(tr("Automatic"), layouts_);
    automatic->setData(kLayoutIDRole, kAutomatic);
    automatic->setData(kShortfallRole, tr("The display's shape decides."));
    const json& layouts = display.at("layouts");
    const auto inForce =
        std::ranges::find_if(layouts, [](const json& each) { return each.at("isInForce").get<bool>(); });
    if (inForce != layouts.end()) automatic->setIcon(pictureOf(*inForce, display.at("area")));
    for (const json& layout : layouts) addLayout(layout, display.at("area"));
    const QString marked = isAutomatic ? kAutomatic : inForce != layouts.end() ? memberText(*inForce, "id") : QString();
    for (int i = 0; i < layouts_->count(); ++i) {
        QListWidgetItem* item = layouts_->item(i);
        const QString id = item->data(kLayoutIDRole).toString();
        if (id == marked) {
            QFont bold = item->font();
            bold.setBold(true);
            item->setFont(bold);
            item->setData(Qt::AccessibleTextRole, tr("%1, in force").arg(item->text()));
        }
        if (id == (before.isEmpty() ? marked : before)) layouts_->setCurrentItem(item);
    }
    fit_->setText(layouts_->currentItem() ? layouts_->currentItem()->data(kShortfallRole).toString() : QString());
    reset_->setEnabled(display.at("hasOwnSizes"));
}

void LayoutsPane::addLayout(const json& layout, const json& area) {
    auto* item = new QListWidgetItem(pictureOf(layout, area), memberText(layout, "name"), layouts_);
    item->setData(kLayoutIDRole, memberText(layout, "id"));
    const json& lacking = layout.at("shortfall");
    if (lacking.is_null()) return item->setData(kShortfallRole, tr("All open windows fit."));
    const QSize shortfall = shortfallOf(lacking);
    const QString text =
        tr("Too small for %1: its best tile is %2.").arg(memberText(lacking, "application"), sentenceFor(shortfall));
    item->setText(memberText(layout, "name") + u'\n' + remarkFor(shortfall));
    item->setData(kShortfallRole, text);
    item->setToolTip(text);
}

QPixmap LayoutsPane::pictureOf(const json& layout, const json& area) const {
    const double ratio = std::max(1.0, area.at("width").get<double>()) / std::max(1.0, area.at("height").get<double>());
    const QSize room = layouts_->iconSize();
    const double width = std::min<double>(room.width(), room.height() * ratio);
    const qreal scale = devicePixelRatioF();
    QPixmap picture(room * scale);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    std::vector<PictureTile> tiles;
    for (const json& tile : layout.at("tiles")) {
        const json& frame = tile.at("frame");
        tiles.push_back({QRectF(frame.at("x"), frame.at("y"), frame.at("width"), frame.at("height"))});
    }
    QPainter painter(&picture);
    drawTiles(painter, QRectF((room.width() - width) / 2, (room.height() - width / ratio) / 2, width, width / ratio),
              tiles, kPictureInset, services_.palette());
    return picture;
}

} // namespace kova::ui
