// Translates texts of the agent for the user: titles of the menu, status messages, notices and alerts. The agent
// composes them in English and inserts names; a text without a known pattern stays English.
#pragma once

#include "ui/client/Contents.h"

#include <QString>

#include <string>

namespace kova::ui {

/// A title that is the name of a scene, a layout or a tile is not translated.
QString titleInUsersLanguage(const MenuItem& item);
/// Names and numbers within the text are not translated.
QString inUsersLanguage(const std::string& text);

} // namespace kova::ui
