# What the project's own code is compiled with: warnings, and the instrumentation of the preset. Third-party code does not link
# velox_project_options.
add_library(velox_project_options INTERFACE)

if(MSVC)
    # /EHs and not /EHsc: extern "C" functions of the engine may let an exception out.
    string(REPLACE "/EHsc" "/EHs" CMAKE_CXX_FLAGS "${CMAKE_CXX_FLAGS}")
    target_compile_options(velox_project_options INTERFACE /W4 /permissive- /utf-8)
    # Indirect calls only go where a function begins, and returns only to where a call came from (x64; ARM64 has other means).
    target_compile_options(velox_project_options INTERFACE /guard:cf)
    add_link_options(/guard:cf $<$<STREQUAL:${CMAKE_CXX_COMPILER_ARCHITECTURE_ID},x64>:/CETCOMPAT>)
else()
    # The logger's interface hands formats on, and COM interfaces have no virtual destructor (-Wdelete-non-virtual-dtor, which -Wall
    # holds, stays on).
    target_compile_options(velox_project_options INTERFACE
        -Wall -Wextra -Wpedantic
        -Wcast-align -Wcast-qual -Wconversion -Wdouble-promotion -Wextra-semi -Wformat=2 -Wno-format-nonliteral
        -Wmissing-declarations -Wold-style-cast -Woverloaded-virtual -Wshadow -Wsign-conversion -Wundef -Wunused)
endif()

# GCC counts on the registers that a function leaves alone, also for an inline function of which the linker takes another file's copy;
# only for Windows, where its copies are no weak symbols. Where that one was compiled in another way, numbers were printed wrong.
if(MINGW)
    add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fno-ipa-ra>)
endif()

# Errors in the project's checks, not for a user whose compiler knows other warnings.
if(VELOX_WARNINGS_AS_ERRORS)
    target_compile_options(velox_project_options INTERFACE $<IF:$<CXX_COMPILER_ID:MSVC>,/WX,-Werror>)
endif()

if(VELOX_SANITIZE)
    # The shared runtime, so that the tests' allocation double can stand in front of its operators new.
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libclang_rt.asan-x86_64.so
        OUTPUT_VARIABLE runtime OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    cmake_path(GET runtime PARENT_PATH runtime_dir)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined $<$<NOT:$<BOOL:${VELOX_FUZZ}>>:-shared-libasan> -Wl,-rpath,${runtime_dir})
endif()

if(VELOX_SANITIZE_THREADS)
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
endif()

if(VELOX_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(VELOX_COVERAGE)
    target_compile_options(velox_project_options INTERFACE -fprofile-instr-generate -fcoverage-mapping -fcoverage-mcdc)
    add_link_options(-fprofile-instr-generate)
endif()

# The same sources give the same programs, whenever and wherever they are built: paths begin at the project's folder. Of two that fit,
# the compiler takes the later one.
if(MINGW)
    add_link_options(LINKER:--no-insert-timestamp)
    add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}=velox -ffile-prefix-map=${PROJECT_BINARY_DIR}=velox/build)
endif()

include(StackProtector)
target_link_libraries(velox_project_options INTERFACE velox_stack_protector)

# Adds the options above to a target of the project.
function(velox_project_target target)
    target_link_libraries(${target} PRIVATE velox_project_options)
endfunction()
