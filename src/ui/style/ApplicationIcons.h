// Icons of applications, from the desktop's icon theme. Main thread only.
#pragma once

#include "ui/client/Contents.h"

#include <QHash>
#include <QPixmap>
#include <QString>

namespace kova::ui {

class ApplicationIcons {
  public:
    /// A null pixmap if the theme has no icon for the application.
    QPixmap icon(const ApplicationName& application, int sizePixels);
    /// Drops the cached icons; call after a change of the theme.
    void clear() { known_.clear(); }

  private:
    QHash<QString, QPixmap> known_;
};

/// The value of "Icon" in the "[Desktop Entry]" group; empty if there is none.
QString iconNameIn(const QByteArray& desktopEntry);

} // namespace kova::ui
