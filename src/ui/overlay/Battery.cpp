#include "ui/overlay/Battery.h"

#include <QDir>
#include <QFile>

namespace kova::ui {

namespace {

QByteArray contentsOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(64).trimmed() : QByteArray();
}

} // namespace

bool runsOnBattery(const std::string& powerSupplyFolder) {
    bool isDischarging = false;
    const QDir folder(QString::fromStdString(powerSupplyFolder));
    for (const QString& supply : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString path = folder.filePath(supply) + u'/';
        // A battery with the scope "Device" powers a peripheral such as a mouse.
        if (contentsOf(path + QStringLiteral("type")) != "Battery" ||
            contentsOf(path + QStringLiteral("scope")) == "Device")
            continue;
        isDischarging = isDischarging || contentsOf(path + QStringLiteral("status")) == "Discharging";
    }
    return isDischarging;
}

} // namespace kova::ui
