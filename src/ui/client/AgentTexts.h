// The agent's texts in the language of the user: titles of the menu, status messages, notices and alerts. The agent
// composes them in English, with names in them; what is not known here stays English.
#pragma once

#include "ui/client/Contents.h"

#include <QString>

#include <string>

namespace kova::ui {

/// Names that the user or a layout gave, such as those of scenes and tiles, are left as they are.
QString titleInUsersLanguage(const MenuItem& item);
/// Names and numbers in the text are left as they are.
QString inUsersLanguage(const std::string& text);

} // namespace kova::ui
