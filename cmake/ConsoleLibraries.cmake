# What the console is built with, both worlds: CLI11 and nlohmann-json are headers alone, fmt is compiled here, once; libsndfile and
# libsamplerate read recordings. Gives the target velox_console_libraries.
add_library(velox_console_libraries INTERFACE)

if(MSVC)
    find_package(CLI11 CONFIG REQUIRED)
    find_package(fmt CONFIG REQUIRED)
    find_package(nlohmann_json CONFIG REQUIRED)
    target_link_libraries(velox_console_libraries INTERFACE CLI11::CLI11 fmt::fmt nlohmann_json::nlohmann_json)
else()
    # The cross compiler must not see the machine's own /usr/include: the three folders are linked into one of their own.
    set(console_headers ${PROJECT_BINARY_DIR}/third-party/headers)
    file(MAKE_DIRECTORY ${console_headers})
    foreach(header CLI/CLI.hpp fmt/format.h nlohmann/json.hpp)
        cmake_path(GET header PARENT_PATH folder)
        find_path(VELOX_HEADERS_${folder} ${header} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
        file(CREATE_LINK ${VELOX_HEADERS_${folder}}/${folder} ${console_headers}/${folder} SYMBOLIC)
    endforeach()
    target_include_directories(velox_console_libraries SYSTEM INTERFACE ${console_headers})

    add_library(velox_fmt STATIC ${PROJECT_SOURCE_DIR}/cmake/fmt.cpp)
    target_include_directories(velox_fmt SYSTEM PRIVATE ${console_headers})
    target_link_libraries(velox_console_libraries INTERFACE velox_fmt)
endif()

if(WIN32)
    find_package(SampleRate REQUIRED)
    find_package(SndFile REQUIRED)
    target_link_libraries(velox_console_libraries INTERFACE SampleRate::samplerate SndFile::sndfile)
else()
    find_library(SNDFILE_LIBRARY sndfile REQUIRED)
    find_library(SAMPLERATE_LIBRARY samplerate REQUIRED)
    target_link_libraries(velox_console_libraries INTERFACE ${SNDFILE_LIBRARY} ${SAMPLERATE_LIBRARY})
endif()
