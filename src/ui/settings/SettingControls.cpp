#include "ui/settings/SettingControls.h"

#include <QSignalBlocker>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace kova::ui {

using nlohmann::json;

void followSections(AgentSession& agent, QObject* context, std::set<std::string> sections,
                    std::function<void(const json& state)> show) {
    const auto showState = [&agent, show = std::move(show)] {
        try {
            show(agent.state());
        } catch (const json::exception& error) {
            qWarning("kova-ui: the settings that the agent sent cannot be decoded: %s", error.what());
        }
    };
    QObject::connect(&agent, &AgentSession::changed, context,
                     [sections = std::move(sections), showState](const std::set<std::string>& changed) {
                         if (std::ranges::any_of(changed, [&](const auto& each) { return sections.contains(each); }))
                             showState();
                     });
    if (!agent.state().empty()) showState();
}

const json& sectionOf(const json& state, const char* name) {
    static const json absent;
    const auto found = state.find(name);
    return found == state.end() ? absent : *found;
}

QLabel* explanation(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

SettingSwitch::SettingSwitch(AgentSession& agent, const QString& title, const QString& text,
                             std::function<AgentRequest(bool isOn)> request, QWidget* parent) :
    QWidget(parent),
    agent_(agent), request_(std::move(request)), box_(new QCheckBox(title, this)), text_(explanation({}, this)),
    error_(new FieldError(this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(box_);
    // The texts are indented, so that they begin below the check box's label.
    const int indent =
        style()->pixelMetric(QStyle::PM_IndicatorWidth) + style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing);
    for (QLabel* below : {text_, static_cast<QLabel*>(error_)}) {
        below->setIndent(0);
        below->setContentsMargins(indent, 0, 0, 0);
        column->addWidget(below);
    }
    setText(text);
    connect(box_, &QCheckBox::clicked, this, [this](bool isOn) {
        const AgentRequest wanted = request_(isOn);
        callFor(*error_, agent_, wanted.method, wanted.parameters, {.refused = [this] { showState(isOn_); }});
    });
}

void SettingSwitch::showState(bool isOn) {
    isOn_ = isOn;
    box_->setChecked(isOn);
}

void SettingSwitch::setText(const QString& text) {
    text_->setText(text);
    text_->setVisible(!text.isEmpty());
    // Every control needs an accessible description. Without a text, the title serves as the description.
    box_->setAccessibleDescription(text.isEmpty() ? box_->text().remove(u'&') : text);
}

} // namespace kova::ui
