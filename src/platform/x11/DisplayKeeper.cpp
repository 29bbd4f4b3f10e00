#include "platform/x11/DisplayKeeper.h"

namespace kova::x11 {

void DisplayKeeper::readAll() {
    reader_.begin();
    reader_.wait();
    scale_.begin();
    scale_.wait();
}

bool DisplayKeeper::advance(const EventEffects& effects) {
    const bool hasReport = reader_.advance();
    if (hasReport) monitors_ = reader_.monitors();
    const bool isScaleNew = scale_.advance();
    if (effects.mustQueryDisplays) reader_.begin();
    if (effects.mustQueryScale) scale_.begin();
    return hasReport || isScaleNew;
}

bool DisplayKeeper::hasUnsent() {
    const bool hasReaders = reader_.hasUnsent();
    return scale_.hasUnsent() || hasReaders;
}

bool DisplayKeeper::arrange(WindowModel& model) {
    std::vector<Panel> panels;
    for (const xcb_window_t window : model.clientOrder()) {
        const ClientWindow* client = model.client(window);
        if (!client || (!client->strut && !client->partialStrut)) continue;
        const auto& strut = client->partialStrut ? client->partialStrut : client->strut;
        if (model.isShown(*client)) panels.push_back({*strut, model.outerFrame(*client)});
    }
    std::optional<PixelRect> workarea;
    if (model.currentDesktop < model.workareas.size()) workarea = model.workareas[model.currentDesktop];
    if (monitors_.empty()) monitors_ = reader_.monitors();
    const PixelRect root{0, 0, model.rootSize.first, model.rootSize.second};
    const auto report = reader_.hasReport() ? MonitorReport::all : MonitorReport::none;
    auto next = describeDisplays(monitors_, report, panels, workarea, root, scale_.scale());
    if (next == arrangement_) return false;
    arrangement_ = std::move(next);
    model.displayRects.clear();
    for (const Monitor& monitor : monitors_) model.displayRects.push_back(monitor.rect);
    if (model.displayRects.empty() && report == MonitorReport::none) model.displayRects.push_back(root);
    return true;
}

} // namespace kova::x11
