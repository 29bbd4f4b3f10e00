// The window of the menu's export and import of scenes and rules: a file panel, and below it the reason if the file
// cannot be written or read.
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
