# TinyXML-2: the distribution's package natively, its source package compiled for Windows from Linux, vcpkg's under Visual Studio.
# Gives the target tinyxml2::tinyxml2.
if(MINGW AND CMAKE_CROSSCOMPILING)
    include(DebianSource)
    velox_debian_source(tinyxml2 tinyxml2)
    velox_third_party(tinyxml2 ${tinyxml2} ${tinyxml2}/tinyxml2.cpp)
    add_library(tinyxml2::tinyxml2 ALIAS tinyxml2)
else()
    find_package(tinyxml2 REQUIRED)
endif()
