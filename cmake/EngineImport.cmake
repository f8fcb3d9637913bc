# The import library of the keyword engine, made from its module definition: no engine is needed to build the library. Natively
# the tests bring an engine of their own.
add_library(velox_wov_sdk INTERFACE)
if(WIN32)
    set(definition ${PROJECT_SOURCE_DIR}/library/wovwrapper/VeloxWovSDK.def)
    if(MSVC)
        set(import_library ${PROJECT_BINARY_DIR}/VeloxWovSDK.lib)
        set(command ${CMAKE_AR} /nologo /machine:${CMAKE_CXX_COMPILER_ARCHITECTURE_ID} /def:${definition} /out:${import_library})
    else()
        set(import_library ${PROJECT_BINARY_DIR}/libVeloxWovSDK.dll.a)
        # Named without its folder, of which the names within it would be made.
        set(command ${CMAKE_DLLTOOL} --input-def ${definition} --output-lib libVeloxWovSDK.dll.a)
    endif()
    add_custom_command(OUTPUT ${import_library} COMMAND ${command} DEPENDS ${definition}
        WORKING_DIRECTORY ${PROJECT_BINARY_DIR} VERBATIM)
    add_custom_target(velox_wov_sdk_import DEPENDS ${import_library})
    add_dependencies(velox_wov_sdk velox_wov_sdk_import)
    target_link_libraries(velox_wov_sdk INTERFACE ${import_library})
endif()
