// kova-ui: the overlay, the menu and the windows of KOVA. A client of the agent's socket.
#include "ui/Instance.h"
#include "ui/Program.h"

#include "control/client/ControlSocket.h"
#include "support/Version.h"
#include "ui/style/WindowStyle.h"
#include "ui/windows/Translations.h"

#include <QApplication>

#include <cstdio>
#include <string>
#include <string_view>

namespace {

constexpr std::string_view kHelp = R"(usage: kova-ui [--socket PATH]

Shows what kova-agent manages: the footers of tiles, empty tiles, where a dragged
window would go, messages, and the menu of the desktop's panel. The agent starts
kova-ui. Without an agent, kova-ui shows nothing and waits for one. If kova-ui is
started by hand while it runs, the settings are shown.

  --socket PATH   the agent's socket (else KOVA_SOCKET, else that of the session)
  --help          this text
  --version       the version
)";

/// The agent sends sizes in points, and kova-ui converts them to pixels itself: the toolkit must not scale them again.
/// OpenGL and the theme plugin of another toolkit are not loaded, because their libraries would take more memory than
/// the rest of kova-ui.
void prepareToolkit() {
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    for (const char* name : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_AUTO_SCREEN_SCALE_FACTOR"})
        qunsetenv(name);
    qputenv("QT_STYLE_OVERRIDE", "fusion");
#if defined(Q_OS_MACOS)
    // The toolkit activates a program when it starts and when it raises a window, which would take the focus from the
    // application in use. Windows that need the focus request it themselves.
    qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
    qputenv("QT_MAC_SET_RAISE_PROCESS", "0");
#else // on a Mac, these variables would make the toolkit ignore the system's theme and its dark appearance
    qputenv("QT_XCB_GL_INTEGRATION", "none");
    qputenv("QT_QPA_PLATFORMTHEME", qgetenv("XDG_CURRENT_DESKTOP").toUpper().contains("KDE") ? "kde" : "gnome");
#endif
    QCoreApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
}

} // namespace

int main(int argc, char** argv) {
    std::string socket = kova::controlSocketPlace().path;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--help") return std::fwrite(kHelp.data(), 1, kHelp.size(), stdout) == kHelp.size() ? 0 : 1;
        if (argument == "--version") return std::puts("kova-ui " KOVA_VERSION) >= 0 ? 0 : 1;
        if (argument == "--socket" && i + 1 < argc) {
            socket = argv[++i];
            continue;
        }
        std::fprintf(stderr, "kova-ui: unknown argument: %s\n%s", argv[i], kHelp.data());
        return 2;
    }
    if (kova::ui::activateRunningInstance(socket)) return 0;
    prepareToolkit();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kova-ui"));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setStyle(new kova::ui::WindowStyle); // owned by the application
    kova::ui::installTranslations(QLocale::system());
    kova::ui::Program program(socket);
    program.start();
    return QApplication::exec();
}
