// What the desktop prefers, as its settings portal tells: light or dark, animations, the icon theme. Nothing is waited
// for: defaults hold until the portal answers, and where there is none. Main thread only.
#pragma once

#include "ui/style/Palette.h"

#include <QDBusVariant>
#include <QObject>
#include <QString>

#include <functional>

namespace kova::ui {

class DesktopPreferences : public QObject {
    Q_OBJECT

  public:
    explicit DesktopPreferences(std::function<void()> changed);
    /// Asks the portal, and hears of changes from then on.
    void start();

    Brightness brightness() const { return brightness_; }
    bool mayMove() const { return mayMove_; }

  private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

  private:
    void ask(const QString& group, const QString& key);
    /// False when the value says nothing new.
    bool take(const QString& group, const QString& key, const QVariant& value);

    std::function<void()> changed_;
    Brightness brightness_;
    bool mayMove_ = true;
};

} // namespace kova::ui
