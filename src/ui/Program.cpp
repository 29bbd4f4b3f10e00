#include "ui/Program.h"

#include "ui/overlay/PlainPlatform.h"
#include "ui/style/WidgetPalette.h"

#include <QtGlobal>

#if defined(Q_OS_MACOS)
#include "ui/macos/MacAppearance.h"
#include "ui/macos/MacPlatform.h"
#else
#include "ui/x11/X11Platform.h"
#include "ui/x11/X11WindowFocus.h"
#endif

#include <QApplication>
#include <QCursor>

#include <algorithm>
#include <utility>

namespace kova::ui {

Program::Program(const std::string& socketPath) :
    link_(socketPath, {.contentsChanged =
                           [this] {
                               // The refresh is queued: this callback may run while a window handles an event,
                               // and the refresh may destroy that window.
                               if (std::exchange(isRefreshScheduled_, true)) return;
                               QMetaObject::invokeMethod(
                                   this, [this] { contentsChanged(); }, Qt::QueuedConnection);
                           },
                       .showRequested =
                           [this](const std::string& what, const nlohmann::json& parameters) {
                               if (what == "menu") return tray_.openMenu(QCursor::pos());
                               windows_.show(what, parameters);
                           },
                       .contentsRejected =
                           [this](const std::string& reason) {
                               if (std::exchange(lastProblem_, reason) == reason) return;
                               qWarning("kova-ui: %s", reason.c_str());
                               windows_.show("alert", {{"title", "KOVA cannot show the overlay"}, {"text", reason}});
                           }}),
    preferences_([this] { applyDesktopStyle(); }),
    actions_(
        link_, [this](const ApplicationName& application, int size) { return icons_.icon(application, size); },
        [this] { styleWidgets(); },
        [this](const std::string& what, const nlohmann::json& parameters) { windows_.show(what, parameters); }),
    tray_(
        link_, [this] { styleWidgets(); },
        [this](const std::string& id) {
            link_.call("menu.choose", {{"id", id}});
        }),
    windows_({.socketPath = socketPath,
              .icon = [this](const ApplicationName& application, int size) { return icons_.icon(application, size); },
              .overlay = [this] { return link_.contents() ? &*link_.contents() : nullptr; },
              .palette = [this] { return palette(); },
              .brightness = [this] { return preferences_.brightness(); },
              .origin = [this] { return platform_->firstDisplay(); },
              .styleWidgets = [this] { styleWidgets(); },
              .closedByUser =
                  [this](const std::string& what) {
                      link_.call("ui.hide", {{"what", what}});
                  }}) {
#if defined(Q_OS_MACOS)
    endWithAgent();
    platform_ = std::make_unique<MacPlatform>();
    windows_.setFocus(std::make_unique<MacWindowFocus>());
#else
    if (const auto* x11 = qApp->nativeInterface<QNativeInterface::QX11Application>()) {
        windows_.setFocus(std::make_unique<X11WindowFocus>(x11->connection()));
        auto platform = X11Platform::create(x11->connection());
        if (platform) {
            platform->whenCompositingChanges([this] { overlay_->compositingChanged(); });
            platform->whenFirstDisplayMoves([this] { overlay_->firstDisplayMoved(); });
            platform->whenTrayChanges([this](bool hasTray) { tray_.setHasTrayWindow(hasTray); });
            tray_.setHasTrayWindow(platform->hasTray());
            platform_ = std::move(platform);
        }
    }
#endif
    if (!platform_) platform_ = std::make_unique<PlainPlatform>();
    overlay_ = std::make_unique<Overlay>(*platform_, actions_);
}

void Program::start() {
#if defined(Q_OS_MACOS)
    macAppearance_ = followAppearance([this](Brightness brightness, bool areAnimationsEnabled) {
        preferences_.set(brightness, areAnimationsEnabled);
    });
#endif
    applyDesktopStyle();
    link_.start();
    preferences_.start();
}

void Program::contentsChanged() {
    isRefreshScheduled_ = false;
    const auto& contents = link_.contents();
    overlay_->show(contents);
    windows_.follow(contents ? contents->windows : std::map<std::string, ShownWindow>());
    if (contents && windows_.isAnyOpen() && contents->appearance != styledAppearance_) styleWidgets();
    // The status item comes last, since a delay of the overlay is more noticeable.
    if (std::exchange(isAgentConnected_, contents.has_value()) != contents.has_value())
        tray_.setAgentConnected(isAgentConnected_);
}

void Program::applyDesktopStyle() {
    icons_.clear();
    if (windows_.isAnyOpen()) styleWidgets();
    overlay_->setDesktopStyle(
        {.brightness = preferences_.brightness(),
         .areAnimationsEnabled = preferences_.areAnimationsEnabled(),
         .fontFamily = QApplication::font().family(),
         .icon = [this](const ApplicationName& application, int size) { return icons_.icon(application, size); }});
}

Palette Program::palette() const {
    return paletteFor(link_.contents() ? link_.contents()->appearance : Appearance{}, preferences_.brightness(),
                      Compositing::absent);
}

void Program::styleWidgets() {
    if (!link_.contents()) return;
    const OverlayContents& contents = *link_.contents();
    styledAppearance_ = contents.appearance;
    applyWidgetPalette(palette());
    const double scale = contents.displays.empty() ? 1 : contents.displays.front().scale;
    applyWidgetFontHeight(static_cast<int>(std::lround((points::smallText + 1) * scale)));
}

} // namespace kova::ui
