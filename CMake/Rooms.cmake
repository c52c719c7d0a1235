# The rooms of the house and what each may use, in one place. The layering test reads this file:
# an #include that is not covered by a USES list fails it.
#
# lanternfold_room(NAME [USES ROOM[/FOLDER]...] [LIBRARIES TARGET...])
#   makes a library of every .cpp below NAME/ (main.cpp apart); a room of headers only becomes an
#   interface library.

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(CLI11 REQUIRED)
pkg_check_modules(mnl REQUIRED IMPORTED_TARGET libmnl)
pkg_check_modules(udev REQUIRED IMPORTED_TARGET libudev)
pkg_check_modules(pangocairo REQUIRED IMPORTED_TARGET pangocairo)
pkg_check_modules(icu REQUIRED IMPORTED_TARGET icu-i18n icu-uc)
pkg_check_modules(glib REQUIRED IMPORTED_TARGET glib-2.0)
pkg_check_modules(fontconfig REQUIRED IMPORTED_TARGET fontconfig)
pkg_check_modules(rsvg REQUIRED IMPORTED_TARGET librsvg-2.0)
pkg_check_modules(sqlite REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(curl REQUIRED IMPORTED_TARGET libcurl)
pkg_check_modules(gio REQUIRED IMPORTED_TARGET gio-2.0)
pkg_check_modules(cairo_surfaces REQUIRED IMPORTED_TARGET cairo-pdf cairo-svg)
pkg_check_modules(png REQUIRED IMPORTED_TARGET libpng)
pkg_check_modules(gtkmm REQUIRED IMPORTED_TARGET gtkmm-3.0 gtk-layer-shell-0)
pkg_check_modules(displays REQUIRED IMPORTED_TARGET wayland-client x11 xcb)

function(lanternfold_room name)
  cmake_parse_arguments(ROOM "" "" "USES;LIBRARIES" ${ARGN})
  # ROOM/FOLDER allows the includes of one folder only; the library is the room's.
  list(TRANSFORM ROOM_USES REPLACE "/.*" "" OUTPUT_VARIABLE uses)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/${name}/*.cpp")
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  if(sources)
    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC LanternfoldFlags ${uses} PRIVATE ${ROOM_LIBRARIES})
  else()
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE LanternfoldFlags ${uses})
  endif()
endfunction()

lanternfold_room(Support LIBRARIES PkgConfig::icu)
lanternfold_room(Platform USES Support)
# NetBase suspends callers by asio, whose headers need threads.
lanternfold_room(NetBase USES Platform Support LIBRARIES Threads::Threads)
lanternfold_room(NetworkMonitor USES NetBase Platform Support
                 LIBRARIES nlohmann_json::nlohmann_json PkgConfig::glib)
lanternfold_room(EchoService USES NetBase Platform Support
                 LIBRARIES nlohmann_json::nlohmann_json Threads::Threads)
lanternfold_room(ViewTree USES Support LIBRARIES nlohmann_json::nlohmann_json)
lanternfold_room(WidgetService USES ViewTree Support LIBRARIES nlohmann_json::nlohmann_json)
lanternfold_room(NetworkWidgetVexExtension USES WidgetService ViewTree NetworkMonitor NetBase Platform Support)
lanternfold_room(WidgetHost USES NetworkWidgetVexExtension WidgetService ViewTree NetworkMonitor Platform Support
                 LIBRARIES nlohmann_json::nlohmann_json)
# Of the monitor the system's side sees the counters alone: `ConnectionMetricsReader` is a seam that
# stands beside its records.
lanternfold_room(PlatformLinux USES NetworkMonitor/Metrics Platform Support
                 LIBRARIES PkgConfig::mnl PkgConfig::udev PkgConfig::glib PkgConfig::sqlite
                           PkgConfig::curl PkgConfig::gio nlohmann_json::nlohmann_json resolv Threads::Threads)
lanternfold_room(PlatformDarwin USES Platform Support)
lanternfold_room(Rendering USES ViewTree Support
                 LIBRARIES PkgConfig::pangocairo PkgConfig::fontconfig PkgConfig::rsvg
                           PkgConfig::cairo_surfaces PkgConfig::png PkgConfig::glib
                           nlohmann_json::nlohmann_json)
lanternfold_room(Wiring USES NetworkWidgetVexExtension WidgetService ViewTree PlatformLinux
                             NetworkMonitor NetBase Platform Support
                 LIBRARIES CLI11::CLI11 PkgConfig::glib Threads::Threads)
lanternfold_room(CommandLine USES EchoService Wiring NetworkWidgetVexExtension WidgetService
                                  Rendering PlatformLinux ViewTree NetworkMonitor NetBase Platform
                                  Support
                 LIBRARIES nlohmann_json::nlohmann_json CLI11::CLI11 PkgConfig::glib
                           Threads::Threads)

target_compile_definitions(Wiring PRIVATE
  LANTERNFOLD_VERSION="${PROJECT_VERSION}"
  LANTERNFOLD_SOURCE_ASSETS="${CMAKE_SOURCE_DIR}/Assets"
  LANTERNFOLD_BUILT_TRANSLATIONS="${CMAKE_BINARY_DIR}/Translations")
lanternfold_room(ExtensionProgram USES Wiring NetworkWidgetVexExtension WidgetService PlatformLinux
                                       NetworkMonitor NetBase Platform Support
                 LIBRARIES CLI11::CLI11)
target_compile_definitions(ExtensionProgram PRIVATE LANTERNFOLD_VERSION="${PROJECT_VERSION}")
target_compile_definitions(CommandLine PRIVATE LANTERNFOLD_VERSION="${PROJECT_VERSION}")
lanternfold_room(HostProgram USES Wiring WidgetHost NetworkWidgetVexExtension WidgetService Rendering
                                  PlatformLinux ViewTree NetworkMonitor NetBase Platform Support
                 LIBRARIES CLI11::CLI11 PkgConfig::gtkmm PkgConfig::displays PkgConfig::pangocairo
                           PkgConfig::cairo_surfaces PkgConfig::glib)
target_compile_definitions(HostProgram PRIVATE LANTERNFOLD_VERSION="${PROJECT_VERSION}")

add_executable(lanternfold-widgets CommandLine/main.cpp)
target_link_libraries(lanternfold-widgets PRIVATE CommandLine)

add_executable(lanternfold-widget-extension ExtensionProgram/main.cpp)
target_link_libraries(lanternfold-widget-extension PRIVATE ExtensionProgram)

add_executable(lanternfold-widget-host HostProgram/main.cpp)
target_link_libraries(lanternfold-widget-host PRIVATE HostProgram)
# It stays resident: what no part of it calls is not even loaded.
target_link_options(lanternfold-widget-host PRIVATE -Wl,--as-needed)
