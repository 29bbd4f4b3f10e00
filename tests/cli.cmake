# Tests of the agent's socket and of the command line. They run a complete agent on the simulated desktop.
target_link_libraries(control_tests PRIVATE kova_scenario)
target_compile_definitions(control_tests PRIVATE KOVA_DOCS="${PROJECT_SOURCE_DIR}/docs")

kova_tests(cli kova_cli kova_control kova_scenario)
if(TARGET cli_tests)
  add_dependencies(cli_tests kova)
  target_sources(cli_tests PRIVATE control/JsonSchema.cpp)
  target_compile_definitions(cli_tests PRIVATE KOVA_COMMAND="$<TARGET_FILE:kova>"
    KOVA_COMPLETIONS="${PROJECT_SOURCE_DIR}/packaging/completions" KOVA_SHELLS="${CMAKE_CURRENT_SOURCE_DIR}/cli"
    KOVA_DOCS="${PROJECT_SOURCE_DIR}/docs" KOVA_README="${PROJECT_SOURCE_DIR}/README.md")
endif()
