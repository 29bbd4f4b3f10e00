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

void FieldError::showReason(const QString& reason) {
    setText(reason);
    setVisible(!reason.isEmpty());
    if (reason.isEmpty()) return;
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void callFor(FieldError& error, AgentSession& agent, const std::string& method, nlohmann::json parameters,
             Reactions reactions) {
    agent.call(&error, method, std::move(parameters),
               [&error, reactions = std::move(reactions)](const Response& response) {
                   error.showReason(QString::fromStdString(response.error));
                   if (!response.error.empty()) {
                       if (reactions.refused) reactions.refused();
                   } else if (reactions.done) {
                       reactions.done(response.result);
                   }
               });
}

} // namespace kova::ui
