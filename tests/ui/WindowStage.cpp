#include "tests/ui/WindowStage.h"

#include "tests/ui/GoldenPicture.h"
#include "ui/style/WidgetPalette.h"
#include "ui/style/WindowStyle.h"

#include <QApplication>
#include <QFontInfo>
#include <QPainter>
#include <QStyle>

#include <cstdlib>

namespace kova::ui::testing {

WindowStage::WindowStage() :
    link(socketPath(),
         {.contentsChanged = [] {},
          .showRequested = [this](const auto& what, const auto& parameters) { host.show(what, parameters); },
          .contentsRejected = [](const auto&) {}}),
    host({.socketPath = socketPath(),
          .icon = [this](const ApplicationName& name, int size) { return icon ? icon(name, size) : QPixmap(); },
          .overlay = [this] { return link.contents() ? &*link.contents() : nullptr; },
          .palette = [this] { return paletteFor(link.contents()->appearance, brightness, Compositing::absent); },
          .brightness = [this] { return brightness; },
          .closedByUser = [this](const std::string& what) { closedByUser.push_back(what); }}) {
    qputenv("TZ", "UTC"); // pictures show times
    QApplication::setStyle(new WindowStyle);
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans")));
    applyWidgetFontHeight(static_cast<int>(points::smallText) + 1);
    QApplication::setCursorFlashTime(0);
    link.start();
    EXPECT_TRUE(until([&] { return link.contents().has_value(); })) << "the agent does not respond";
    style(Brightness::dark);
}

WindowStage::~WindowStage() {
    for (QWidget* window : QApplication::topLevelWidgets()) window->close();
    QCoreApplication::processEvents();
}

HostedWindow* WindowStage::open(const std::string& what, const nlohmann::json& parameters) {
    EXPECT_TRUE(host.show(what, parameters)) << "there is no window " << what;
    EXPECT_TRUE(until([&] { return host.window(what) && host.window(what)->isVisible(); }));
    return host.window(what);
}

bool WindowStage::until(const std::function<bool()>& holds) {
    return waitUntil(
        [this] {
            runAgentOnce();
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        },
        holds);
}

nlohmann::json WindowStage::ask(const std::string& method, const nlohmann::json& parameters) {
    nlohmann::json reply = client().request(
        nlohmann::json{{"jsonrpc", "2.0"}, {"id", 1}, {"method", method}, {"params", parameters}}.dump());
    reply.erase("jsonrpc");
    reply.erase("id");
    return reply;
}

void WindowStage::style(Brightness wanted) {
    brightness = wanted;
    if (link.contents()) applyWidgetPalette(paletteFor(link.contents()->appearance, wanted, Compositing::absent));
}

QImage WindowStage::picture(QWidget& window, int scale) {
    QImage image(window.size() * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    window.render(&image);
    image.setDevicePixelRatio(1);
    return image;
}

void WindowStage::compareWithGoldens(QWidget& window, const std::string& name) {
    if (QFontInfo(QFont(QStringLiteral("DejaVu Sans"))).family() != QStringLiteral("DejaVu Sans"))
        GTEST_SKIP() << "the font DejaVu Sans is missing";
    for (const auto& [wanted, word] : {std::pair(Brightness::dark, "dark"), std::pair(Brightness::light, "light")}) {
        style(wanted);
        QCoreApplication::processEvents(); // the new palette reaches the controls
        for (const int scale : {1, 2}) {
            compareWithGolden(picture(window, scale), name + "-" + word + "@" + std::to_string(scale), scale);
        }
    }
    style(Brightness::dark);
}

} // namespace kova::ui::testing
