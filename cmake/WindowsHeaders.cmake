# The Windows SDK: the platform's own on Windows; natively the headers that Wine ships, so that the same sources compile for the
# sanitizers and the platform's functions can be doubled.
add_library(velox_windows_headers INTERFACE)
target_compile_definitions(velox_windows_headers INTERFACE NOMINMAX UNICODE _UNICODE)

if(WIN32)
    target_compile_definitions(velox_windows_headers INTERFACE _WIN32_WINNT=0x0A00 WINVER=0x0A00)
    target_link_libraries(velox_windows_headers INTERFACE advapi32 mfplat ole32)
else()
    find_path(WINE_WINDOWS_HEADERS windows.h PATH_SUFFIXES wine/wine/windows wine/windows REQUIRED)
    target_include_directories(velox_windows_headers SYSTEM INTERFACE ${WINE_WINDOWS_HEADERS})
    target_compile_definitions(velox_windows_headers INTERFACE WINE_UNICODE_NATIVE)
    # rpcndr.h would define an object for every GUID in every file; it keeps a macro that is there already.
    target_compile_options(velox_windows_headers INTERFACE -fshort-wchar
        -include ${PROJECT_SOURCE_DIR}/cmake/DeclareGuids.h)
endif()
