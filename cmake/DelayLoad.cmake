# velox_delay_load(TARGET DLL): links the DLL's target so that it is loaded at the first call and not with the program, which then
# runs without it, too.
function(velox_delay_load target dll)
    if(MSVC)
        target_link_libraries(${target} PUBLIC ${dll} delayimp)
        target_link_options(${target} PUBLIC /DELAYLOAD:$<TARGET_FILE_NAME:${dll}>)
        return()
    endif()
    set(definition ${PROJECT_BINARY_DIR}/${dll}.def)
    set(import_library ${PROJECT_BINARY_DIR}/lib${dll}.delay.a)
    target_link_options(${dll} PRIVATE LINKER:--output-def,${definition})
    add_custom_command(OUTPUT ${import_library}
        # Named without its folder, of which the names within it would be made.
        COMMAND ${CMAKE_DLLTOOL} --input-def ${definition} --dllname $<TARGET_FILE_NAME:${dll}> --output-delaylib lib${dll}.delay.a
        DEPENDS ${dll} WORKING_DIRECTORY ${PROJECT_BINARY_DIR} VERBATIM)
    add_custom_target(${dll}_delay_import DEPENDS ${import_library})
    add_dependencies(${target} ${dll}_delay_import)
    target_include_directories(${target} PUBLIC $<TARGET_PROPERTY:${dll},INTERFACE_INCLUDE_DIRECTORIES>)
    target_link_libraries(${target} PUBLIC ${import_library} delayimp)
endfunction()
