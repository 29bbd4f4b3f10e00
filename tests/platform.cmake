# Tests of what only one system has.
if(UNIX AND NOT APPLE)
  kova_tests(linux kova_platform_linux kova_platform_simulated)
endif()
