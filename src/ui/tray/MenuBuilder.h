// Builds a menu of the toolkit from the agent's entries.
#pragma once

#include "ui/client/Contents.h"

#include <QMenu>

#include <functional>
#include <string>
#include <vector>

namespace kova::ui {

/// Replaces the entries of `menu`; `choose` is called with the id of the one that is chosen.
void fillMenu(QMenu& menu, const std::vector<MenuItem>& items, const std::function<void(const std::string&)>& choose);

} // namespace kova::ui
