# Builds KOVA.app from the agent, its icon, its Info.plist and the command line (Contents/Helpers/kova). If Qt is installed, the
# application contains kova-ui (Contents/Helpers/kova-ui.app). Options add Sparkle and the App Intents, which are written in
# Swift. src/programs.cmake includes this file. Systems other than a Mac only generate the Info.plist files and the Swift source,
# for the tests.
set(bundle_folder ${CMAKE_CURRENT_LIST_DIR})
set(KOVA_BUNDLE_IDENTIFIER org.example.kova CACHE STRING "The identifier under which macOS stores the application's permissions")
option(KOVA_WITH_SPARKLE "Build the Mac application with Sparkle, which checks for updates" OFF)
set(KOVA_UPDATE_FEED "" CACHE STRING "The address of Sparkle's list of versions")
set(KOVA_UPDATE_KEY "" CACHE STRING "The public key that verifies the signatures of updates")

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
# Of some libraries only the headers are used. These options keep the linker from linking them: a linked library would have to be
# installed, and to have the same signer as the application.
target_link_options(kova-agent PRIVATE LINKER:-dead_strip,-dead_strip_dylibs)
# The program kova is copied to Helpers. It cannot be in the same folder as the agent's program (KOVA), since file names on a Mac
# usually ignore case.
set(contents $<TARGET_BUNDLE_CONTENT_DIR:kova-agent>)
add_dependencies(kova-agent kova)
add_custom_command(TARGET kova-agent POST_BUILD
  COMMAND ${CMAKE_COMMAND} -E make_directory ${contents}/Helpers
  COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:kova> ${contents}/Helpers/kova VERBATIM)
# The copies are made when the agent is linked. So the agent is linked again whenever kova or kova-ui has been linked.
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
    # A signed application loads only libraries of the same signer, so Qt is copied into kova-ui.app. The copy makes the
    # signature of the linker or of Xcode invalid, and the system ends a program with an invalid signature. So kova-ui.app is
    # signed again, before KOVA.app is signed.
    find_program(MACDEPLOYQT macdeployqt HINTS ${QT6_INSTALL_PREFIX}/bin ${qt_prefix}/bin REQUIRED)
    add_custom_command(TARGET kova-agent POST_BUILD
      COMMAND ${MACDEPLOYQT} ${helper} -verbose=1
      COMMAND ${bundle_folder}/sign ${helper} - VERBATIM)
  endif()
endif()

# Only a build with Xcode (preset "macos") extracts the titles and phrases of the intents from their source. Other generators
# compile the intents, but the system then does not find them.
if(CMAKE_GENERATOR STREQUAL Xcode)
  set(intents_default ON)
else()
  set(intents_default OFF)
endif()
option(KOVA_WITH_APP_INTENTS "Build the Mac application with its App Intents, in Swift" ${intents_default})
if(KOVA_WITH_APP_INTENTS)
  set(CMAKE_Swift_LANGUAGE_VERSION 5) # otherwise Xcode uses an older version
  enable_language(Swift)
  set_target_properties(kova-agent PROPERTIES Swift_MODULE_NAME KOVA) # a module's name cannot contain a hyphen
  target_sources(kova-agent PRIVATE ${intents})
  add_dependencies(kova-agent kova_app_intents) # required by Xcode, as both targets use the generated source
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
