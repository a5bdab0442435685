# What `cmake --install` lays down, and the Debian package that holds it. To be included after all targets are known.
include(GNUInstallDirs)

set(shipped ${CMAKE_INSTALL_DATADIR}/vonta)
install(TARGETS vonta RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${CMAKE_BINARY_DIR}/data/Vonta.dat ${CMAKE_BINARY_DIR}/data/demo.vtm DESTINATION ${shipped})
install(FILES ${CMAKE_BINARY_DIR}/data/Skins/Default.vts DESTINATION ${shipped}/Skins)
install(FILES data/desktop/vonta.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES data/desktop/vonta.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
foreach(size 48 128)
    install(FILES ${CMAKE_BINARY_DIR}/data/icon/vonta-${size}.png RENAME vonta.png
            DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()
install(FILES docs/vonta.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES README.md docs/manual.md docs/scripting.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vonta)
install(DIRECTORY docs/scripts DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vonta)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vonta)
set(CPACK_PACKAGE_CONTACT "The developers of Vonta Tracker <vonta@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "music tracker with a floating-point mixer")
set(CPACK_PACKAGE_DESCRIPTION "Writes songs as numbered patterns of rows and tracks, plays them through 64 channels with
envelopes, filters, buses and effects, reads and writes XM and MOD, speaks MIDI and
renders to WAV files.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "librtmidi6, libjack-jackd2-0 | libjack-0.125")   # opened when they are there
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
include(CPack)
