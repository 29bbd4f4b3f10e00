// Adds the methods that check for newer versions of KOVA. Each method uses the menu's entry for the same purpose and is
// refused if the menu has no such entry.
#pragma once

namespace kova {

class MenuServing;
class MethodTable;

/// `menu` is null if the agent has no menu; then all methods are refused.
void addUpdateMethods(MethodTable& methods, MenuServing* menu);

} // namespace kova
