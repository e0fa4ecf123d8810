# What `cmake --install` puts where, and the Debian package that CPack makes of it.
#
# The program and what it comes with lie in one folder, as in a build tree: the program finds all of it beside itself,
# whether it is installed, unpacked or freshly built. Only a bundle wants what is no program in a place of its own.
set(CORVANE_APP_ID example.corvane.corvane)
set(CORVANE_RELEASE_DATE 2026-11-21)
set(CORVANE_CHANGELOG_DATE "Sat, 21 Nov 2026 12:00:00 +0000")
# Four numbers, as a version resource wants them; a zero in front would be taken for the sign of an octal one.
string(REGEX REPLACE "(^|\\.)0+([0-9])" "\\1\\2" CORVANE_VERSION_NUMBERS ${PROJECT_VERSION}.0)
string(REPLACE "." "," CORVANE_VERSION_NUMBERS ${CORVANE_VERSION_NUMBERS})
set(CPACK_PACKAGE_CONTACT "The Corvane maintainers <maintainers@corvane.example>")

set(packaging ${PROJECT_SOURCE_DIR}/packaging)
set(packaged ${CMAKE_BINARY_DIR}/packaging)
add_dependencies(corvane app_icons)
# Written on every system, so that it can be looked at on any.
configure_file(${packaging}/corvane.rc.in ${packaged}/corvane.rc @ONLY)

if(APPLE)
  set(folder .)
  set(data corvane.app/Contents/Resources)
  set_target_properties(
    corvane
    PROPERTIES MACOSX_BUNDLE ON
               MACOSX_BUNDLE_BUNDLE_NAME Corvane
               MACOSX_BUNDLE_GUI_IDENTIFIER ${CORVANE_APP_ID}
               MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION}
               MACOSX_BUNDLE_BUNDLE_VERSION ${PROJECT_VERSION}
               MACOSX_BUNDLE_ICON_FILE corvane.icns)
  install(FILES ${CORVANE_ICON_FOLDER}/corvane.icns DESTINATION ${data})
elseif(WIN32)
  set(folder .)
  set(data .)
  set_target_properties(corvane PROPERTIES WIN32_EXECUTABLE ON)
  enable_language(RC)
  set_source_files_properties(${packaged}/corvane.rc PROPERTIES OBJECT_DEPENDS ${CORVANE_ICON_FOLDER}/corvane.ico)
  target_sources(corvane PRIVATE ${packaged}/corvane.rc)
else()
  set(folder lib/corvane)
  set(data lib/corvane)
endif()

install(TARGETS corvane RUNTIME DESTINATION ${folder} BUNDLE DESTINATION .)
install(FILES ${CORVANE_SAMPLES} DESTINATION ${data}/samples)
install(FILES ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/cvn2.hlp DESTINATION ${data})
configure_file(${packaging}/licenses.txt ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/licenses.txt COPYONLY)
install(FILES ${packaging}/licenses.txt DESTINATION ${data})
if(APPLE OR WIN32)
  return()
endif()

# The rest is what a Linux desktop asks for.
include(GNUInstallDirs)
configure_file(${packaging}/${CORVANE_APP_ID}.metainfo.xml.in ${packaged}/${CORVANE_APP_ID}.metainfo.xml @ONLY)
file(CREATE_LINK ../${folder}/corvane ${packaged}/corvane SYMBOLIC)
install(FILES ${packaged}/corvane DESTINATION bin)
install(FILES ${packaging}/${CORVANE_APP_ID}.desktop DESTINATION share/applications)
install(FILES ${packaged}/${CORVANE_APP_ID}.metainfo.xml DESTINATION share/metainfo)
install(FILES ${CORVANE_LOGO} DESTINATION share/icons/hicolor/scalable/apps RENAME corvane.svg)
foreach(side IN LISTS CORVANE_ICON_SIDES)
  install(FILES ${CORVANE_ICON_FOLDER}/${side}.png DESTINATION share/icons/hicolor/${side}x${side}/apps
          RENAME corvane.png)
endforeach()
find_program(GZIP gzip REQUIRED)
function(install_compressed source destination)
  get_filename_component(name ${source} NAME_WLE)
  configure_file(${source} ${packaged}/${name} @ONLY)
  execute_process(COMMAND ${GZIP} -9 -n -c ${packaged}/${name} OUTPUT_FILE ${packaged}/${name}.gz
                          COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${packaged}/${name}.gz DESTINATION ${destination})
endfunction()
install_compressed(${packaging}/corvane.1.in share/man/man1)
install_compressed(${packaging}/changelog.in share/doc/corvane)
install(FILES ${packaging}/copyright DESTINATION share/doc/corvane)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME corvane)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${packaged})
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION web)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${CORVANE_HOME_PAGE})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Loaded at run time, so that nothing in the program's file tells of it: the plug-in that draws the icons. It once came
# with the library.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-svg-plugins | libqt6svg6 (<< 6.5)")
# The first opens the help text and the web-packs that are tested; the second knows who vouches for mail servers. The
# fonts are as wide as the faces that pages are given, or as near as Debian has one: Arial, Times New Roman and Courier
# New; Verdana; Comic Sans MS; Tahoma; and the pictures that people put into text.
string(JOIN ", " CPACK_DEBIAN_PACKAGE_RECOMMENDS xdg-utils ca-certificates fonts-liberation fonts-dejavu-core
       fonts-comic-neue fonts-wine fonts-noto-color-emoji)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "page maker for people who know no HTML")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Corvane shows a web page as any viewer shows it and lets it be edited in
place: click and type, drag over a text and give it a face, a size or a
colour, add pictures, tables, links and a theme. Several pages make a
project.
.
A project goes out as HTML files, as a web-pack, which is one Windows program
that holds the whole project and opens it with a double click, or as an HTML
email with the pictures inside the message. There is a small picture editor
and an editor for the icons of web-packs.")
include(CPack)
