# The versions of what is built from Debian's source packages, each pinned here only.
set(VELOX_VERSION_tinyxml2 9.0.0+dfsg-3.1)
set(VELOX_VERSION_kissfft 131.1.0-4.1~deb12u1)
