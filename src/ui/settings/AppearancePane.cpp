#include "ui/settings/AppearancePane.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QRadioButton>
#include <QSignalBlocker>

#include <algorithm>

namespace kova::ui {

using nlohmann::json;

namespace {

const PaneRegistration
    appearanceRegistration({60, "appearance", [] { return AppearancePane::tr("Appearance"); },
                            [](WindowServices& services) -> Pane* { return new AppearancePane(services); }});

QColor colorFrom(const json& color) {
    const auto part = [&](const char* name) { return std::clamp(color.at(name).get<float>(), 0.0F, 1.0F); };
    return QColor::fromRgbF(part("red"), part("green"), part("blue"));
}

/// Both colors of the accent, side by side.
QPixmap swatchOf(const json& accent, int size) {
    QPixmap picture(size * 2, size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colorFrom(accent.at("accent")));
    painter.drawRoundedRect(QRectF(0, 0, size * 2, size), size / 4.0, size / 4.0);
    painter.setClipRect(QRectF(size * 1.4, 0, size, size));
    painter.setBrush(colorFrom(accent.at("secondaryAccent")));
    painter.drawRoundedRect(QRectF(0, 0, size * 2, size), size / 4.0, size / 4.0);
    return picture;
}

/// A panel with a line of text, on the theme's background.
QPixmap themePicture(const json& palette, int size) {
    QPixmap picture(size * 2, size * 5 / 4);
    picture.fill(colorFrom(palette.at("background")));
    QPainter painter(&picture);
    const QRect panel(size / 4, picture.height() - size * 5 / 8, size * 3 / 2, size * 3 / 8);
    painter.fillRect(panel, colorFrom(palette.at("panel")));
    painter.setPen(colorFrom(palette.at("accent")));
    painter.drawRect(QRect(size / 4, size / 8, size * 3 / 2, picture.height() - size / 4 - size / 16));
    painter.fillRect(QRect(panel.x() + size / 8, panel.center().y(), size * 3 / 4, std::max(1, size / 12)),
                     colorFrom(palette.at("text")));
    return picture;
}

} // namespace

PictureChoice::PictureChoice(AgentSession& agent, const QString& title, const QString& text,
                             std::function<AgentRequest(const std::string& id)> request, QWidget* parent) :
    QGroupBox(title, parent),
    agent_(agent), text_(text), request_(std::move(request)), buttons_(new QButtonGroup(this)), row_(new QWidget(this)),
    error_(new FieldError(this)) {
    auto* column = new QVBoxLayout(this);
    column->addWidget(row_);
    column->addWidget(error_);
    (new QVBoxLayout(row_))->setContentsMargins(0, 0, 0, 0);
    connect(buttons_, &QButtonGroup::idClicked, this, &PictureChoice::choose);
}

void PictureChoice::showOptions(const std::vector<Option>& options) {
    if (!std::ranges::equal(options, options_, {}, &Option::id, &Option::id)) {
        for (QAbstractButton* each : buttons_->buttons()) delete each;
        for (std::size_t i = 0; i < options.size(); ++i) {
            auto* button = new QRadioButton(options[i].name, row_);
            button->setObjectName(QString::fromStdString(options[i].id));
            button->setAccessibleDescription(text_);
            buttons_->addButton(button, static_cast<int>(i));
            row_->layout()->addWidget(button);
        }
    }
    options_ = options;
    showActive();
}

void PictureChoice::showActive() {
    for (std::size_t i = 0; i < options_.size(); ++i) {
        QAbstractButton* button = buttons_->button(static_cast<int>(i));
        button->setIconSize(options_[i].picture.size());
        button->setIcon(options_[i].picture);
        if (options_[i].isActive) button->setChecked(true);
    }
}

void PictureChoice::choose(int index) {
    const AgentRequest wanted = request_(options_.at(static_cast<std::size_t>(index)).id);
    callFor(*error_, agent_, wanted.method, wanted.parameters, {.refused = [this] { showActive(); }});
}

AppearancePane::AppearancePane(WindowServices& services) {
    AgentSession& agent = services.agent;
    const auto isOn = [](const char* method) {
        return [method](bool on) { return AgentRequest{method, {{"isOn", on}}}; };
    };
    themes_ = new PictureChoice(
        agent, tr("Theme"), tr("The colors of backdrop, tile footers and menus"),
        [](const std::string& id) {
            return AgentRequest{"theme.select", {{"theme", id}}};
        },
        this);
    accents_ = new PictureChoice(
        agent, tr("Accent color"), tr("The color of lines, buttons and the drop target"),
        [](const std::string& id) {
            return AgentRequest{"accent.select", {{"accentColor", id}}};
        },
        this);
    auto* shown = new QGroupBox(tr("Shown"), this);
    background_ = new SettingSwitch(agent, tr("Use theme &background"),
                                    tr("Covers the desktop's wallpaper with the background of the theme."),
                                    isOn("theme.background"), shown);
    tileBackgrounds_ = new SettingSwitch(agent, tr("Show &tile backgrounds"),
                                         tr("Draws a panel and an outline where a tile is empty."),
                                         isOn("theme.tileBackgrounds"), shown);
    brain_ = new SettingSwitch(agent, tr("Show the bra&in"), tr("Lets particles move over the background."),
                               isOn("theme.brain"), shown);
    background_->box().setObjectName(QStringLiteral("useThemeBackground"));
    tileBackgrounds_->box().setObjectName(QStringLiteral("showTileBackgrounds"));
    brain_->box().setObjectName(QStringLiteral("showBrain"));
    auto* switches = new QVBoxLayout(shown);
    for (QWidget* each : {background_, tileBackgrounds_, brain_}) switches->addWidget(each);
    auto* column = new QVBoxLayout(this);
    for (QWidget* each :
         {static_cast<QWidget*>(themes_), static_cast<QWidget*>(accents_), static_cast<QWidget*>(shown)})
        column->addWidget(each);
    column->addStretch(1);
    followSections(agent, this, {"themes", "accentColors"}, [this](const json& state) { showState(state); });
}

void AppearancePane::showState(const json& state) {
    const int size = fontMetrics().height();
    const auto option = [](const json& known, QPixmap picture) {
        return PictureChoice::Option{known.at("id"), QString::fromStdString(known.at("displayName").get<std::string>()),
                                     std::move(picture), known.at("isActive")};
    };
    if (const json& themes = sectionOf(state, "themes"); themes.is_object()) {
        std::vector<PictureChoice::Option> options;
        for (const json& theme : themes.at("themes"))
            options.push_back(option(theme, themePicture(theme.at("palette"), size)));
        themes_->showOptions(options);
        background_->showState(themes.at("useThemeBackground"));
        tileBackgrounds_->showState(themes.at("showTileBackgrounds"));
        brain_->showState(themes.at("showBrain"));
    }
    if (const json& accents = sectionOf(state, "accentColors"); accents.is_object()) {
        std::vector<PictureChoice::Option> options;
        for (const json& accent : accents.at("accentColors")) options.push_back(option(accent, swatchOf(accent, size)));
        accents_->showOptions(options);
    }
    QWidget* previous = nullptr; // the buttons of options are created after the switches, which stand below them
    for (QWidget* group : {static_cast<QWidget*>(themes_), static_cast<QWidget*>(accents_), brain_->parentWidget()}) {
        for (auto* button : group->findChildren<QAbstractButton*>()) {
            if (previous) setTabOrder(previous, button);
            previous = button;
        }
    }
}

} // namespace kova::ui
