# velox_version_resource(DLL DESCRIPTION...): gives a DLL's target the project's version, its own name and a description.
enable_language(RC)

function(velox_version_resource version_target)
    list(JOIN ARGN " " version_description)
    set(resource ${PROJECT_BINARY_DIR}/${version_target}.version.rc)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${resource} @ONLY)
    target_sources(${version_target} PRIVATE ${resource})
endfunction()
