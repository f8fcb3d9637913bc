# kissfft: the distribution's shared library natively, its source package compiled for Windows from Linux. Gives the target
# kissfft::kissfft-float.
if(MINGW AND CMAKE_CROSSCOMPILING)
    include(DebianSource)
    velox_debian_source(kissfft kissfft)
    velox_third_party(kissfft ${kissfft} ${kissfft}/kiss_fft.c ${kissfft}/kiss_fftr.c)
    target_compile_definitions(kissfft PUBLIC kiss_fft_scalar=float)
    target_compile_options(kissfft PRIVATE -ffast-math -fomit-frame-pointer)
    add_library(kissfft::kissfft-float ALIAS kissfft)
else()
    find_package(kissfft REQUIRED COMPONENTS SHARED)
endif()
