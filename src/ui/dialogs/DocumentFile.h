// Writes and reads the file to which scenes and rules are exported, and sends its text to the agent. Main thread only.
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

/// Replaces the file atomically. Returns "Export failed: " and the reason; absent on success.
std::optional<QString> writeDocument(const QString& path, const std::string& text);
/// Returns the UTF-8 text, or "Import failed: " and the reason.
std::variant<QByteArray, QString> readDocument(const QString& path);

enum class Importing { forReal, dryRun };

/// Imports the text, in pieces that fit into the longest message that the agent accepts. `done` is called with the
/// response to the last piece or with the first error; it is not called if `context` has been destroyed by then.
void sendDocument(AgentSession& agent, const QObject* context, QByteArray text, Importing importing,
                  std::function<void(const Response&)> done);

} // namespace kova::ui
