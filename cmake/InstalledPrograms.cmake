# velox_split_debug_information(COMPONENT NAMES...): of programs and DLLs that an install rule before this one puts into bin/, the debug
# information goes into a file of its own beside each, NAME.debug, where a debugger looks for it. With Visual Studio it is apart anyway.
# The time in their headers stays what the linker wrote, not that of the install. A file of the same time was split by an install before,
# which this one has left in place.
function(velox_split_debug_information component)
    if(NOT MINGW)
        return()
    endif()
    foreach(name IN LISTS ARGN)
        install(CODE "
            set(program \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/${name}\")
            set(objcopy \"${CMAKE_OBJCOPY}\" --preserve-dates)
            file(TIMESTAMP \${program} built)
            file(TIMESTAMP \${program}.debug split)
            if(NOT built STREQUAL split)
                execute_process(COMMAND \${objcopy} --only-keep-debug \${program} \${program}.debug COMMAND_ERROR_IS_FATAL ANY)
                execute_process(COMMAND \${objcopy} --strip-all --add-gnu-debuglink=\${program}.debug \${program}
                    COMMAND_ERROR_IS_FATAL ANY)
            endif()" COMPONENT ${component})
    endforeach()
endfunction()

# velox_install_licences(COMPONENT NAME=FILE...): licence texts, as Debian's packages carry them, as NAME.txt.
function(velox_install_licences component)
    foreach(licence IN LISTS ARGN)
        string(REGEX MATCH "^([^=]+)=(.+)$" licence ${licence})
        install(FILES ${CMAKE_MATCH_2} DESTINATION ${CMAKE_INSTALL_DOCDIR}/licences RENAME ${CMAKE_MATCH_1}.txt COMPONENT ${component})
    endforeach()
endfunction()
