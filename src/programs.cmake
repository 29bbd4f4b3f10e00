set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

# The command line is asked many times a day and must start at once: on Linux it is one static file without
# the parts of the libraries that it does not use, so that the system has next to nothing to load.
file(GLOB cli_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/cli/*.cpp)
add_executable(kova ${cli_sources})
target_link_libraries(kova PRIVATE kova_control_client)
if(UNIX AND NOT APPLE)
  target_compile_options(kova PRIVATE -ffunction-sections -fdata-sections)
  target_link_options(kova PRIVATE -Wl,--gc-sections)
  if(NOT KOVA_SANITIZE)
    target_link_options(kova PRIVATE -static)
  endif()
endif()

if(EXISTS ${CMAKE_CURRENT_LIST_DIR}/agent/main.cpp AND TARGET kova_platform_x11 AND TARGET kova_platform_linux)
  file(GLOB agent_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/agent/*.cpp)
  find_package(spdlog REQUIRED)
  add_executable(kova-agent ${agent_sources})
  target_link_libraries(kova-agent PRIVATE kova_control kova_platform_x11 kova_platform_linux kova_app spdlog::spdlog)
endif()
