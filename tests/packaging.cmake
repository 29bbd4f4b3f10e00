# Tests of those files of the Mac application that are generated on every system.
find_package(Python3 COMPONENTS Interpreter)
if(Python3_FOUND)
  add_test(NAME macos_bundle COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_LIST_DIR}/packaging/check-macos-bundle.py
    ${PROJECT_BINARY_DIR}/macos/Info.plist ${PROJECT_SOURCE_DIR}/packaging/macos/KOVA.entitlements
    ${PROJECT_BINARY_DIR}/macos/AppIntents.swift ${PROJECT_VERSION} ${PROJECT_BINARY_DIR}/macos/kova-ui.plist
    ${PROJECT_SOURCE_DIR}/packaging/macos/sign)
endif()
