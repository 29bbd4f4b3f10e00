#include "ui/windows/Translations.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QTranslator>

#include <memory>

namespace kova::ui {

namespace {

void install(const QLocale& locale, const QString& name, const QString& folder) {
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(locale, name, QStringLiteral("_"), folder, QStringLiteral(".qm"))) return;
    QTranslator* installed = translator.release();
    installed->setParent(QCoreApplication::instance());
    QCoreApplication::installTranslator(installed);
}

} // namespace

void installTranslations(const QLocale& locale) {
    // The texts in the code are English. If English comes first in the list of languages, a translation into a later
    // language of the list is not used.
    const QStringList languages = locale.uiLanguages();
    if (languages.isEmpty() || locale.language() == QLocale::C || languages.first().startsWith(QLatin1String("en")))
        return;
    install(locale, QStringLiteral("qtbase"), QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    const QString folder = QStringLiteral(":/translations");
    QStringList names;
    for (const QString& file : QDir(folder).entryList({QStringLiteral("*.qm")})) {
        const QString name = file.section(u'_', 0, 0);
        if (!names.contains(name)) names.append(name);
    }
    for (const QString& name : names) install(locale, name, folder);
}

} // namespace kova::ui
