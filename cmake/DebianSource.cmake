# Third-party libraries that the Windows target needs, compiled from Debian's source packages with the project: without their own
# configure checks, which take longer than their sources do.
include(DependencyVersions)

# velox_debian_source(NAME OUT): unpacks the source package NAME, in the version that DependencyVersions.cmake pins, once per build
# folder; OUT is set to its folder.
function(velox_debian_source name out)
    set(version ${VELOX_VERSION_${name}})
    set(root ${PROJECT_BINARY_DIR}/third-party/${name}-${version})
    if(NOT EXISTS ${root}/.complete)
        execute_process(COMMAND ${PROJECT_SOURCE_DIR}/scripts/fetch-debian-source ${name} ${version} ${root}/source
            COMMAND_ERROR_IS_FATAL ANY)
        file(TOUCH ${root}/.complete)
    endif()
    set(${out} ${root}/source PARENT_SCOPE)
endfunction()

# velox_third_party(TARGET INCLUDE-FOLDER SOURCES...): a static library, compiled without warnings and debug information.
function(velox_third_party target include)
    add_library(${target} STATIC EXCLUDE_FROM_ALL ${ARGN})
    target_include_directories(${target} SYSTEM PUBLIC ${include})
    target_compile_options(${target} PRIVATE -w -g0)
    target_link_libraries(${target} PRIVATE velox_stack_protector)
endfunction()
