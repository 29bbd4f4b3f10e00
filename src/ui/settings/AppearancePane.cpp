#include "ui/settings/AppearancePane.h"

#include "themes/ThemeCoding.h"
#include "ui/settings/ThemePicture.h"
#include "ui/style/Colors.h"
#include "ui/style/PaintedIcon.h"

#include <QBoxLayout>
#include <QRadioButton>

#include <algorithm>

namespace kova::ui {

using nlohmann::json;

namespace {

const PaneRegistration
    appearanceRegistration({60, "appearance", [] { return AppearancePane::tr("Appearance"); },
                            [](WindowServices& services) -> Pane* { return new AppearancePane(services); }});

QIcon swatchOf(const json& accent) {
    const JsonCursor colors(accent, "accent");
    return paintedIcon([first = colorOf(decodeColor(colors.required("accent"))),
                        second = colorOf(decodeColor(colors.required("secondaryAccent")))](
                           QPainter& painter, const QRectF& area) { drawAccent(painter, area, first, second); });
}

QIcon pictureOf(const json& theme, const WindowServices& services) {
    Appearance appearance;
    appearance.palette = decodePalette(JsonCursor(theme, "theme").required("palette"));
    if (theme.at("visualStyle") != rawValue(ThemeVisualStyle::native)) appearance.isDark = true;
    return paintedIcon([appearance, &services](QPainter& painter, const QRectF& area) {
        const Brightness desktop = services.brightness ? services.brightness() : Brightness::dark;
        drawTheme(painter, area, paletteFor(appearance, desktop, Compositing::absent));
    });
}

} // namespace

PictureChoice::PictureChoice(AgentSession& agent, const QString& title, const QString& text, OptionLayout optionLayout,
                             std::function<AgentRequest(const std::string& id)> request, QWidget* parent) :
    QGroupBox(title, parent),
    agent_(agent), text_(text), optionLayout_(optionLayout), request_(std::move(request)),
    buttons_(new QButtonGroup(this)), row_(new QWidget(this)), error_(new FieldError(this)) {
    auto* column = new QVBoxLayout(this);
    column->addWidget(row_);
    column->addWidget(error_);
    auto* options = new QBoxLayout(optionLayout_.direction, row_);
    options->setContentsMargins(0, 0, 0, 0);
    if (optionLayout_.direction == QBoxLayout::LeftToRight) options->setSpacing(2 * fontMetrics().height());
    options->addStretch(1);
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
            static_cast<QBoxLayout*>(row_->layout())->insertWidget(static_cast<int>(i), button);
        }
    }
    options_ = options;
    showActive();
}

void PictureChoice::showActive() {
    for (std::size_t i = 0; i < options_.size(); ++i) {
        QAbstractButton* button = buttons_->button(static_cast<int>(i));
        button->setIconSize(optionLayout_.pictureSize);
        button->setIcon(options_[i].picture);
        if (options_[i].isActive) button->setChecked(true);
    }
}

void PictureChoice::choose(int index) {
    const AgentRequest wanted = request_(options_.at(static_cast<std::size_t>(index)).id);
    callFor(*error_, agent_, wanted.method, wanted.parameters, {.refused = [this] { showActive(); }});
}

AppearancePane::AppearancePane(WindowServices& services) : services_(services) {
    AgentSession& agent = services.agent;
    const int line = fontMetrics().height();
    const auto switchRequest = [](const char* method) {
        return [method](bool on) { return AgentRequest{method, {{"isOn", on}}}; };
    };
    themes_ = new PictureChoice(
        agent, tr("Theme"), tr("The colors of backdrop, tile footers and menus"),
        {QBoxLayout::LeftToRight, QSize(8 * line, 5 * line)},
        [](const std::string& id) {
            return AgentRequest{"theme.select", {{"theme", id}}};
        },
        this);
    accents_ = new PictureChoice(
        agent, tr("Accent color"), tr("The color of lines, buttons and the drop target"),
        {QBoxLayout::TopToBottom, QSize(2 * line, line)},
        [](const std::string& id) {
            return AgentRequest{"accent.select", {{"accentColor", id}}};
        },
        this);
    auto* shown = new QGroupBox(tr("Shown"), this);
    background_ = new SettingSwitch(agent, tr("Use theme &background"),
                                    tr("Covers the desktop's wallpaper with the background of the theme."),
                                    switchRequest("theme.background"), shown);
    tileBackgrounds_ = new SettingSwitch(agent, tr("Show &tile backgrounds"),
                                         tr("Draws a panel and an outline where a tile is empty."),
                                         switchRequest("theme.tileBackgrounds"), shown);
    brain_ = new SettingSwitch(agent, tr("Show the bra&in"), tr("Lets particles move over the background."),
                               switchRequest("theme.brain"), shown);
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
    const auto option = [](const json& known, QIcon picture) {
        return PictureChoice::Option{known.at("id"), QString::fromStdString(known.at("displayName").get<std::string>()),
                                     std::move(picture), known.at("isActive")};
    };
    if (const json& themes = sectionOf(state, "themes"); themes.is_object()) {
        std::vector<PictureChoice::Option> options;
        for (const json& theme : themes.at("themes")) options.push_back(option(theme, pictureOf(theme, services_)));
        themes_->showOptions(options);
        background_->showState(themes.at("useThemeBackground"));
        tileBackgrounds_->showState(themes.at("showTileBackgrounds"));
        brain_->showState(themes.at("showBrain"));
    }
    if (const json& accents = sectionOf(state, "accentColors"); accents.is_object()) {
        std::vector<PictureChoice::Option> options;
        for (const json& accent : accents.at("accentColors")) options.push_back(option(accent, swatchOf(accent)));
        accents_->showOptions(options);
    }
    // Tab moves from top to bottom. Without this it would reach the switches first, because they are created before the
    // options above them.
    QWidget* previous = nullptr;
    for (QWidget* group : {static_cast<QWidget*>(themes_), static_cast<QWidget*>(accents_), brain_->parentWidget()}) {
        for (auto* button : group->findChildren<QAbstractButton*>()) {
            if (previous) setTabOrder(previous, button);
            previous = button;
        }
    }
}

} // namespace kova::ui
