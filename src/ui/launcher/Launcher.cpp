#include "ui/launcher/Launcher.h"

#include <memory>

namespace kova::ui {

namespace {

const WindowRegistration launcherRegistration({"launcher",
                                               [](WindowServices& services) -> std::unique_ptr<HostedWindow> {
                                                   return std::make_unique<Launcher>(services);
                                               }});

} // namespace

Launcher::Launcher(WindowServices& services) : SearchWindow(services) {
    setWindowTitle(tr("Launch an app in this tile"));
    field().setPlaceholderText(tr("Launch an app in this tile"));
    field().setAccessibleName(tr("Application"));
    field().setAccessibleDescription(tr("Type a part of the name; arrow keys choose, Enter launches into the tile"));
    list().setAccessibleName(tr("Applications"));
    list().setAccessibleDescription(tr("Installed applications, most used first"));
}

void Launcher::load() {
    setLoading(true);
    services().agent.call(this, "app.list", nlohmann::json::object(), [this](const Response& response) {
        error().showReason(QString::fromStdString(response.error));
        setLoading(false);
        if (response.error.empty()) setEntries(applicationEntries(response.result, tile()));
    });
}

} // namespace kova::ui
