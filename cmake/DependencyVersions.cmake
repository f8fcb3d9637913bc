# The versions of what is built from Debian's source packages, each pinned here only.
set(VELOX_VERSION_tinyxml2 9.0.0+dfsg-3.1)
set(VELOX_VERSION_kissfft 131.1.0-4.1~deb12u1)
set(VELOX_VERSION_libsamplerate 0.2.2-3)
set(VELOX_VERSION_libsndfile 1.2.0-1+deb12u1)
set(VELOX_VERSION_flac 1.4.2+ds-2)
set(VELOX_VERSION_portaudio19 19.6.0-1.2)
