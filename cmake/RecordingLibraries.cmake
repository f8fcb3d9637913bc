# What the console reads recordings and hears a microphone with, for Windows from Linux: libsndfile with FLAC, but without Ogg Vorbis,
# Opus and MP3, libsamplerate, and PortAudio over Windows' waveform functions (MME) alone. Gives the targets SndFile::sndfile,
# SampleRate::samplerate and portaudio.
#
# The definitions are what the packages' own configure checks would find out about this one compiler; their config.h is empty.
include(DebianSource)
set(empty_config ${PROJECT_BINARY_DIR}/third-party/empty-config)
file(CONFIGURE OUTPUT ${empty_config}/config.h CONTENT "")

velox_debian_source(libsamplerate samplerate)
velox_third_party(samplerate ${samplerate}/include
    ${samplerate}/src/samplerate.c ${samplerate}/src/src_linear.c ${samplerate}/src/src_sinc.c ${samplerate}/src/src_zoh.c)
target_compile_definitions(samplerate PRIVATE PACKAGE="libsamplerate" VERSION="${VELOX_VERSION_libsamplerate}" HAVE_STDBOOL_H
    CPU_CLIPS_NEGATIVE=0 CPU_CLIPS_POSITIVE=0
    ENABLE_SINC_FAST_CONVERTER ENABLE_SINC_MEDIUM_CONVERTER ENABLE_SINC_BEST_CONVERTER)
add_library(SampleRate::samplerate ALIAS samplerate)

# Without the sources for one processor each.
velox_debian_source(flac flac)
set(sources bitmath bitreader bitwriter cpu crc fixed float format lpc md5 memory metadata_object stream_decoder stream_encoder
    stream_encoder_framing window)
list(TRANSFORM sources PREPEND ${flac}/src/libFLAC/)
list(TRANSFORM sources APPEND .c)
velox_third_party(flac ${flac}/include ${sources} ${flac}/src/share/win_utf8_io/win_utf8_io.c)
target_include_directories(flac PRIVATE ${flac}/src/libFLAC/include)
target_compile_definitions(flac PUBLIC FLAC__NO_DLL PRIVATE PACKAGE_VERSION="${VELOX_VERSION_flac}" FLAC__NO_ASM FLAC__HAS_OGG=0
    FLAC__CPU_X86_64 CPU_IS_BIG_ENDIAN=0 WORDS_BIGENDIAN=0 HAVE_STDINT_H HAVE_INTTYPES_H HAVE_FSEEKO HAVE_LROUND=1 HAVE_BSWAP16
    HAVE_BSWAP32 HAVE_SYS_PARAM_H)

velox_debian_source(libsndfile sndfile)
file(GLOB sources CONFIGURE_DEPENDS ${sndfile}/src/*.c ${sndfile}/src/ALAC/*.c ${sndfile}/src/G72x/*.c ${sndfile}/src/GSM610/*.c)
list(FILTER sources EXCLUDE REGEX "/(test_[a-z0-9_]+|g72x_test)\\.c$")
velox_third_party(sndfile ${sndfile}/include ${sources})
target_include_directories(sndfile PRIVATE ${sndfile}/src ${empty_config})
target_compile_definitions(sndfile PRIVATE PACKAGE="libsndfile" PACKAGE_NAME="libsndfile" VERSION="${VELOX_VERSION_libsndfile}"
    PACKAGE_VERSION="${VELOX_VERSION_libsndfile}" __USE_MINGW_ANSI_STDIO=1
    COMPILER_IS_GCC=1 OS_IS_WIN32=1 OS_IS_OPENBSD=0 USE_WINDOWS_API=1 WIN32_TARGET_DLL=0
    CPU_IS_LITTLE_ENDIAN=1 CPU_IS_BIG_ENDIAN=0 WORDS_BIGENDIAN=0 CPU_CLIPS_NEGATIVE=0 CPU_CLIPS_POSITIVE=0
    ENABLE_EXPERIMENTAL_CODE=0 HAVE_MPEG=0 HAVE_SQLITE3=0
    HAVE_DECL_S_IRGRP=1 HAVE_DIRECT_H HAVE_FSTAT=1 HAVE_GETTIMEOFDAY=1 HAVE_GMTIME HAVE_IMMINTRIN_H=1 HAVE_INTTYPES_H=1 HAVE_IO_H
    HAVE_LOCALTIME HAVE_LRINT=1 HAVE_LRINTF=1 HAVE_LSEEK=1 HAVE_OPEN=1 HAVE_READ=1 HAVE_STDBOOL_H=1 HAVE_STDINT_H=1
    HAVE_SYS_TIME_H=1 HAVE_SYS_TYPES_H=1 HAVE_UNISTD_H=1 HAVE_WRITE=1
    SIZEOF_INT64_T=8 SIZEOF_LONG=4 SIZEOF_LONG_LONG=8 SIZEOF_SSIZE_T=8 SIZEOF_WCHAR_T=2)
# libsndfile knows one switch for FLAC, Ogg Vorbis and Opus together.
set_property(SOURCE ${sndfile}/src/flac.c PROPERTY COMPILE_DEFINITIONS HAVE_EXTERNAL_XIPH_LIBS=1)
target_link_libraries(sndfile PRIVATE flac)
# They are no bottleneck: reading takes a fraction of what is done with a recording, and this half of the compile time.
target_compile_options(flac PRIVATE -O1)
target_compile_options(sndfile PRIVATE -O1)
add_library(SndFile::sndfile ALIAS sndfile)

velox_debian_source(portaudio19 portaudio19)
set(sources common/pa_allocation common/pa_converters common/pa_cpuload common/pa_debugprint common/pa_dither common/pa_front
    common/pa_process common/pa_stream os/win/pa_win_hostapis os/win/pa_win_util os/win/pa_win_waveformat hostapi/wmme/pa_win_wmme)
list(TRANSFORM sources PREPEND ${portaudio19}/src/)
list(TRANSFORM sources APPEND .c)
velox_third_party(portaudio ${portaudio19}/include ${sources})
target_include_directories(portaudio PRIVATE ${portaudio19}/src/common ${portaudio19}/src/os/win)
# The names of devices are UTF-8 with UNICODE alone.
target_compile_definitions(portaudio PRIVATE UNICODE _UNICODE PA_LITTLE_ENDIAN PA_USE_WMME=1 PA_USE_DS=0 PA_USE_WASAPI=0 PA_USE_WDMKS=0
    PA_USE_ASIO=0 PA_USE_SKELETON=0)
target_link_libraries(portaudio PUBLIC winmm)
