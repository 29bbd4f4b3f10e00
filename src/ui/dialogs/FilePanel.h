// Names and descriptions, for screen readers, of the controls in the toolkit's file panel. Main thread only.
#pragma once

#include <QFileDialog>

namespace kova::ui {

/// Call after the panel's mode was set, to open or to save a file. No effect on the system's own panels.
void describeFilePanel(QFileDialog& panel);

} // namespace kova::ui
