# Readers of files that strangers send, tried with made-up bytes for a short while. Only with a compiler that brings the
# library for it.
include(CheckCXXSourceCompiles)
set(CMAKE_REQUIRED_FLAGS -fsanitize=fuzzer)
check_cxx_source_compiles("extern \"C\" int LLVMFuzzerTestOneInput(const unsigned char*, unsigned long) { return 0; }"
  KOVA_HAS_FUZZER)
unset(CMAKE_REQUIRED_FLAGS)
if(NOT KOVA_HAS_FUZZER)
  return()
endif()

set(KOVA_FUZZ_SECONDS 20 CACHE STRING "How long a test with made-up bytes runs, in seconds")

# Compiled anew, since the fuzzer is led by the branches that it sees taken.
file(GLOB fuzzed CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/support/*.cpp ${PROJECT_SOURCE_DIR}/src/support/text/*.cpp
  ${PROJECT_SOURCE_DIR}/src/layout/*.cpp ${PROJECT_SOURCE_DIR}/src/persistence/Workspace*.cpp)
pkg_check_modules(KOVA_FUZZ_ICU REQUIRED IMPORTED_TARGET icu-uc icu-i18n)
add_executable(workspace_document_fuzz fuzz/WorkspaceDocumentFuzz.cpp ${fuzzed})
target_link_libraries(workspace_document_fuzz PRIVATE kova_options nlohmann_json::nlohmann_json Threads::Threads
  PkgConfig::KOVA_FUZZ_ICU)
target_compile_options(workspace_document_fuzz PRIVATE -O1 -fsanitize=fuzzer,address,undefined
  -fno-sanitize-recover=all)
target_link_options(workspace_document_fuzz PRIVATE -fsanitize=fuzzer,address,undefined)

# What it finds worth keeping stays in the build folder, the corpus of the source is only read.
set(found ${CMAKE_CURRENT_BINARY_DIR}/fuzz/found)
file(MAKE_DIRECTORY ${found})
add_test(NAME workspace_document_fuzz COMMAND workspace_document_fuzz -max_total_time=${KOVA_FUZZ_SECONDS} -timeout=5
  -rss_limit_mb=1024 -max_len=65536 -dict=${CMAKE_CURRENT_SOURCE_DIR}/fuzz/document.dict
  -artifact_prefix=${CMAKE_CURRENT_BINARY_DIR}/fuzz/ ${found} ${CMAKE_CURRENT_SOURCE_DIR}/fuzz/corpus)
set_tests_properties(workspace_document_fuzz PROPERTIES LABELS fuzz TIMEOUT 300)
