# What `cmake --install` puts where: programs, what they read, and what makes a desktop know them.

include(GNUInstallDirs)

set(application net.quernaple.LanternfoldX.Widgets)
set(packaging "${CMAKE_SOURCE_DIR}/Packaging")

# lanternfold_install_configured(FILE FOLDER)
#   FILE is Packaging/FILE.in with @LANTERNFOLD_PROGRAMS@, the folder of the installed programs, and
#   @LANTERNFOLD_HOST@, the command that starts the host (see InstalledPrograms.cmake). FOLDER stands below the prefix; a CMake
#   expression in it is evaluated then.
function(lanternfold_install_configured file folder)
  install(CODE "
    set(folder \"\${CMAKE_INSTALL_PREFIX}\")
    cmake_path(APPEND folder \"${folder}\")
    configure_file(\"${packaging}/${file}.in\" \"${CMAKE_BINARY_DIR}/Packaging/${file}\" @ONLY)
    file(INSTALL \"${CMAKE_BINARY_DIR}/Packaging/${file}\" DESTINATION \"\${folder}\")")
endfunction()

# First of all: it may turn out that nothing can be installed there.
install(CODE "set(LANTERNFOLD_BINDIR \"${CMAKE_INSTALL_BINDIR}\")")
install(SCRIPT "${CMAKE_SOURCE_DIR}/CMake/InstalledPrograms.cmake")
install(TARGETS lanternfold-widgets lanternfold-widget-extension lanternfold-widget-host)
install(DIRECTORY Assets DESTINATION "${CMAKE_INSTALL_DATADIR}/lanternfold-widgets")

# The session.
lanternfold_install_configured(lanternfold-widgets.service "${CMAKE_INSTALL_DATADIR}/systemd/user")
lanternfold_install_configured(lanternfold-widgets-record.service
  "${CMAKE_INSTALL_DATADIR}/systemd/user")
lanternfold_install_configured(${application}.service
  "${CMAKE_INSTALL_DATADIR}/dbus-1/services")
lanternfold_install_configured(${application}.desktop "${CMAKE_INSTALL_DATADIR}/applications")
# Sessions look into /etc/xdg, whatever the prefix of what is installed for everybody.
install(CODE "
  set(configuration \"${CMAKE_INSTALL_SYSCONFDIR}\")
  if(CMAKE_INSTALL_PREFIX MATCHES \"^/usr(/local)?$\")
    set(configuration /etc)
  endif()")
lanternfold_install_configured(lanternfold-widgets-autostart.desktop
  "\${configuration}/xdg/autostart")

# What shops and menus show.
install(FILES "${packaging}/${application}.metainfo.xml"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
set(icons "${CMAKE_INSTALL_DATADIR}/icons/hicolor")
install(FILES "${packaging}/icons/${application}.svg" DESTINATION "${icons}/scalable/apps")
install(FILES "${packaging}/icons/${application}-symbolic.svg"
  DESTINATION "${icons}/symbolic/apps")
# A theme has at least this size as a picture, for those who cannot draw the other.
find_program(LANTERNFOLD_DRAW_ICON rsvg-convert REQUIRED)
set(picture "${CMAKE_BINARY_DIR}/Packaging/${application}.png")
add_custom_command(OUTPUT "${picture}"
  COMMAND "${CMAKE_COMMAND}" -E make_directory "${CMAKE_BINARY_DIR}/Packaging"
  COMMAND "${LANTERNFOLD_DRAW_ICON}" --width 48 --height 48 --output "${picture}"
    "${packaging}/icons/${application}.svg"
  DEPENDS "${packaging}/icons/${application}.svg" COMMENT "Drawing the icon" VERBATIM)
add_custom_target(Icon ALL DEPENDS "${picture}")
add_dependencies(lanternfold-widgets Icon)
install(FILES "${picture}" DESTINATION "${icons}/48x48/apps")

# The terminal.
file(GLOB manuals "${packaging}/man/*.1")
install(FILES ${manuals} DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
# Two of the shells look for a file of the command's name.
foreach(program lanternfold-widgets lanternfold-widget-host)
  install(FILES "${packaging}/completions/lanternfold-widgets.bash" RENAME ${program}
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
  install(FILES "${packaging}/completions/lanternfold-widgets.fish" RENAME ${program}.fish
    DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d")
endforeach()
install(FILES "${packaging}/completions/_lanternfold-widgets"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions")

# A package does the same by the triggers of its system. A folder that is newer than the cache of
# its icons has them read anew; the handlers of links are found in the database alone.
install(CODE "
  if(\"\$ENV{DESTDIR}\" STREQUAL \"\")
    file(TOUCH \"\${CMAKE_INSTALL_PREFIX}/${icons}\")
    find_program(LANTERNFOLD_UPDATE_DATABASE update-desktop-database)
    if(LANTERNFOLD_UPDATE_DATABASE)
      execute_process(COMMAND \"\${LANTERNFOLD_UPDATE_DATABASE}\" -q
        \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}/applications\")
    endif()
  endif()")
