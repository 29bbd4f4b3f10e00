# The platform modules of Linux. platform_x11 is the desktop; platform_linux has folders, desktop entries and the event loop.
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb xcb-dpms xcb-icccm xcb-randr xcb-res xcb-screensaver xcb-xinput xcb-xkb xkbcommon)
find_package(sdbus-c++ REQUIRED)

kova_module(platform_linux platform/linux kova_platform_posix kova_app kova_text SDBusCpp::sdbus-c++ Threads::Threads)
kova_module(platform_x11 platform/x11 kova_windowing kova_support_posix PkgConfig::XCB)
