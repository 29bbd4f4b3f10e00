# What only Linux has: the desktop on X11, and what stands beside it (folders, desktop entries, event loop).
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb xcb-ewmh xcb-icccm xcb-randr)
find_package(spdlog REQUIRED)

kova_room(platform_linux platform/linux kova_app spdlog::spdlog Threads::Threads)
kova_room(platform_x11 platform/x11 kova_app PkgConfig::XCB)
