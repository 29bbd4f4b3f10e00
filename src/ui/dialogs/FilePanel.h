// Gives the controls in the toolkit's file panel names and descriptions for screen readers. Main thread only.
#pragma once

#include <QFileDialog>

namespace kova::ui {

/// Call this after setting whether the panel opens or saves a file. It has no effect on the system's own panels.
void describeFilePanel(QFileDialog& panel);

} // namespace kova::ui
