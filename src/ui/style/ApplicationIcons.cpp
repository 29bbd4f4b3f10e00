#include "ui/style/ApplicationIcons.h"

#include <QtGlobal>

#if defined(Q_OS_MACOS)
#include "ui/macos/MacPlatform.h"
#endif

#include <QFile>
#include <QIcon>
#include <QStandardPaths>

namespace kova::ui {

namespace {

constexpr qsizetype kMostIcons = 128;

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

QString iconNameOfEntry(const QString& id) {
    const QString suffix = QStringLiteral(".desktop");
    const QString file = QStringLiteral("applications/") + (id.endsWith(suffix) ? id : id + suffix);
    const QString path = QStandardPaths::locate(QStandardPaths::GenericDataLocation, file);
    QFile entry(path);
    if (path.isEmpty() || !entry.open(QIODevice::ReadOnly)) return {};
    return iconNameIn(entry.read(256 * 1024));
}

QPixmap themed(const QString& name, int size) {
    if (name.isEmpty()) return {};
    if (name.startsWith(u'/')) {
        const QPixmap file(name);
        return file.isNull() ? file : file.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    return QIcon::fromTheme(name).pixmap(QSize(size, size));
}

} // namespace

QString iconNameIn(const QByteArray& desktopEntry) {
    bool isInGroup = false;
    for (const QByteArray& raw : desktopEntry.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.startsWith('[')) isInGroup = line == "[Desktop Entry]";
        if (!isInGroup || !line.startsWith("Icon")) continue;
        const qsizetype equals = line.indexOf('=');
        if (equals > 0 && line.left(equals).trimmed() == "Icon")
            return QString::fromUtf8(line.mid(equals + 1).trimmed());
    }
    return {};
}

QPixmap ApplicationIcons::icon(const ApplicationName& application, int sizePixels) {
    const QString key = text(application.id) + u'\n' + text(application.name) + u'\n' + QString::number(sizePixels);
    if (const auto found = known_.constFind(key); found != known_.constEnd()) return *found;
    const QString id = text(application.id);
    QPixmap icon;
#if defined(Q_OS_MACOS)
    icon = applicationIcon(application.id, sizePixels);
#endif
    for (const QString& entry : {id, id.toLower()}) {
        if (icon.isNull() && !entry.isEmpty()) icon = themed(iconNameOfEntry(entry), sizePixels);
    }
    for (const QString& name : {id, id.toLower(), text(application.name).toLower()}) {
        if (icon.isNull()) icon = themed(name, sizePixels);
    }
    if (known_.size() >= kMostIcons) known_.clear();
    return *known_.insert(key, icon);
}

} // namespace kova::ui
