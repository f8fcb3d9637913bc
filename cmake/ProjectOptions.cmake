# What the project's own code is compiled with: warnings as errors, and the instrumentation of the preset. Third-party code does
# not link velox_project_options.
add_library(velox_project_options INTERFACE)

if(MSVC)
    # /EHs and not /EHsc: extern "C" functions of the engine may let an exception out.
    string(REPLACE "/EHsc" "/EHs" CMAKE_CXX_FLAGS "${CMAKE_CXX_FLAGS}")
    target_compile_options(velox_project_options INTERFACE /W4 /WX /permissive- /utf-8)
else()
    # The logger's interface hands formats on, and COM interfaces have no virtual destructor (-Wdelete-non-virtual-dtor, which -Wall
    # holds, stays on).
    target_compile_options(velox_project_options INTERFACE
        -Wall -Wextra -Wpedantic -Werror
        -Wcast-align -Wcast-qual -Wconversion -Wdouble-promotion -Wextra-semi -Wformat=2 -Wno-format-nonliteral
        -Wmissing-declarations -Wold-style-cast -Woverloaded-virtual -Wshadow -Wsign-conversion -Wundef -Wunused)
endif()

if(VELOX_SANITIZE)
    # The shared runtime, so that the tests' allocation double can stand in front of its operators new.
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libclang_rt.asan-x86_64.so
        OUTPUT_VARIABLE runtime OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    cmake_path(GET runtime PARENT_PATH runtime_dir)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined $<$<NOT:$<BOOL:${VELOX_FUZZ}>>:-shared-libasan> -Wl,-rpath,${runtime_dir})
endif()

if(VELOX_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(VELOX_COVERAGE)
    target_compile_options(velox_project_options INTERFACE -fprofile-instr-generate -fcoverage-mapping)
    add_link_options(-fprofile-instr-generate)
endif()

if(VELOX_CLANG_TIDY)
    find_program(CLANG_TIDY NAMES clang-tidy REQUIRED)
    set(VELOX_CLANG_TIDY_COMMAND ${CLANG_TIDY} --quiet --warnings-as-errors=*)
endif()

# Adds the options above to a target of the project; product code is checked by clang-tidy, too (tests are not: it would double
# the time of a build).
function(velox_project_target target)
    target_link_libraries(${target} PRIVATE velox_project_options)
endfunction()

function(velox_product_target target)
    velox_project_target(${target})
    if(VELOX_CLANG_TIDY)
        set_target_properties(${target} PROPERTIES CXX_CLANG_TIDY "${VELOX_CLANG_TIDY_COMMAND}")
    endif()
endfunction()
