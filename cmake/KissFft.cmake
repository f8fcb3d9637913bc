# kissfft: the distribution's package natively, its source package cross-built for Windows from Linux. Gives the target
# kissfft::kissfft-float.
if(MINGW AND CMAKE_CROSSCOMPILING)
    include(DebianSource)
    velox_cross_build(kissfft -DKISSFFT_TEST=OFF -DKISSFFT_TOOLS=OFF -DKISSFFT_STATIC=ON -DKISSFFT_DATATYPE=float)
endif()
find_package(kissfft REQUIRED COMPONENTS float)
