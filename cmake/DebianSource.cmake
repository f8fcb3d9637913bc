# Third-party libraries that the Windows target needs, built with the cross compiler from Debian's source packages.
#
# velox_cross_build(NAME CMAKE-ARGUMENTS...) builds the source package NAME, in the version that DependencyVersions.cmake pins,
# once per build folder, and puts its install tree on CMAKE_PREFIX_PATH.
include(DependencyVersions)

function(velox_cross_build name)
    set(version ${VELOX_VERSION_${name}})
    set(root ${PROJECT_BINARY_DIR}/third-party/${name}-${version})
    if(NOT EXISTS ${root}/install/.complete)
        message(STATUS "Building ${name} ${version} for Windows")
        execute_process(COMMAND ${PROJECT_SOURCE_DIR}/scripts/fetch-debian-source ${name} ${version} ${root}/source
            COMMAND_ERROR_IS_FATAL ANY)
        execute_process(
            COMMAND ${CMAKE_COMMAND} -S ${root}/source -B ${root}/build -G ${CMAKE_GENERATOR} -Wno-deprecated
                -DCMAKE_TOOLCHAIN_FILE=${CMAKE_TOOLCHAIN_FILE} -DCMAKE_BUILD_TYPE=Release
                -DCMAKE_INSTALL_PREFIX=${root}/install -DCMAKE_INSTALL_LIBDIR=lib
                -DCMAKE_INSTALL_INCLUDEDIR=include -DCMAKE_INSTALL_BINDIR=bin ${ARGN}
            COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
        execute_process(COMMAND ${CMAKE_COMMAND} --build ${root}/build --target install
            COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
        file(TOUCH ${root}/install/.complete)
    endif()
    list(APPEND CMAKE_PREFIX_PATH ${root}/install)
    list(APPEND CMAKE_FIND_ROOT_PATH ${root}/install)
    set(CMAKE_PREFIX_PATH ${CMAKE_PREFIX_PATH} PARENT_SCOPE)
    set(CMAKE_FIND_ROOT_PATH ${CMAKE_FIND_ROOT_PATH} PARENT_SCOPE)
endfunction()
