#include "HostProgram/Display/ToolkitSetup.h"

#include <cstdlib>
#include <gtk/gtk.h>
#include <string>
#include <string_view>
#include <utility>

#include "HostProgram/Display/DisplayLoss.h"
#include "PlatformLinux/Desktop/WidgetControlNames.h"

namespace lanternfold {
namespace {

std::string_view fieldOf(const GLogField* fields, gsize count, std::string_view name) {
  for (gsize index = 0; index < count; ++index) {
    const GLogField& field = fields[index];
    if (name != field.key || field.value == nullptr) continue;
    const char* const text = static_cast<const char*>(field.value);
    return field.length < 0 ? std::string_view(text)
                            : std::string_view(text, static_cast<std::size_t>(field.length));
  }
  return {};
}

/// A message of the display's part of the toolkit is its last one: it ends the program then.
GLogWriterOutput writeLog(GLogLevelFlags level, const GLogField* fields, gsize count,
                          gpointer log) {
  const std::string_view domain = fieldOf(fields, count, "GLIB_DOMAIN");
  const std::string_view text = fieldOf(fields, count, "MESSAGE");
  auto& lines = **static_cast<std::shared_ptr<DiagnosticLog>*>(log);
  if ((level & (G_LOG_LEVEL_INFO | G_LOG_LEVEL_DEBUG)) != 0) return G_LOG_WRITER_HANDLED;
  if (domain == "Gdk" && (level & G_LOG_LEVEL_MESSAGE) != 0) {
    lines.line(displayGone);
  } else {
    lines.line("the desktop's library " + std::string(domain) + " says: " + std::string(text));
  }
  return G_LOG_WRITER_HANDLED;
}

const char* backendOf(WindowKind kind) { return kind == WindowKind::x11 ? "x11" : "wayland"; }

}  // namespace

void sendToolkitsLinesTo(std::shared_ptr<DiagnosticLog> log) {
  // A writer cannot be taken away again: its share of the log is never given back.
  g_log_set_writer_func(
      writeLog, std::make_unique<std::shared_ptr<DiagnosticLog>>(std::move(log)).release(),
      [](gpointer share) { delete static_cast<std::shared_ptr<DiagnosticLog>*>(share); });
}

std::expected<void, CommandFailure> setUpToolkit(WindowKind kind, const UserLanguage& language,
                                                 std::shared_ptr<DiagnosticLog> log) {
  sendToolkitsLinesTo(std::move(log));
  // Nothing here is drawn by it, and it would be tens of megabytes of drivers.
  ::setenv("GDK_GL", "disable", /*overwrite=*/0);
  // Numbers and messages keep the form that the program has given them.
  gtk_disable_setlocale();
  // What the desktop files its windows under.
  g_set_prgname(widgetHostBusName);
  gdk_set_allowed_backends(backendOf(kind));
  if (gtk_init_check(nullptr, nullptr) == FALSE) {
    return std::unexpected(
        workFailed("the display cannot be opened; check DISPLAY or WAYLAND_DISPLAY, and that this "
                   "user may use it"));
  }
  sayWhenX11IsGone();
  g_set_application_name("Lanternfold Widgets");
  gtk_widget_set_default_direction(language.isRightToLeft ? GTK_TEXT_DIR_RTL : GTK_TEXT_DIR_LTR);
  return {};
}

}  // namespace lanternfold
