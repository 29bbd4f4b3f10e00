#include "ui/settings/GeneralPane.h"

#include "support/Limits.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QSignalBlocker>

#include <cmath>
#include <utility>

namespace kova::ui {

using nlohmann::json;

namespace {

constexpr double kPreviewWidth = 960; // points; the size of the display that the preview represents
constexpr double kPreviewHeight = 540;

const PaneRegistration
    generalRegistration({10, "general", [] { return GeneralPane::tr("General"); },
                         [](WindowServices& services) -> Pane* { return new GeneralPane(services); }});

AgentRequest switchOf(const char* setting, bool isOn) {
    return {std::string(setting) + (isOn ? ".on" : ".off")};
}

} // namespace

GeneralPane::GeneralPane(WindowServices& services) : services_(services) {
    auto* column = new QVBoxLayout(this);
    column->addWidget(startGroup());
    column->addWidget(tilesGroup());
    column->addWidget(interfaceGroup());
    column->addStretch(1);
    followSections(services_.agent, this, {"settings", "login", "dock", "userInterface"},
                   [this](const json& state) { showState(state); });
}

QWidget* GeneralPane::startGroup() {
    auto* group = new QGroupBox(tr("Start"), this);
    auto* column = new QVBoxLayout(group);
    startAtLogin_ = new SettingSwitch(
        services_.agent, tr("Start KOVA at &login"), {}, [](bool isOn) { return switchOf("login", isOn); }, group);
    arrangeAfterLaunch_ = new SettingSwitch(
        services_.agent, tr("Automatically &arrange after launch"),
        tr("Arranges the windows once after each start of KOVA. Windows that are in tiles already stay there."),
        [](bool isOn) {
            return AgentRequest{"arrangeAfterLaunch", {{"isOn", isOn}}};
        },
        group);
    hideDock_ = new SettingSwitch(
        services_.agent, tr("Hide the &Dock automatically"),
        tr("This changes the system-wide Dock preference. The Dock briefly restarts when the setting changes."),
        [](bool isOn) { return switchOf("dock", isOn); }, group);
    startAtLogin_->box().setObjectName(QStringLiteral("startAtLogin"));
    arrangeAfterLaunch_->box().setObjectName(QStringLiteral("arrangeAfterLaunch"));
    hideDock_->box().setObjectName(QStringLiteral("hideDock"));
    for (QWidget* each : {startAtLogin_, arrangeAfterLaunch_, hideDock_}) column->addWidget(each);
    return group;
}

QWidget* GeneralPane::tilesGroup() {
    auto* group = new QGroupBox(tr("Tiles"), this);
    auto* column = new QVBoxLayout(group);
    column->addWidget(insetRow());
    bringForward_ = new SettingSwitch(
        services_.agent, tr("&Bring the next window forward"),
        tr("When the window in front of a tile leaves it, the next one that waits there comes forward."),
        [](bool isOn) {
            return AgentRequest{"bringForward", {{"isOn", isOn}}};
        },
        group);
    bringForward_->box().setObjectName(QStringLiteral("bringForward"));
    column->addWidget(bringForward_);
    return group;
}

QWidget* GeneralPane::insetRow() {
    auto* row = new QWidget(this);
    auto* form = new QFormLayout(row);
    form->setContentsMargins(0, 0, 0, 0);
    inset_ = new QSpinBox(row);
    inset_->setObjectName(QStringLiteral("tileInset"));
    inset_->setRange(0, static_cast<int>(kLargestTileInset));
    inset_->setSuffix(tr(" pt"));
    inset_->setAccessibleDescription(tr("The gap on each side between a tile and its window, in points"));
    inset_->setMinimumWidth(8 * fontMetrics().averageCharWidth() + inset_->sizeHint().height());
    insetError_ = new FieldError(row);
    preview_ = new LayoutPicture(services_.palette, row);
    preview_->setAccessibleName(tr("Preview of the tile inset"));
    preview_->setAspectRatio(kPreviewWidth / kPreviewHeight);
    preview_->setTiles({{QRectF(0, 0, 0.6, 1), {}}, {QRectF(0.6, 0, 0.4, 0.5), {}}, {QRectF(0.6, 0.5, 0.4, 0.5), {}}});
    const int line = fontMetrics().height();
    preview_->setFixedSize(12 * line, static_cast<int>(std::lround(12 * line * kPreviewHeight / kPreviewWidth)));
    form->addRow(tr("Tile &inset:"), inset_);
    form->addRow(nullptr, insetError_);
    form->addRow(nullptr, preview_);
    connect(inset_, &QSpinBox::valueChanged, this, &GeneralPane::insetChanged);
    return row;
}

QWidget* GeneralPane::interfaceGroup() {
    auto* group = new QGroupBox(tr("User interface"), this);
    auto* column = new QVBoxLayout(group);
    userInterface_ = new SettingSwitch(
        services_.agent, tr("&Show tile footers, backdrop and menu"),
        tr("The program kova-ui shows them and this window. Switching it off closes this window; other windows stay in "
           "their tiles. “kova ui on” switches it on again."),
        [](bool isOn) { return switchOf("ui", isOn); }, group);
    userInterface_->box().setObjectName(QStringLiteral("userInterface"));
    column->addWidget(userInterface_);
    return group;
}

void GeneralPane::showState(const json& state) {
    showSystemSetting(*startAtLogin_, sectionOf(state, "login"));
    showSystemSetting(*hideDock_, sectionOf(state, "dock"));
    const json& interface = sectionOf(state, "userInterface");
    userInterface_->setVisible(interface.is_object());
    if (interface.is_object()) userInterface_->showState(interface.at("isOn"));
    const json& settings = sectionOf(state, "settings");
    if (!settings.is_object()) return;
    arrangeAfterLaunch_->showState(settings.at("autoArrangeOnLaunch"));
    bringForward_->showState(settings.at("bringsNextForward"));
    // While a request is pending, the typed value is newer than the value from the agent.
    if (isInsetPending_) return;
    const QSignalBlocker blocker(inset_);
    inset_->setValue(static_cast<int>(std::lround(settings.at("tileInset").get<double>())));
    showInset(inset_->value());
}

/// Hides the control if the desktop does not have the setting.
void GeneralPane::showSystemSetting(SettingSwitch& control, const json& setting) {
    control.setVisible(setting.is_object());
    if (!setting.is_object()) return;
    control.showState(setting.at("isOn"));
    if (setting.at("guidance").is_string())
        control.setText(QString::fromStdString(setting.at("guidance").get<std::string>()));
    if (setting.at("problem").is_string())
        control.error().showReason(QString::fromStdString(setting.at("problem").get<std::string>()));
    else
        control.error().clear();
}

void GeneralPane::insetChanged(int insetPoints) {
    showInset(insetPoints);
    nextInset_ = insetPoints;
    if (!isInsetPending_) sendInset();
}

/// Only one request is pending at a time, since the wheel changes the value faster than windows can be placed.
void GeneralPane::sendInset() {
    const auto points = std::exchange(nextInset_, std::nullopt);
    isInsetPending_ = points.has_value();
    if (!points) return showState(services_.agent.state());
    const auto next = [this] { sendInset(); };
    callFor(*insetError_, services_.agent, "layout.setInset", {{"points", *points}},
            {.done = [next](const json&) { next(); }, .refused = next});
}

void GeneralPane::showInset(int insetPoints) {
    preview_->setInset(insetPoints / kPreviewWidth);
}

} // namespace kova::ui
