# Debian packages: cpack -G DEB in a build configured with
# -DCMAKE_INSTALL_PREFIX=/usr, so that the libraries go to the multiarch
# directory (scripts/check-deb.sh builds and checks them).
#
# One package holds everything installed (the runtime's and the library's
# shared libraries, the importer, the programs, headers, osg-config,
# pkg-config and CMake files): the libraries carry no soname versions yet,
# so a split runtime package could not be upgraded apart from the headers.
set(CPACK_PACKAGE_NAME liblumora-dev)
set(CPACK_PACKAGE_VENDOR "libLumora")
set(CPACK_PACKAGE_CONTACT "libLumora developers <lumora@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Deferred shading for the OpenSG 1.8 scene graph")
set(CPACK_PACKAGE_DESCRIPTION
    "libLumora adds a deferred-shading viewport to OpenSG 1.8 scene graphs, with
point, spot and directional lights, variance shadow maps and screen-space
effects. The package carries a runtime with OpenSG 1.8's API (libraries
OSGBase, OSGSystem and OSGWindowGLUT, osg-config), the library, its headers,
pkg-config and CMake files, and the lumora-render and lumora-viewer programs.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
# The shared libraries' own dependencies come from dpkg-shlibdeps; these
# are what the installed headers, CMake files and osg-config need to build
# a program.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# libepoxy opens libEGL itself, so dpkg-shlibdeps cannot see that need.
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "libegl1, libgl-dev, libegl-dev, libopengl-dev, libglu1-mesa-dev, libglut-dev | freeglut3-dev, libpng-dev")
# Mesa's software renderer, for machines without a GPU driver.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libgl1-mesa-dri, libegl-mesa0")
# The package's own libraries, which dpkg-shlibdeps finds in no other.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${CMAKE_BINARY_DIR}/opensg ${CMAKE_BINARY_DIR}/headless ${CMAKE_BINARY_DIR}/lumora)

include(CPack)
