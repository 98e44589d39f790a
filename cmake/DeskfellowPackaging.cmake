# What an installation holds besides the programs and data/, and the Debian package made of it.
include(GNUInstallDirs)

install(FILES "${CMAKE_SOURCE_DIR}/packaging/deskfellow.desktop" DESTINATION share/applications)
foreach(side IN ITEMS 16 22 24 32 48 64 128 256 512)
    install(FILES "${CMAKE_SOURCE_DIR}/data/icon/deskfellow-${side}.png"
        DESTINATION "share/icons/hicolor/${side}x${side}/apps" RENAME deskfellow.png)
endforeach()
install(FILES "${CMAKE_SOURCE_DIR}/data/icon/deskfellow.svg" DESTINATION share/icons/hicolor/scalable/apps)
install(FILES "${CMAKE_SOURCE_DIR}/LICENSE" "${CMAKE_SOURCE_DIR}/CHANGELOG.md" "${CMAKE_SOURCE_DIR}/README.md" "${CMAKE_SOURCE_DIR}/NOTICE"
    DESTINATION share/doc/deskfellow)

set(CPACK_PACKAGE_NAME deskfellow)
set(CPACK_PACKAGE_CONTACT "The Deskfellow authors")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Small characters on the desktop, each with one useful job")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libqt6svg6")
include(CPack)
