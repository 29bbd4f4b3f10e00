// Adds the methods of the check for newer versions. They use its entries of the menu and are refused if the menu lacks
// these.
#pragma once

namespace kova {

class MenuServing;
class MethodTable;

/// `menu` is null where there is none; then all methods are refused.
void addUpdateMethods(MethodTable& methods, MenuServing* menu);

} // namespace kova
