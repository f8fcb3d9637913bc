# TinyXML-2: the distribution's package natively, its source package cross-built for Windows from Linux, vcpkg's under Visual
# Studio. Gives the target tinyxml2::tinyxml2.
if(MINGW AND CMAKE_CROSSCOMPILING)
    include(DebianSource)
    velox_cross_build(tinyxml2 -Dtinyxml2_BUILD_TESTING=OFF -Dtinyxml2_SHARED_LIBS=OFF)
endif()
find_package(tinyxml2 REQUIRED)
