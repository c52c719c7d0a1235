#include "PlatformLinux/Desktop/WidgetControlObject.h"

#include <algorithm>
#include <array>
#include <gio/gio.h>
#include <string_view>
#include <utility>
#include <vector>

#include "PlatformLinux/Desktop/WidgetControlNames.h"

namespace lanternfold {
namespace {

constexpr const char* interfaceXml = R"(<node>
  <interface name="net.quernaple.LanternfoldX.Widgets.Control">
    <method name="List"><arg name="widgets" type="s" direction="out"/></method>
    <method name="Add">
      <arg name="kind" type="s" direction="in"/>
      <arg name="family" type="s" direction="in"/>
      <arg name="adapter" type="s" direction="in"/>
      <arg name="id" type="s" direction="out"/>
    </method>
    <method name="Remove"><arg name="id" type="s" direction="in"/></method>
    <method name="Reload"><arg name="id" type="s" direction="in"/></method>
    <method name="Quit"/>
  </interface>
</node>)";

struct NodeCloser {
  void operator()(GDBusNodeInfo* node) const { g_dbus_node_info_unref(node); }
};

/// A call, which is answered once: that the host goes away, when nothing else is said.
class Call {
 public:
  explicit Call(GDBusMethodInvocation* invocation) : invocation_(invocation) {}
  Call(Call&& other) noexcept : invocation_(std::exchange(other.invocation_, nullptr)) {}
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;
  Call& operator=(Call&&) = delete;
  ~Call() {
    if (invocation_ != nullptr) refuse("the widgets are being put away");
  }

  [[nodiscard]] std::string_view method() const {
    return g_dbus_method_invocation_get_method_name(invocation_);
  }
  [[nodiscard]] std::vector<std::string> arguments() const {
    std::vector<std::string> arguments;
    GVariant* const tuple = g_dbus_method_invocation_get_parameters(invocation_);
    for (gsize index = 0; index < g_variant_n_children(tuple); ++index) {
      const char* text = nullptr;
      g_variant_get_child(tuple, index, "&s", &text);
      arguments.emplace_back(text);
    }
    return arguments;
  }

  void answer() { take(nullptr); }
  void answer(const std::string& text) { take(g_variant_new("(s)", text.c_str())); }
  void refuse(const std::string& sentence) {
    g_dbus_method_invocation_return_dbus_error(std::exchange(invocation_, nullptr),
                                               widgetControlRefusal, sentence.c_str());
  }

 private:
  void take(GVariant* result) {
    g_dbus_method_invocation_return_value(std::exchange(invocation_, nullptr), result);
  }

  GDBusMethodInvocation* invocation_;
};

void tell(Call& call, const WidgetControl::Outcome<std::string>& outcome) {
  if (outcome) {
    call.answer(*outcome);
  } else {
    call.refuse(outcome.error().sentence);
  }
}

void tell(Call& call, const WidgetControl::Outcome<void>& outcome) {
  if (outcome) {
    call.answer();
  } else {
    call.refuse(outcome.error().sentence);
  }
}

}  // namespace

class WidgetControlObject::Exported : public std::enable_shared_from_this<Exported> {
 public:
  Exported(GDBusConnection* connection, WidgetControl& control, DispatchQueue& mainQueue)
      : connection_(G_DBUS_CONNECTION(g_object_ref(connection))),
        control_(control),
        mainQueue_(mainQueue) {}
  ~Exported() { g_object_unref(connection_); }
  Exported(const Exported&) = delete;
  Exported& operator=(const Exported&) = delete;

  void begin();
  void end();

 private:
  using Weak = std::weak_ptr<Exported>;

  static void takeCall(GDBusConnection* connection, const char* sender, const char* path,
                       const char* interface, const char* method, GVariant* arguments,
                       GDBusMethodInvocation* invocation, gpointer weak);
  void perform(Call call);
  void quit(Call call);

  GDBusConnection* const connection_;
  WidgetControl& control_;
  DispatchQueue& mainQueue_;
  guint registration_ = 0;
};

void WidgetControlObject::Exported::begin() {
  static constexpr GDBusInterfaceVTable calls{
      .method_call = takeCall, .get_property = nullptr, .set_property = nullptr, .padding = {}};
  const std::unique_ptr<GDBusNodeInfo, NodeCloser> node(
      g_dbus_node_info_new_for_xml(interfaceXml, nullptr));
  registration_ = g_dbus_connection_register_object(
      connection_, widgetHostObject,
      g_dbus_node_info_lookup_interface(node.get(), widgetControlInterface), &calls,
      new Weak(weak_from_this()), [](gpointer weak) { delete static_cast<Weak*>(weak); }, nullptr);
}

void WidgetControlObject::Exported::end() {
  if (registration_ != 0) g_dbus_connection_unregister_object(connection_, registration_);
}

void WidgetControlObject::Exported::takeCall(GDBusConnection* /*connection*/,
                                             const char* /*sender*/, const char* /*path*/,
                                             const char* /*interface*/, const char* /*method*/,
                                             GVariant* /*arguments*/,
                                             GDBusMethodInvocation* invocation, gpointer weak) {
  Call call(invocation);
  const auto living = static_cast<Weak*>(weak)->lock();
  if (!living) return;
  living->mainQueue_.async([weak = living->weak_from_this(), call = std::move(call)]() mutable {
    if (const auto exported = weak.lock()) exported->perform(std::move(call));
  });
}

void WidgetControlObject::Exported::perform(Call call) {
  const std::vector<std::string> arguments = call.arguments();
  if (std::ranges::any_of(
          arguments, [](const auto& text) { return text.size() > longestWidgetControlText; })) {
    call.refuse("no name is that long");
  } else if (call.method() == "List") {
    tell(call, control_.list());
  } else if (call.method() == "Add") {
    tell(call, control_.add(arguments[0], arguments[1], arguments[2]));
  } else if (call.method() == "Remove") {
    tell(call, control_.remove(arguments[0]));
  } else if (call.method() == "Reload") {
    tell(call, control_.reload(arguments[0]));
  } else {
    quit(std::move(call));
  }
}

/// The answer is on its way before the host begins to end.
void WidgetControlObject::Exported::quit(Call call) {
  call.answer();
  g_dbus_connection_flush(
      connection_, nullptr,
      [](GObject* /*source*/, GAsyncResult* /*result*/, gpointer data) {
        const std::unique_ptr<Weak> weak(static_cast<Weak*>(data));
        const auto living = weak->lock();
        if (!living) return;
        living->mainQueue_.async([weak = living->weak_from_this()] {
          if (const auto exported = weak.lock()) (void)exported->control_.quit();
        });
      },
      new Weak(weak_from_this()));
}

WidgetControlObject::WidgetControlObject(GDBusConnection* connection, WidgetControl& control,
                                         DispatchQueue& mainQueue)
    : exported_(std::make_shared<Exported>(connection, control, mainQueue)) {
  exported_->begin();
}

WidgetControlObject::~WidgetControlObject() { exported_->end(); }

}  // namespace lanternfold
