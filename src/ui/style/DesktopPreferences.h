// The desktop's preferences from its settings portal: light or dark, animations, the icon theme. Never waits for the
// portal: defaults are used until it replies, and on a desktop without a portal. A Mac has no portal: there the
// system's preferences are passed to `set`. Main thread only.
#pragma once

#include "ui/style/Palette.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>

#include <functional>

namespace kova::ui {

class DesktopPreferences : public QObject {
    Q_OBJECT

  public:
    explicit DesktopPreferences(std::function<void()> changed,
                                const QDBusConnection& bus = QDBusConnection::sessionBus());
    /// Queries the portal as soon as it runs, and follows its changes.
    void start();
    /// Sets the preferences on a system without a portal.
    void set(Brightness brightness, bool areAnimationsEnabled);

    Brightness brightness() const { return brightness_; }
    bool areAnimationsEnabled() const { return areAnimationsEnabled_; }

  private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

  private:
    void queryAll();
    void query(const QString& group, const QString& key);
    /// Returns whether the value changes a preference.
    bool apply(const QString& group, const QString& key, const QVariant& value);

    std::function<void()> changed_;
    QDBusConnection bus_;
    Brightness brightness_;
    bool areAnimationsEnabled_ = true;
};

} // namespace kova::ui
