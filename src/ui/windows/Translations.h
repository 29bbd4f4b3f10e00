// Translates the texts of kova-ui into the language of the user's locale.
#pragma once

#include <QLocale>

namespace kova::ui {

/// Installs KOVA's and the toolkit's translations for the locale's languages; texts without a translation stay English.
/// Call after the application object was created and before the first text is shown.
void installTranslations(const QLocale& locale);

} // namespace kova::ui
