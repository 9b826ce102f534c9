# The Debian package that `cpack` makes in the build folder; scripts/package.sh runs it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME sealed-package-builder)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Vendrelis Packaging <packages@vendrelis.example>")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://vendrelis.example/sealed-package-builder")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "maker of protected firmware packages for VDR32 devices")
set(CPACK_PACKAGE_DESCRIPTION
"Sealed Package Builder turns firmware files, keys, nonces, option bytes and
XML templates into the encrypted and authenticated packages that a
programming tool installs on VDR32 devices. It comes with companions for the
console that show packages, change ELF files and sign images.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Libraries that are loaded by name, or only run, aren't seen by shlibdeps.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-dejavu-core")
# A module for tokens (any maker's will do), and Qt's own words in German.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "opensc-pkcs11 | softhsm2, qttranslations5-l10n")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/debian/prerm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# Addresses are random, and what links functions is read-only, in every program that is installed.
foreach(program sealed-package-builder spb-elf spb-unpack imgtool psa-adac)
    target_link_options(${program} PRIVATE -Wl,-z,relro,-z,now)
endforeach()

set(documents ${CMAKE_INSTALL_DATADIR}/doc/sealed-package-builder)
install(FILES debian/copyright DESTINATION ${documents})
# A changelog as Debian reads it, of the newest release; NEWS is the project's own.
file(READ ${CMAKE_CURRENT_SOURCE_DIR}/${SPB_APPLICATION_ID}.metainfo.xml metainfo)
string(REGEX MATCH "<release version=\"${PROJECT_VERSION}\" date=\"([0-9-]+)\"" found "${metainfo}")
execute_process(COMMAND date -u -R -d ${CMAKE_MATCH_1} OUTPUT_VARIABLE released
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
configure_file(debian/changelog.in ${CMAKE_CURRENT_BINARY_DIR}/debian/changelog @ONLY)
spb_install_compressed(${CMAKE_CURRENT_BINARY_DIR}/debian/changelog changelog ${documents})
spb_install_compressed(${CMAKE_SOURCE_DIR}/CHANGELOG.md NEWS ${documents})
install(FILES debian/lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
    RENAME sealed-package-builder)
include(CPack)
