#include "app/DisplayLayoutMenu.h"

namespace kova {

std::vector<DisplayLayoutMenu> displayLayoutMenus(const WorkspaceController& workspace) {
    std::vector<DisplayLayoutMenu> menus;
    for (const Screen& screen : *workspace.state().screens) {
        DisplayLayoutMenu menu{
            .id = displayID(screen), .title = screen.localizedName, .options = {}, .selectedOptionID = {}};
        menu.options.push_back({std::string(kAutomaticLayoutOption), "Automatic"});
        for (const auto& layout : workspace.catalogue()) menu.options.push_back({layout.id, layout.name});
        const auto& selections = workspace.state().profile->layoutSelectionsByDisplay;
        const auto selection = selections.find(menu.id);
        if (selection != selections.end() && !selection->second.layoutID) {
            menu.selectedOptionID = kAutomaticLayoutOption;
        } else if (const auto* layout = workspace.resolvedLayout(menu.id)) {
            menu.selectedOptionID = layout->id;
        }
        menus.push_back(std::move(menu));
    }
    return menus;
}

bool chooseLayout(WorkspaceController& workspace, const DisplayID& displayID, const std::string& optionID) {
    const auto selection = optionID == kAutomaticLayoutOption ? DisplayLayoutSelection::automatic()
                                                              : DisplayLayoutSelection::layout(optionID);
    return workspace.perform(action::SelectLayout{displayID, selection});
}

} // namespace kova
