# velox_stack_protector: with it, functions that hold arrays check before they return that these did not overflow. For Windows from Linux;
# Visual Studio does so by itself (/GS).
add_library(velox_stack_protector INTERFACE)
if(MINGW)
    add_library(velox_stack_guard STATIC ${PROJECT_SOURCE_DIR}/cmake/StackProtector.cpp)
    target_compile_options(velox_stack_guard PRIVATE -fno-stack-protector)
    target_compile_options(velox_stack_protector INTERFACE -fstack-protector-strong)
    target_link_libraries(velox_stack_protector INTERFACE velox_stack_guard)
endif()
