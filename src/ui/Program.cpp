#include "ui/Program.h"

#include "ui/overlay/PlainPlatform.h"
#include "ui/x11/X11Platform.h"

#include <QApplication>
#include <QCursor>
#include <QPalette>

namespace kova::ui {

namespace {

std::unique_ptr<OverlayPlatform> platformOfSession(std::function<void()> compositingChanged) {
    if (const auto* x11 = qApp->nativeInterface<QNativeInterface::QX11Application>()) {
        if (auto platform = X11Platform::create(x11->connection(), std::move(compositingChanged))) return platform;
    }
    return std::make_unique<PlainPlatform>();
}

} // namespace

Program::Program(const std::string& socketPath) :
    link_(socketPath, {.contentsChanged =
                           [this] {
                               // Not at once: a window's own event may be the cause, and the window may go.
                               if (std::exchange(isRefreshDue_, true)) return;
                               QMetaObject::invokeMethod(this, [this] { contentsChanged(); }, Qt::QueuedConnection);
                           },
                       .showRequested =
                           [this](const std::string& what) {
                               if (what == "menu" && tray_) tray_->openMenu(QCursor::pos());
                           },
                       .notUnderstood =
                           [this](const std::string& reason) {
                               if (std::exchange(lastComplaint_, reason) == reason) return;
                               qWarning("kova-ui: %s", reason.c_str());
                           }}),
    actions_(link_), preferences_([this] { applyTaste(); }),
    platform_(platformOfSession([this] { overlay_->compositingChanged(); })),
    overlay_(std::make_unique<Overlay>(*platform_, actions_)) {
    actions_.setIcons([this](const ApplicationName& application, int size) { return icons_.icon(application, size); });
}

void Program::start() {
    applyTaste();
    link_.start();
    preferences_.start();
}

void Program::contentsChanged() {
    isRefreshDue_ = false;
    const auto& contents = link_.contents();
    overlay_->show(contents);
    if (contents && menuAppearance_ != contents->appearance) styleMenus();
    if (std::exchange(isAgentThere_, contents.has_value()) == contents.has_value()) return;
    // After the overlay, which is what one waits for.
    if (contents && !tray_) tray_ = std::make_unique<Tray>(link_);
    if (tray_) tray_->show(isAgentThere_);
}

void Program::applyTaste() {
    icons_.clear();
    overlay_->setTaste({.brightness = preferences_.brightness(),
                        .mayMove = preferences_.mayMove(),
                        .fontFamily = QApplication::font().family(),
                        .icon = [this](const ApplicationName& application, int size) {
                            return icons_.icon(application, size);
                        }});
    if (link_.contents()) styleMenus();
}

void Program::styleMenus() {
    const OverlayContents& contents = *link_.contents();
    menuAppearance_ = contents.appearance;
    const Palette colors = paletteFor(contents.appearance, preferences_.brightness(), Compositing::absent);
    QPalette palette(colors.raised);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
        palette.setColor(role, colors.text);
        palette.setColor(QPalette::Disabled, role, colors.mutedText);
    }
    palette.setColor(QPalette::Base, colors.panel);
    palette.setColor(QPalette::Highlight, colors.accentFill);
    QApplication::setPalette(palette);
    const double scale = contents.displays.empty() ? 1 : contents.displays.front().scale;
    QFont font = QApplication::font();
    font.setPixelSize(std::max(1, static_cast<int>(std::lround((points::smallText + 1) * scale))));
    QApplication::setFont(font);
}

} // namespace kova::ui
