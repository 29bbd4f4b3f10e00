# Tests of what only one system has. Those under desktop/ open real windows on a private X server.
if(UNIX AND NOT APPLE)
  kova_tests(linux kova_platform_linux kova_platform_simulated)
  kova_tests(x11 kova_platform_x11)
  kova_tests(desktop kova_platform_x11)
endif()
