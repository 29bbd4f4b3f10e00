// Writes and reads the file of scenes and rules for windows, and exchanges its text with the agent. Main thread only.
#pragma once

#include "ui/client/AgentSession.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <variant>

namespace kova::ui {

/// The name that the file panel proposes.
inline const QString kDocumentName = QStringLiteral("KOVA-Workspace.json");

/// Replaces the file atomically. The result is "Export failed: " and the reason; absent on success.
std::optional<QString> writeDocument(const QString& path, const std::string& text);
/// The UTF-8 text, or "Import failed: " and the reason.
std::variant<QByteArray, QString> readDocument(const QString& path);

enum class Importing { forReal, dryRun };

/// Sends the text in as many pieces as the agent's longest message asks for. `done` is called with the answer to the
/// last piece, or the first refusal; not at all when `context` is destroyed by then.
void sendDocument(AgentSession& agent, const QObject* context, QByteArray text, Importing importing,
                  std::function<void(const Answer&)> done);

} // namespace kova::ui
