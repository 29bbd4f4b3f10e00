# kova-ui: the one program with Qt. Without Qt everything else is built all the same.
option(KOVA_BUILD_UI "Build kova-ui, the user interface" ON)
if(NOT KOVA_BUILD_UI OR APPLE)
  return()
endif()
find_package(Qt6 6.2 QUIET COMPONENTS Widgets DBus)
pkg_check_modules(XCB_UI QUIET IMPORTED_TARGET xcb xcb-randr xcb-shape xcb-xfixes)
if(NOT Qt6_FOUND OR NOT XCB_UI_FOUND)
  message(STATUS "kova-ui is left out: Qt 6 (qt6-base-dev) or libxcb-randr0-dev, libxcb-shape0-dev, libxcb-xfixes0-dev are missing; "
    "script/bootstrap installs them")
  return()
endif()

file(GLOB_RECURSE ui_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/ui/*.cpp ${CMAKE_CURRENT_LIST_DIR}/ui/*.h)
list(FILTER ui_sources EXCLUDE REGEX /ui/main\\.cpp$)
add_library(kova_ui STATIC ${ui_sources})
set_target_properties(kova_ui PROPERTIES AUTOMOC ON UNITY_BUILD OFF) # moc and names of files on their own
target_link_libraries(kova_ui PUBLIC kova_control_client kova_themes Qt6::Widgets Qt6::DBus PkgConfig::XCB_UI)
target_compile_definitions(kova_ui PUBLIC QT_NO_FOREACH QT_NO_KEYWORDS)
add_executable(kova-ui ui/main.cpp)
target_link_libraries(kova-ui PRIVATE kova_ui)
