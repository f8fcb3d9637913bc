# VeloxHwKwsImpl.dll, its version resource and its install tree.
include(VersionResource)

add_library(VeloxHwKwsImpl SHARED)
velox_version_resource(VeloxHwKwsImpl ${PROJECT_DESCRIPTION})
target_link_libraries(VeloxHwKwsImpl PRIVATE velox_hwkws)
set_target_properties(VeloxHwKwsImpl PROPERTIES PREFIX "" EXPORT_NAME HwKwsImpl LINKER_LANGUAGE CXX)
target_include_directories(VeloxHwKwsImpl INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/library/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_compile_features(VeloxHwKwsImpl INTERFACE cxx_std_20)
add_library(Velox::HwKwsImpl ALIAS VeloxHwKwsImpl)

# A copy beside the stand-in engine, for the program and the module that lie there.
add_custom_command(TARGET VeloxHwKwsImpl POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/engine
    COMMAND ${CMAKE_COMMAND} -E copy_if_different $<TARGET_FILE:VeloxHwKwsImpl> ${PROJECT_BINARY_DIR}/engine)

if(MSVC)
    # The engine's DLL lies beside the library, wherever the host's program is: the library's own folder is searched first
    # (LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR), then the default folders, PATH and the current folder never.
    target_link_options(VeloxHwKwsImpl PRIVATE /DEPENDENTLOADFLAG:0x1100)
endif()

# The C++ runtime is shared with the caller, so that an exception may pass to it: its DLLs go beside the library.
set(VELOX_RUNTIME_DLLS)
if(MINGW)
    foreach(dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll}
            OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        if(NOT IS_ABSOLUTE ${path})
            message(FATAL_ERROR "The compiler does not find its runtime library ${dll}.")
        endif()
        file(COPY ${path} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
        list(APPEND VELOX_RUNTIME_DLLS ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${dll})
    endforeach()
endif()

include(CMakePackageConfigHelpers)
include(InstalledPrograms)
install(TARGETS VeloxHwKwsImpl EXPORT VeloxHwKwsImplTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library)
if(MSVC)
    install(FILES $<TARGET_RUNTIME_DLLS:VeloxHwKwsImpl> DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library)
    set(CMAKE_INSTALL_SYSTEM_RUNTIME_DESTINATION ${CMAKE_INSTALL_BINDIR})
    set(CMAKE_INSTALL_SYSTEM_RUNTIME_COMPONENT library)
    include(InstallRequiredSystemLibraries)
else()
    install(PROGRAMS ${VELOX_RUNTIME_DLLS} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library)
    list(TRANSFORM VELOX_RUNTIME_DLLS REPLACE ".*/" "" OUTPUT_VARIABLE runtime_names)
    velox_split_debug_information(library $<TARGET_FILE_NAME:VeloxHwKwsImpl> ${runtime_names})
endif()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/library/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT library)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/VeloxHwKwsImpl)
install(EXPORT VeloxHwKwsImplTargets NAMESPACE Velox:: FILE VeloxHwKwsImplConfig.cmake DESTINATION ${package_dir} COMPONENT library)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VeloxHwKwsImplConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VeloxHwKwsImplConfigVersion.cmake DESTINATION ${package_dir} COMPONENT library)

# The licences of the library, and of what is linked into it or lies beside it (THIRD-PARTY.md).
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/THIRD-PARTY.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT library)
if(MINGW AND CMAKE_CROSSCOMPILING)
    velox_install_licences(library tinyxml2=/usr/share/doc/libtinyxml2-dev/copyright
        gcc-runtime=/usr/share/doc/gcc-mingw-w64-x86-64-posix-runtime/copyright
        mingw-w64=/usr/share/doc/mingw-w64-x86-64-dev/copyright GPL-3=/usr/share/common-licenses/GPL-3)
endif()
