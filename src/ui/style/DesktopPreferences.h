// The desktop's preferences from its settings portal: light or dark, animations, the icon theme. Nothing waits for the
// portal: defaults hold until it answers, and where there is none. A Mac has no portal; there they come from the
// system. Main thread only.
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
    /// Asks the portal as soon as there is one, and follows its changes.
    void start();
    /// The preferences on a desktop without a portal.
    void set(Brightness brightness, bool mayMove);

    Brightness brightness() const { return brightness_; }
    bool mayMove() const { return mayMove_; }

  private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

  private:
    void askAll();
    void ask(const QString& group, const QString& key);
    /// False when the value changes nothing.
    bool take(const QString& group, const QString& key, const QVariant& value);

    std::function<void()> changed_;
    QDBusConnection bus_;
    Brightness brightness_;
    bool mayMove_ = true;
};

} // namespace kova::ui
