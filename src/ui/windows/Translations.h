// The texts of kova-ui in the language of the user's locale.
#pragma once

#include <QLocale>

namespace kova::ui {

/// Installs the translations that there are for the locale's languages, ours and the toolkit's; texts without one stay
/// English. After the application object was made, before the first text.
void installTranslations(const QLocale& locale);

} // namespace kova::ui
