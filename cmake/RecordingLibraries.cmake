# What the console and the example host read recordings with, for Windows: libsndfile, without the codecs of other libraries, and
# libsamplerate. The library needs neither.
include(DebianSource)
velox_cross_build(libsamplerate -DBUILD_SHARED_LIBS=OFF -DBUILD_TESTING=OFF -DLIBSAMPLERATE_EXAMPLES=OFF)
velox_cross_build(libsndfile -DBUILD_SHARED_LIBS=OFF -DBUILD_TESTING=OFF -DBUILD_PROGRAMS=OFF -DBUILD_EXAMPLES=OFF
    -DENABLE_EXTERNAL_LIBS=OFF -DENABLE_MPEG=OFF)
