// A page of the settings window.
#pragma once

#include "ui/windows/HostedWindow.h"

#include <QString>
#include <QWidget>

namespace kova::ui {

class Pane : public QWidget {
    Q_OBJECT

  public:
    using QWidget::QWidget;
    /// The page is about to be shown: reads from the agent what it shows.
    virtual void opened() {}
};

struct PaneKind {
    int order;        // among the pages, ascending
    const char* name; // the member `pane` of the notification
    QString (*title)();
    Pane* (*make)(WindowServices& services); // the window becomes its parent
};
using PaneRegistration = Registry<PaneKind>::Addition;

} // namespace kova::ui
