// Icons of applications, from the desktop's icon theme. Main thread only.
#pragma once

#include "ui/client/Contents.h"

#include <QHash>
#include <QPixmap>
#include <QString>

namespace kova::ui {

class ApplicationIcons {
  public:
    /// Null when the theme has none for the application. Sizes are pixels.
    QPixmap icon(const ApplicationName& application, int sizePixels);
    /// Forgets all, as after a change of the theme.
    void clear() { known_.clear(); }

  private:
    QHash<QString, QPixmap> known_;
};

/// The value of "Icon" in the "[Desktop Entry]" group; empty when there is none.
QString iconNameIn(const QByteArray& desktopEntry);

} // namespace kova::ui
