# What is installed and where, the CMake package, and the Debian package. Included last, when all targets exist.
include(CMakePackageConfigHelpers)

set(headers "${CMAKE_INSTALL_INCLUDEDIR}/tessaro")
set(package "${CMAKE_INSTALL_LIBDIR}/cmake/Tessaro")
set(suite "${CMAKE_INSTALL_LIBDIR}/tessaro") # bundles, documents, QRN_Library, the platform, modules
set(documentation "${CMAKE_INSTALL_DATADIR}/doc/tessaro")
set(TESSARO_INSTALLED_RESOURCES "${CMAKE_INSTALL_DATADIR}/tessaro/framework")

# The programs and the platform. All paths among them are relative: the installed tree can be moved.
install(TARGETS tessaro RUNTIME)
install(TARGETS tessaro_serve LIBRARY DESTINATION "${suite}")
install(DIRECTORY samples/update-server DESTINATION "${CMAKE_INSTALL_DATADIR}/tessaro")

# The suite: the add-on and everything beside it.
install(TARGETS TessaroLibrary LIBRARY DESTINATION "${suite}/TessaroLibrary.bundle")
install(DIRECTORY "${TESSARO_BUNDLE_DIR}/TessaroLibrary.bundle/Resources"
        DESTINATION "${suite}/TessaroLibrary.bundle")
install(DIRECTORY "${TESSARO_BUNDLE_DIR}/" DESTINATION "${suite}"
        FILES_MATCHING PATTERN "*.pdf" PATTERN "*.bundle" EXCLUDE PATTERN "QRN_Library" EXCLUDE)
install(DIRECTORY samples/QRN_Library DESTINATION "${suite}")

# For developers of add-ons: headers, libraries, the CMake package, examples, documentation.
foreach(library platform framework bridge)
    set_target_properties(tessaro_${library} PROPERTIES EXPORT_NAME ${library})
endforeach()
set_target_properties(tessaro_platform PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
install(TARGETS tessaro_platform tessaro_framework tessaro_bridge EXPORT TessaroTargets
        LIBRARY DESTINATION "${suite}"
        INCLUDES DESTINATION "${headers}")
foreach(room platform foundation files settings language dialogs comm library update)
    install(DIRECTORY ${room} DESTINATION "${headers}" FILES_MATCHING PATTERN "*.h"
            PATTERN "src" EXCLUDE PATTERN "host" EXCLUDE PATTERN "*_Internal.h" EXCLUDE)
endforeach()
install(FILES addon/ACAPlib.h addon/EntryPoints.h DESTINATION "${headers}/addon")
install(DIRECTORY resources/framework/ DESTINATION "${TESSARO_INSTALLED_RESOURCES}")
install(EXPORT TessaroTargets NAMESPACE Tessaro:: DESTINATION "${package}")
configure_package_config_file(cmake/TessaroConfig.cmake.in "${CMAKE_BINARY_DIR}/TessaroConfig.cmake"
    INSTALL_DESTINATION "${package}"
    PATH_VARS TESSARO_INSTALLED_RESOURCES)
write_basic_package_version_file("${CMAKE_BINARY_DIR}/TessaroConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_BINARY_DIR}/TessaroConfig.cmake" "${CMAKE_BINARY_DIR}/TessaroConfigVersion.cmake"
              cmake/TessaroAddon.cmake cmake/addon.exports
        DESTINATION "${package}")
install(DIRECTORY examples DESTINATION "${documentation}")
install(PROGRAMS scripts/check-texts DESTINATION "${CMAKE_INSTALL_DATADIR}/tessaro/scripts")
install(DIRECTORY docs DESTINATION "${documentation}" FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.svg"
        PATTERN "manual" EXCLUDE)
install(FILES README.md CHANGELOG.md DESTINATION "${documentation}")
install(FILES cmake/copyright DESTINATION "${documentation}")

set_target_properties(tessaro PROPERTIES INSTALL_RPATH "$ORIGIN/../${suite}")
set_target_properties(tessaro_serve PROPERTIES INSTALL_RPATH "$ORIGIN")
set_target_properties(TessaroLibrary PROPERTIES INSTALL_RPATH "$ORIGIN/..")

# `cpack` in the build folder makes the package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tessaro)
set(CPACK_PACKAGE_VENDOR Kestrin)
set(CPACK_PACKAGE_CONTACT "Kestrin <support@tessaro.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Shared services and framework of the Tessaro suite")
set(CPACK_PACKAGE_DESCRIPTION
    "The library add-on of the Tessaro suite, a host to load add-ons in, the tools\n\
 of the suite, and the framework with which its add-ons are built.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS libcurl4) # opened at its first use, not linked
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS xdg-utils)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "cmake, g++, ninja-build")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
