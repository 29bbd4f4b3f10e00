# Fuzz tests of the code that reads untrusted input. Each runs for a short time. They need a compiler with libFuzzer, as clang has it.
include(CheckCXXSourceCompiles)
set(CMAKE_REQUIRED_FLAGS -fsanitize=fuzzer)
check_cxx_source_compiles("extern \"C\" int LLVMFuzzerTestOneInput(const unsigned char*, unsigned long) { return 0; }"
  KOVA_HAS_FUZZER)
unset(CMAKE_REQUIRED_FLAGS)
if(NOT KOVA_HAS_FUZZER)
  return()
endif()

set(KOVA_FUZZ_SECONDS 20 CACHE STRING "The duration of each fuzz test, in seconds")

pkg_check_modules(KOVA_FUZZ_ICU REQUIRED IMPORTED_TARGET icu-uc icu-i18n)

# Adds a test from fuzz/<name>.cpp and the given sources of the tested code. The sources are compiled again for this test, since
# libFuzzer needs to see which branches of the code run. The fuzzer begins with the inputs in fuzz/<corpus> and the words in
# fuzz/<corpus>.dict. No input is longer than <longest> bytes.
function(kova_fuzz test name corpus longest)
  add_executable(${test} fuzz/${name}.cpp ${ARGN})
  target_link_libraries(${test} PRIVATE kova_options nlohmann_json::nlohmann_json Threads::Threads
    PkgConfig::KOVA_FUZZ_ICU)
  target_compile_options(${test} PRIVATE -O1 -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=all)
  target_link_options(${test} PRIVATE -fsanitize=fuzzer,address,undefined)
  # New inputs are written to the build folder; fuzz/<corpus> is only read.
  set(new_inputs ${CMAKE_CURRENT_BINARY_DIR}/fuzz/${corpus})
  file(MAKE_DIRECTORY ${new_inputs})
  add_test(NAME ${test} COMMAND ${test} -max_total_time=${KOVA_FUZZ_SECONDS} -timeout=5 -rss_limit_mb=1024
    -max_len=${longest} -dict=${CMAKE_CURRENT_SOURCE_DIR}/fuzz/${corpus}.dict
    -artifact_prefix=${CMAKE_CURRENT_BINARY_DIR}/fuzz/ ${new_inputs} ${CMAKE_CURRENT_SOURCE_DIR}/fuzz/${corpus})
  set_tests_properties(${test} PROPERTIES LABELS fuzz TIMEOUT 300)
endfunction()

file(GLOB support CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/support/*.cpp ${PROJECT_SOURCE_DIR}/src/support/text/*.cpp)
file(GLOB documents CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/layout/*.cpp
  ${PROJECT_SOURCE_DIR}/src/persistence/Workspace*.cpp)
kova_fuzz(workspace_document_fuzz WorkspaceDocumentFuzz document 65536 ${support} ${documents})
kova_fuzz(url_actions_fuzz URLActionsFuzz url 8192 ${support} ${PROJECT_SOURCE_DIR}/src/commands/URLActions.cpp
  ${PROJECT_SOURCE_DIR}/src/commands/Intents.cpp ${PROJECT_SOURCE_DIR}/src/workspace/WorkspaceAction.cpp)
