#include "ui/style/DesktopPreferences.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QGuiApplication>
#include <QIcon>
#include <QPalette>

#include <utility>

namespace kova::ui {

namespace {

const QString kPortal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kSettings = QStringLiteral("org.freedesktop.portal.Settings");
const QString kAppearance = QStringLiteral("org.freedesktop.appearance");
const QString kInterface = QStringLiteral("org.gnome.desktop.interface");

/// The portal wraps values in one or two variants.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

Brightness brightnessOfPalette() {
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128 ? Brightness::dark : Brightness::light;
}

} // namespace

DesktopPreferences::DesktopPreferences(std::function<void()> changed, const QDBusConnection& bus) :
    changed_(std::move(changed)), bus_(bus), brightness_(brightnessOfPalette()) {}

void DesktopPreferences::start() {
    if (!bus_.isConnected()) return;
    // `connect` finds the slot's parameter type by name, but the bus library registers the type only at its first use.
    qRegisterMetaType<QDBusVariant>();
    if (!bus_.connect(kPortal, kPath, kSettings, QStringLiteral("SettingChanged"), this,
                      SLOT(settingChanged(QString, QString, QDBusVariant)))) {
        qWarning("kova-ui: changes of the desktop's settings cannot be followed");
    }
    // The portal may start after this program, or restart with other values.
    auto* watcher = new QDBusServiceWatcher(kPortal, bus_, QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] { queryAll(); });
    queryAll();
}

void DesktopPreferences::set(Brightness brightness, bool areAnimationsEnabled) {
    const bool hasChanged = brightness != brightness_ || areAnimationsEnabled != areAnimationsEnabled_;
    brightness_ = brightness;
    areAnimationsEnabled_ = areAnimationsEnabled;
    if (hasChanged) changed_();
}

void DesktopPreferences::queryAll() {
    query(kAppearance, QStringLiteral("color-scheme"));
    query(kInterface, QStringLiteral("enable-animations"));
    query(kInterface, QStringLiteral("icon-theme"));
}

void DesktopPreferences::query(const QString& group, const QString& key) {
    QDBusMessage message = QDBusMessage::createMethodCall(kPortal, kPath, kSettings, QStringLiteral("Read"));
    message.setArguments({group, key});
    // This query must not start a portal on a desktop that runs none.
    message.setAutoStartService(false);
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, group, key](QDBusPendingCallWatcher* done) {
        const QDBusPendingReply<QDBusVariant> reply = *done;
        if (!reply.isError() && apply(group, key, unwrapped(reply.value().variant()))) changed_();
        done->deleteLater();
    });
}

void DesktopPreferences::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    if (apply(group, key, unwrapped(value.variant()))) changed_();
}

bool DesktopPreferences::apply(const QString& group, const QString& key, const QVariant& value) {
    if (group == kAppearance && key == QStringLiteral("color-scheme")) {
        const uint scheme = value.toUInt(); // 1: dark, 2: light, 0: no preference
        const Brightness wanted = scheme == 1   ? Brightness::dark
                                  : scheme == 2 ? Brightness::light
                                                : brightnessOfPalette();
        return std::exchange(brightness_, wanted) != wanted;
    }
    if (group != kInterface) return false;
    if (key == QStringLiteral("enable-animations"))
        return std::exchange(areAnimationsEnabled_, value.toBool()) != value.toBool();
    if (key == QStringLiteral("icon-theme") && !value.toString().isEmpty() && QIcon::themeName() != value.toString()) {
        QIcon::setThemeName(value.toString());
        return true;
    }
    return false;
}

} // namespace kova::ui
