# Runs while the project is installed: where the programs stand, which is known no sooner.
# CMake/Install.cmake sets LANTERNFOLD_BINDIR and reads LANTERNFOLD_PROGRAMS and LANTERNFOLD_HOST.

set(LANTERNFOLD_PROGRAMS "${CMAKE_INSTALL_PREFIX}")
cmake_path(ABSOLUTE_PATH LANTERNFOLD_PROGRAMS NORMALIZE)
cmake_path(APPEND LANTERNFOLD_PROGRAMS "${LANTERNFOLD_BINDIR}")
# Units, desktop files and the bus give these characters a meaning, each another one.
if(LANTERNFOLD_PROGRAMS MATCHES "[\"\\$`%;]")
  message(FATAL_ERROR "Nothing was installed: no unit and no desktop file can name a program in "
                      "${LANTERNFOLD_PROGRAMS}; choose another --prefix, without \" \\ $ ` % and ;")
endif()

# Quotes only where they are needed: xdg-open, for one, does not know them.
set(LANTERNFOLD_HOST "${LANTERNFOLD_PROGRAMS}/lanternfold-widget-host")
if(LANTERNFOLD_HOST MATCHES "[^-A-Za-z0-9_./+,:=@]")
  set(LANTERNFOLD_HOST "\"${LANTERNFOLD_HOST}\"")
endif()
