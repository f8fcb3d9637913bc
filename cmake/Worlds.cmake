# The two worlds that sources are built for: Windows, and natively Linux. A source that belongs to one of them says so in its name:
# X.windows.cpp, X.native.cpp. Every other source belongs to both.
set(VELOX_WORLD native)
set(VELOX_OTHER_WORLD windows)
if(WIN32)
    set(VELOX_WORLD windows)
    set(VELOX_OTHER_WORLD native)
endif()

# velox_sources(OUT FOLDERS...): this world's sources in the folders, relative to the current one.
function(velox_sources out)
    list(TRANSFORM ARGN APPEND /*.cpp)
    file(GLOB sources CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} ${ARGN})
    list(FILTER sources EXCLUDE REGEX "\\.${VELOX_OTHER_WORLD}\\.cpp$")
    set(${out} ${sources} PARENT_SCOPE)
endfunction()
