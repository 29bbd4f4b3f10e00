# Tests of kova-ui. Drawing, pointer events and the connection to the agent are tested without a screen, the windows on private X
# servers.
if(NOT TARGET kova_ui OR APPLE) # the tests need an X server
  return()
endif()
find_package(Qt6 REQUIRED COMPONENTS Test)
kova_tests(ui kova_ui Qt6::Test kova_scenario kova_control kova_cli kova_platform_simulated kova_platform_x11 SDBusCpp::sdbus-c++)
target_sources(ui_tests PRIVATE agent/Session.cpp ${private_server})
target_compile_definitions(ui_tests PRIVATE KOVA_GOLDEN="${CMAKE_CURRENT_SOURCE_DIR}/ui/golden"
  KOVA_DOCS="${PROJECT_SOURCE_DIR}/docs" KOVA_UI_PROGRAM="$<TARGET_FILE:kova-ui>" KOVA_COMMAND="$<TARGET_FILE:kova>" KOVA_AGENT="$<TARGET_FILE:kova-agent>")
add_dependencies(ui_tests kova-ui kova kova-agent)
