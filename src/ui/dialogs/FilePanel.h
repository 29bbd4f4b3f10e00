// Names and descriptions, for screen readers, of the controls in the toolkit's file panel. Main thread only.
#pragma once

#include <QFileDialog>

namespace kova::ui {

/// To be called once the panel's mode is set. No effect on the system's own panels.
void describeFilePanel(QFileDialog& panel);

} // namespace kova::ui
