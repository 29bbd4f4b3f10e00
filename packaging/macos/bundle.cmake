# KOVA.app: the agent with its icon, its Info.plist, the command line (Contents/Helpers/kova) and, where Qt is installed,
# kova-ui as a separate application beside it; with the options for them also Sparkle and the intents in Swift. Included
# where the agent's target is defined. Other systems generate only the Info.plist and the Swift source, for the tests.
set(bundle_folder ${CMAKE_CURRENT_LIST_DIR})
set(KOVA_BUNDLE_IDENTIFIER org.example.kova CACHE STRING "Under which the Mac knows the application and its permissions")
option(KOVA_WITH_SPARKLE "Build the Mac application with Sparkle, which looks for updates" OFF)
set(KOVA_UPDATE_FEED "" CACHE STRING "The address of Sparkle's list of versions")
set(KOVA_UPDATE_KEY "" CACHE STRING "The public key that updates are signed with")

set(KOVA_UPDATE_KEYS "")
if(KOVA_WITH_SPARKLE AND KOVA_UPDATE_FEED)
  set(KOVA_UPDATE_KEYS "    <key>SUFeedURL</key>\n    <string>${KOVA_UPDATE_FEED}</string>\n\
    <key>SUPublicEDKey</key>\n    <string>${KOVA_UPDATE_KEY}</string>\n")
endif()
set(info_plist ${PROJECT_BINARY_DIR}/macos/Info.plist)
configure_file(${bundle_folder}/Info.plist.in ${info_plist} @ONLY)
set(ui_info_plist ${PROJECT_BINARY_DIR}/macos/kova-ui.plist)
configure_file(${bundle_folder}/kova-ui.plist.in ${ui_info_plist} @ONLY)

add_executable(kova-generate-intents ${bundle_folder}/generate-intents.cpp)
target_link_libraries(kova-generate-intents PRIVATE kova_options)
set(intents ${PROJECT_BINARY_DIR}/macos/AppIntents.swift)
add_custom_command(OUTPUT ${intents} COMMAND kova-generate-intents > ${intents} DEPENDS kova-generate-intents VERBATIM)
add_custom_target(kova_app_intents ALL DEPENDS ${intents})

if(NOT APPLE)
  return()
endif()

set(icon ${PROJECT_BINARY_DIR}/macos/AppIcon.icns)
set(icon_svg ${PROJECT_SOURCE_DIR}/packaging/linux/kova.svg)
add_custom_command(OUTPUT ${icon} COMMAND ${bundle_folder}/make-icon ${icon_svg} ${icon}
  DEPENDS ${icon_svg} ${bundle_folder}/make-icon VERBATIM)
target_sources(kova-agent PRIVATE ${icon})
set_source_files_properties(${icon} PROPERTIES MACOSX_PACKAGE_LOCATION Resources)

set_target_properties(kova-agent PROPERTIES
  MACOSX_BUNDLE TRUE
  MACOSX_BUNDLE_INFO_PLIST ${info_plist}
  OUTPUT_NAME KOVA
  XCODE_ATTRIBUTE_PRODUCT_BUNDLE_IDENTIFIER ${KOVA_BUNDLE_IDENTIFIER}
  INSTALL_RPATH "@executable_path/../Frameworks"
  BUILD_WITH_INSTALL_RPATH TRUE)
# Only headers of these libraries are used. If they were linked, they would have to be installed, and have the same signer.
target_link_options(kova-agent PRIVATE LINKER:-dead_strip,-dead_strip_dylibs)
# Not in the folder of the application's own program (KOVA), since file names on a Mac usually ignore case.
set(contents $<TARGET_BUNDLE_CONTENT_DIR:kova-agent>)
add_dependencies(kova-agent kova)
add_custom_command(TARGET kova-agent POST_BUILD
  COMMAND ${CMAKE_COMMAND} -E make_directory ${contents}/Helpers
  COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:kova> ${contents}/Helpers/kova VERBATIM)
# The programs are copied whenever the agent is linked, so the agent is linked again when one of them was.
set_property(TARGET kova-agent APPEND PROPERTY LINK_DEPENDS $<TARGET_FILE:kova>)

if(TARGET kova-ui)
  set_target_properties(kova-ui PROPERTIES
    MACOSX_BUNDLE TRUE
    MACOSX_BUNDLE_INFO_PLIST ${ui_info_plist}
    XCODE_ATTRIBUTE_PRODUCT_BUNDLE_IDENTIFIER ${KOVA_BUNDLE_IDENTIFIER}.ui)
  add_dependencies(kova-agent kova-ui)
  set_property(TARGET kova-agent APPEND PROPERTY LINK_DEPENDS $<TARGET_FILE:kova-ui>)
  set(helper ${contents}/Helpers/kova-ui.app)
  add_custom_command(TARGET kova-agent POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${helper}
    COMMAND ditto $<TARGET_BUNDLE_DIR:kova-ui> ${helper} VERBATIM)
  if(CMAKE_BUILD_TYPE STREQUAL Release)
    # A signed application loads only libraries of the same signer, so Qt is copied into kova-ui.app. That makes the signature
    # of the linker or of Xcode invalid, and the system ends a program with an invalid signature. So kova-ui.app is signed
    # again, before the application that contains it.
    find_program(MACDEPLOYQT macdeployqt HINTS ${QT6_INSTALL_PREFIX}/bin ${qt_prefix}/bin REQUIRED)
    add_custom_command(TARGET kova-agent POST_BUILD
      COMMAND ${MACDEPLOYQT} ${helper} -verbose=1
      COMMAND ${bundle_folder}/sign ${helper} - VERBATIM)
  endif()
endif()

# Xcode's own build (preset "macos") reads titles and phrases from the source. Any other build compiles the intents, but
# the system does not find them.
if(CMAKE_GENERATOR STREQUAL Xcode)
  set(intents_default ON)
else()
  set(intents_default OFF)
endif()
option(KOVA_WITH_APP_INTENTS "Build the Mac application with its App Intents, in Swift" ${intents_default})
if(KOVA_WITH_APP_INTENTS)
  set(CMAKE_Swift_LANGUAGE_VERSION 5) # otherwise Xcode uses an older version
  enable_language(Swift)
  set_target_properties(kova-agent PROPERTIES Swift_MODULE_NAME KOVA) # a module's name has no hyphen
  target_sources(kova-agent PRIVATE ${intents})
  add_dependencies(kova-agent kova_app_intents) # in Xcode two independent targets cannot share a command
  target_compile_options(kova-agent PRIVATE $<$<COMPILE_LANGUAGE:Swift>:-parse-as-library>)
  target_link_libraries(kova-agent PRIVATE "-framework AppIntents")
endif()

if(KOVA_WITH_SPARKLE)
  find_library(SPARKLE_FRAMEWORK Sparkle REQUIRED)
  target_link_libraries(kova_platform_macos PUBLIC ${SPARKLE_FRAMEWORK})
  target_compile_definitions(kova_platform_macos PRIVATE KOVA_WITH_SPARKLE=1)
  add_custom_command(TARGET kova-agent POST_BUILD
    COMMAND ditto ${SPARKLE_FRAMEWORK} ${contents}/Frameworks/Sparkle.framework VERBATIM)
endif()

install(TARGETS kova-agent BUNDLE DESTINATION .)
