# The programs. The command line must start quickly. So on Linux it is linked statically, without the unused parts of the
# libraries, and little has to be loaded.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

file(GLOB cli_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/cli/*.cpp)
list(FILTER cli_sources EXCLUDE REGEX /main\\.cpp$)
add_library(kova_cli STATIC ${cli_sources})
target_link_libraries(kova_cli PUBLIC kova_control_client)
add_executable(kova cli/main.cpp)
target_link_libraries(kova PRIVATE kova_cli)
if(UNIX AND NOT APPLE)
  foreach(part kova kova_cli kova_control_client)
    target_compile_options(${part} PRIVATE -ffunction-sections -fdata-sections)
  endforeach()
  target_link_options(kova PRIVATE -Wl,--gc-sections)
  if(NOT KOVA_SANITIZE)
    target_link_options(kova PRIVATE -static)
  endif()
endif()

if(EXISTS ${CMAKE_CURRENT_LIST_DIR}/agent/main.cpp AND TARGET kova_platform_x11 AND TARGET kova_platform_linux)
  file(GLOB agent_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/agent/*.cpp)
  add_executable(kova-agent ${agent_sources})
  target_link_libraries(kova-agent PRIVATE kova_control kova_platform_x11 kova_platform_linux kova_app)
endif()

if(APPLE)
  file(GLOB agent_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/agent/*.cpp ${CMAKE_CURRENT_LIST_DIR}/agent/*.mm)
  list(FILTER agent_sources EXCLUDE REGEX "/main\\.cpp$") # main.cpp is for Linux
  add_executable(kova-agent ${agent_sources})
  target_link_libraries(kova-agent PRIVATE kova_control kova_platform_macos kova_platform_posix kova_app)
endif()

include(ui.cmake)
include(${PROJECT_SOURCE_DIR}/packaging/macos/bundle.cmake)
