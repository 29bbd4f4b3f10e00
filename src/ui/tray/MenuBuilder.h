// Builds a menu from the agent's menu entries.
#pragma once

#include "ui/client/Contents.h"

#include <QMenu>

#include <functional>
#include <string>
#include <vector>

namespace kova::ui {

/// Replaces the entries of `menu`; `choose` is called with the id of the chosen entry.
void fillMenu(QMenu& menu, const std::vector<MenuItem>& items, const std::function<void(const std::string&)>& choose);

} // namespace kova::ui
