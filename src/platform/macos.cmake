# The platform module of the Mac: windows, displays, keys and dialogs, in Objective-C++ with automatic reference counting.
file(GLOB macos_sources CONFIGURE_DEPENDS platform/macos/*.mm)
add_library(kova_platform_macos STATIC ${macos_sources})
target_compile_options(kova_platform_macos PUBLIC $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc> -Wunguarded-availability)
target_link_libraries(kova_platform_macos PUBLIC kova_app kova_text kova_options
  "-framework AppKit" "-framework ApplicationServices" "-framework Carbon" "-framework ColorSync" "-framework CoreGraphics"
  "-framework Foundation" "-framework ServiceManagement" "-framework UniformTypeIdentifiers")
