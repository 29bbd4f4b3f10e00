// The desktop's preferences, tested with a private message bus and a fake settings portal on it.
#include "ui/style/DesktopPreferences.h"
#include "tests/desktop/ChildProcess.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <map>

namespace kova::ui {

namespace {

const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kSettings = QStringLiteral("org.freedesktop.portal.Settings");
const QString kName = QStringLiteral("org.freedesktop.portal.Desktop");

class FakePortal final : public QDBusVirtualObject {
  public:
    explicit FakePortal(QDBusConnection bus) : bus_(std::move(bus)) {
        EXPECT_TRUE(bus_.registerVirtualObject(kPath, this));
    }
    bool start() { return bus_.registerService(kName); }
    bool stop() { return bus_.unregisterService(kName); }
    void set(const QString& key, const QVariant& value) {
        values_[key] = value;
        QDBusMessage signal = QDBusMessage::createSignal(kPath, kSettings, QStringLiteral("SettingChanged"));
        const bool isScheme = key == QStringLiteral("color-scheme");
        signal.setArguments(
            {isScheme ? QStringLiteral("org.freedesktop.appearance") : QStringLiteral("org.gnome.desktop.interface"),
             key, QVariant::fromValue(QDBusVariant(value))});
        bus_.send(signal);
    }
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        const auto value = values_.find(message.arguments().value(1).toString());
        return value == values_.end()
                   ? bus.send(message.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("not found")))
                   : bus.send(message.createReply(QVariant::fromValue(QDBusVariant(value->second))));
    }

  private:
    QDBusConnection bus_;
    std::map<QString, QVariant> values_;
};

} // namespace

// This test must be the first test of its process: in kova-ui too, nothing uses the bus library before `start`.
TEST(DesktopPreferences, FollowAPortalWhenItStartsAndWhenItsValuesChangeAndWhenItRestarts) {
    const QTemporaryDir folder;
    const QString address = QStringLiteral("unix:path=") + folder.filePath(QStringLiteral("bus"));
    const kova::testing::ChildProcess daemon(
        {"/usr/bin/dbus-daemon", "--session", "--nofork", "--address=" + address.toStdString()},
        {"PATH=/usr/bin:/bin"});
    std::optional<QDBusConnection> bus, portalBus;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            QDBusConnection::disconnectFromBus(QStringLiteral("preferences"));
            bus = QDBusConnection::connectToBus(address, QStringLiteral("preferences"));
            return bus->isConnected();
        },
        30'000));
    portalBus = QDBusConnection::connectToBus(address, QStringLiteral("portal"));

    int changes = 0;
    DesktopPreferences preferences([&] { ++changes; }, *bus);
    const auto becomes = [&](Brightness brightness, bool areAnimationsEnabled) {
        return QTest::qWaitFor(
            [&] {
                return preferences.brightness() == brightness &&
                       preferences.areAnimationsEnabled() == areAnimationsEnabled;
            },
            30'000);
    };
    const Brightness before = preferences.brightness();
    const Brightness other = before == Brightness::dark ? Brightness::light : Brightness::dark;
    const auto scheme = [](Brightness brightness) { return brightness == Brightness::dark ? 1U : 2U; };
    preferences.start();
    FakePortal portal(*portalBus);
    portal.set(QStringLiteral("color-scheme"), scheme(other));
    portal.set(QStringLiteral("enable-animations"), false);
    ASSERT_TRUE(portal.start());
    EXPECT_TRUE(becomes(other, false)) << "the values of a portal that has just started";
    portal.set(QStringLiteral("color-scheme"), scheme(before));
    EXPECT_TRUE(becomes(before, false)) << "a changed value";
    portal.set(QStringLiteral("enable-animations"), true);
    EXPECT_TRUE(becomes(before, true));
    EXPECT_EQ(changes, 4);
    ASSERT_TRUE(portal.stop());
    portal.set(QStringLiteral("color-scheme"), scheme(other));
    ASSERT_TRUE(portal.start());
    EXPECT_TRUE(becomes(other, true)) << "the values of a portal that was restarted";
    for (const char* name : {"preferences", "portal"}) QDBusConnection::disconnectFromBus(QString::fromLatin1(name));
}

TEST(DesktopPreferences, ReportOnlyChangedValuesWithoutAPortal) {
    int changes = 0;
    DesktopPreferences preferences([&] { ++changes; }, QDBusConnection(QStringLiteral("none")));
    preferences.set(Brightness::dark, false);
    changes = 0;
    preferences.set(Brightness::dark, false);
    EXPECT_EQ(changes, 0);
    preferences.set(Brightness::light, false);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(preferences.brightness(), Brightness::light);
    EXPECT_FALSE(preferences.areAnimationsEnabled());
}

} // namespace kova::ui
