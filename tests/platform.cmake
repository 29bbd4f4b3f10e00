# Tests of what only one system has. Those under desktop/ open real windows on a private X server.
if(UNIX AND NOT APPLE)
  kova_tests(linux kova_platform_linux kova_platform_simulated)
  kova_tests(x11 kova_platform_x11)
  kova_tests(desktop kova_platform_x11)
  # Joins the desktops that are compared everywhere.
  target_sources(contract_tests PRIVATE contract/x11/X11Contract.cpp desktop/PrivateServer.cpp desktop/TestClient.cpp)
  target_link_libraries(contract_tests PRIVATE kova_platform_x11 kova_platform_linux)
  kova_tests(agent kova_platform_x11)
  target_sources(agent_tests PRIVATE desktop/PrivateServer.cpp desktop/TestClient.cpp)
  target_compile_definitions(agent_tests PRIVATE KOVA_COMMAND="$<TARGET_FILE:kova>" KOVA_AGENT="$<TARGET_FILE:kova-agent>")
  add_dependencies(agent_tests kova kova-agent)
endif()

if(APPLE)
  add_executable(contract_client contract/macos/ContractClient.mm)
  target_compile_options(contract_client PRIVATE -fobjc-arc)
  target_link_libraries(contract_client PRIVATE "-framework AppKit")
  # Joins the desktops that are compared everywhere.
  target_sources(contract_tests PRIVATE contract/macos/MacContract.mm)
  target_link_libraries(contract_tests PRIVATE kova_platform_macos "-framework CoreServices")
  target_compile_definitions(contract_tests PRIVATE KOVA_CONTRACT_CLIENT="$<TARGET_FILE:contract_client>")
  add_dependencies(contract_tests contract_client)
endif()
