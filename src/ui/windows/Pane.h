// A pane of the settings window.
#pragma once

#include "ui/windows/HostedWindow.h"

#include <QString>
#include <QWidget>

namespace kova::ui {

class Pane : public QWidget {
    Q_OBJECT

  public:
    using QWidget::QWidget;
    /// Called each time the pane is shown, so that it can query its contents from the agent.
    virtual void opened() {}
};

struct PaneKind {
    int order;        // panes are sorted by this number
    const char* name; // the parameter `pane` of the notification `show`
    QString (*title)();
    Pane* (*make)(WindowServices& services); // the settings window owns the pane
};
using PaneRegistration = Registry<PaneKind>::Addition;

} // namespace kova::ui
