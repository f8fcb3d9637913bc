# kissfft: the distribution's shared library natively, its source package cross-built as a static one for Windows from Linux. Gives
# the target kissfft::kissfft-float.
if(MINGW AND CMAKE_CROSSCOMPILING)
    include(DebianSource)
    velox_cross_build(kissfft -DKISSFFT_TEST=OFF -DKISSFFT_TOOLS=OFF -DKISSFFT_STATIC=ON -DKISSFFT_DATATYPE=float)
    find_package(kissfft REQUIRED COMPONENTS STATIC)
else()
    find_package(kissfft REQUIRED COMPONENTS SHARED)
endif()
