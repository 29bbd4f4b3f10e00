// Sends the agent a document of scenes and rules, in as many pieces as its longest message asks for. Main thread only.
#pragma once

#include "ui/client/AgentSession.h"

#include <QByteArray>
#include <QObject>

#include <functional>

namespace kova::ui {

enum class Importing { forReal, dryRun };

/// `done` is called with the answer to the last piece, or the first refusal; not at all when `context` is destroyed by
/// then. The text is UTF-8.
void sendDocument(AgentSession& agent, const QObject* context, QByteArray text, Importing importing,
                  std::function<void(const Answer&)> done);

} // namespace kova::ui
