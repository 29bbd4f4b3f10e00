// The window in which the user exports or imports scenes and rules; the menu opens it. It shows a file panel and, if
// the file cannot be written or read, the reason below the panel.
#pragma once

#include "ui/windows/FieldError.h"
#include "ui/windows/HostedWindow.h"

#include <QFileDialog>

namespace kova::ui {

enum class Exchange { exportDocument, importDocument };

class DocumentWindow final : public HostedWindow {
    Q_OBJECT

  public:
    DocumentWindow(WindowServices& services, Exchange exchange);

  private:
    void exportTo(const QString& path);
    void importFrom(const QString& path);

    WindowServices& services_;
    const Exchange exchange_;
    QFileDialog* panel_;
    FieldError* error_;
};

} // namespace kova::ui
