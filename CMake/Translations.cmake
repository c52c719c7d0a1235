# The message catalogues: Translations/LANGUAGE.po, compiled for the program in the build tree and for
# the installed one. A file that is added or removed is noticed by the next build.

find_package(Gettext REQUIRED)

file(GLOB translations CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/Translations/*.po")
set(catalogues)
foreach(translation IN LISTS translations)
  cmake_path(GET translation STEM language)
  set(folder "${CMAKE_BINARY_DIR}/Translations/${language}/LC_MESSAGES")
  set(catalogue "${folder}/lanternfold.mo")
  add_custom_command(OUTPUT "${catalogue}"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${folder}"
    COMMAND "${GETTEXT_MSGFMT_EXECUTABLE}" --check-format --check-domain -o "${catalogue}" "${translation}"
    DEPENDS "${translation}" COMMENT "Compiling Translations/${language}.po" VERBATIM)
  list(APPEND catalogues "${catalogue}")
  install(FILES "${catalogue}" DESTINATION "${CMAKE_INSTALL_LOCALEDIR}/${language}/LC_MESSAGES")
endforeach()
add_custom_target(Translations ALL DEPENDS ${catalogues})
add_dependencies(lanternfold-widgets Translations)
add_dependencies(lanternfold-widget-extension Translations)
