#include "ui/windows/FieldError.h"

#include <QAccessible>

namespace kova::ui {

FieldError::FieldError(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setFocusPolicy(Qt::NoFocus);
    setWordWrap(true);
    setAccessibleName(tr("Error"));
    setAccessibleDescription(tr("Why the last change was refused"));
    hide();
}

void FieldError::say(const QString& reason) {
    setText(reason);
    setVisible(!reason.isEmpty());
    if (reason.isEmpty()) return;
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void callFor(FieldError& error, AgentSession& agent, const std::string& method, nlohmann::json parameters,
             Reactions reactions) {
    agent.call(&error, method, std::move(parameters), [&error, reactions = std::move(reactions)](const Answer& answer) {
        error.say(QString::fromStdString(answer.error));
        if (!answer.error.empty()) {
            if (reactions.refused) reactions.refused();
        } else if (reactions.done) {
            reactions.done(answer.result);
        }
    });
}

} // namespace kova::ui
