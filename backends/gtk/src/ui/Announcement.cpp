#include "Announcement.h"

#if GTK_CHECK_VERSION(4, 14, 0)

namespace orivex::gtk {

void announce(GtkWidget* widget, const std::string& text) {
  gtk_accessible_announce(GTK_ACCESSIBLE(widget), text.c_str(), GTK_ACCESSIBLE_ANNOUNCEMENT_PRIORITY_MEDIUM);
}

}  // namespace orivex::gtk

#else

#include <algorithm>
#include <deque>
#include <iterator>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "../glib/AsyncCallback.h"
#include "../glib/GMemory.h"
#include "../glib/GRef.h"

#include "orivex/platform/base/Log.h"

// GTK cannot announce yet and keeps its connection to the accessibility bus to itself. So there is one more, on which
// this process looks like an application whose announcements are notifications that come up one after the other.
namespace orivex::gtk {
namespace {

constexpr const char* events = "org.a11y.atspi.Event.Object";
constexpr const char* registry = "org.a11y.atspi.Registry";
constexpr const char* rootPath = "/org/a11y/atspi/accessible/root";

constexpr const char* interface = R"xml(<node><interface name='org.a11y.atspi.Accessible'>
<property name='Name' type='s' access='read'/><property name='Description' type='s' access='read'/>
<property name='Parent' type='(so)' access='read'/><property name='ChildCount' type='i' access='read'/>
<method name='GetRole'><arg type='u' direction='out'/></method>
<method name='GetRoleName'><arg type='s' direction='out'/></method>
<method name='GetLocalizedRoleName'><arg type='s' direction='out'/></method>
<method name='GetState'><arg type='au' direction='out'/></method>
<method name='GetAttributes'><arg type='a{ss}' direction='out'/></method>
<method name='GetRelationSet'><arg type='a(ua(so))' direction='out'/></method>
<method name='GetInterfaces'><arg type='as' direction='out'/></method>
<method name='GetChildren'><arg type='a(so)' direction='out'/></method>
<method name='GetIndexInParent'><arg type='i' direction='out'/></method>
<method name='GetApplication'><arg type='(so)' direction='out'/></method>
</interface></node>)xml";

/// What the application and an announcement answer alike. The state: enabled, sensitive, showing, visible.
struct Answer {
  std::string_view name;
  const char* value;
};
constexpr Answer answers[] = {
    {"Description", "''"},
    {"ChildCount", "0"},
    {"GetState", "([uint32 0x43000100, 0],)"},
    {"GetAttributes", "(@a{ss} {},)"},
    {"GetRelationSet", "(@a(ua(so)) [],)"},
    {"GetInterfaces", "(['org.a11y.atspi.Accessible'],)"},
    {"GetChildren", "(@a(so) [],)"},
    {"GetIndexInParent", "(-1,)"},
};

struct Object {
  std::string name;
  bool isRoot;
};

GVariant* answerOf(const Object& object, std::string_view name, GDBusConnection* connection) {
  constexpr guint applicationRole = 75;
  constexpr guint notificationRole = 101;
  const auto role = [&](const char* application, const char* notification) {
    return g_variant_new("(s)", object.isRoot ? application : notification);
  };
  const auto rootOf = [](const char* application) { return g_variant_new("(so)", application, rootPath); };
  const char* const own = g_dbus_connection_get_unique_name(connection);
  if (name == "Name") return g_variant_new_string(object.name.c_str());
  if (name == "Parent") return rootOf(object.isRoot ? registry : own);
  if (name == "GetApplication") return g_variant_new("(@(so))", rootOf(own));
  if (name == "GetRole") return g_variant_new("(u)", object.isRoot ? applicationRole : notificationRole);
  if (name.ends_with("RoleName")) return role("application", "notification");
  const auto* const found = std::find_if(std::begin(answers), std::end(answers),
                                         [&](const Answer& candidate) { return candidate.name == name; });
  return found == std::end(answers) ? nullptr : g_variant_new_parsed(found->value);
}

void called(GDBusConnection* connection, const char*, const char*, const char*, const char* method, GVariant*,
            GDBusMethodInvocation* invocation, gpointer object) noexcept {
  g_dbus_method_invocation_return_value(invocation, answerOf(*static_cast<Object*>(object), method, connection));
}

GVariant* asked(GDBusConnection* connection, const char*, const char*, const char*, const char* property, GError**,
                gpointer object) noexcept {
  return answerOf(*static_cast<Object*>(object), property, connection);
}

class AccessibilityBus {
 public:
  void announce(const std::string& text) {
    if (connection_) return ask(text);
    waiting_.push_back(text);
    if (waiting_.size() == 1) findAddress();
  }

 private:
  template <class Result>
  using Finish = Result* (*)(GAsyncResult*, GError**);

  // The bus that GTK uses, which GTK has started if anybody has.
  void findAddress() {
    const auto got = asyncCallback([this](GObject* /*source*/, GAsyncResult* result) {
      GError* raised = nullptr;
      const auto session = GRef<GDBusConnection>::adopt(g_bus_get_finish(result, &raised));
      if (!session) return failed(raised);
      const auto told = asyncCallback([this](GObject* source, GAsyncResult* reply) {
        GError* refused = nullptr;
        const GVariantPtr address(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), reply, &refused));
        if (!address) return failed(refused);
        const char* text = nullptr;
        g_variant_get(address.get(), "(&s)", &text);
        connect(text);
      });
      g_dbus_connection_call(session.get(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", nullptr,
                             G_VARIANT_TYPE("(s)"), G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, told.function,
                             told.data);
    });
    g_bus_get(G_BUS_TYPE_SESSION, nullptr, got.function, got.data);
  }

  void connect(const char* address) {
    const auto connected = asyncCallback([this](GObject* /*source*/, GAsyncResult* result) {
      GError* raised = nullptr;
      connection_ = GRef<GDBusConnection>::adopt(g_dbus_connection_new_for_address_finish(result, &raised));
      if (!connection_) return failed(raised);
      add(rootPath, {g_get_prgname() ? g_get_prgname() : "", true});
      for (const auto& text : std::exchange(waiting_, {})) ask(text);
    });
    g_dbus_connection_new_for_address(address,
                                      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
                                      nullptr, nullptr, connected.function, connected.data);
  }

  void failed(GError* raised) {
    const GErrorPtr error(raised);
    log::print(std::string("Screen readers cannot be told anything: ") + error->message);
    waiting_.clear();
  }

  guint add(const char* path, Object object) {
    static const GDBusInterfaceVTable table{called, asked, nullptr, {}};
    static GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(interface, nullptr);
    const auto free = [](gpointer owned) { delete static_cast<Object*>(owned); };
    return g_dbus_connection_register_object(connection_.get(), path, node->interfaces[0], &table,
                                             std::make_unique<Object>(std::move(object)).release(), free, nullptr);
  }

  // A screen reader that is older than announcements speaks of notifications.
  void ask(const std::string& text) {
    const auto answered = asyncCallback([this, text](GObject* source, GAsyncResult* result) {
      const GVariantPtr listeners(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
      if (listeners) emit(text, knowAnnouncements(listeners.get()));
    });
    g_dbus_connection_call(connection_.get(), registry, "/org/a11y/atspi/registry", registry, "GetRegisteredEvents",
                           nullptr, G_VARIANT_TYPE("(a(ss))"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, answered.function,
                           answered.data);
  }

  static bool knowAnnouncements(GVariant* listeners) {
    GVariantIter* iterator = nullptr;
    g_variant_get(listeners, "(a(ss))", &iterator);
    const std::unique_ptr<GVariantIter, FreeWith<g_variant_iter_free> > owned(iterator);
    const char* event = nullptr;
    while (g_variant_iter_loop(iterator, "(&s&s)", nullptr, &event)) {
      if (std::string_view(event).starts_with("Object:Announcement")) return true;
    }
    return false;
  }

  // Each is an object of its own: a reader keeps what it has been told of one.
  void emit(const std::string& text, bool asAnnouncement) {
    const auto path = "/org/a11y/atspi/accessible/announcement" + std::to_string(++count_);
    shown_.push_back(add(path.c_str(), {text, false}));
    constexpr std::size_t remembered = 16;  // for readers that ask late
    if (shown_.size() > remembered) {
      g_dbus_connection_unregister_object(connection_.get(), shown_.front());
      shown_.pop_front();
    }
    constexpr int polite = 1;  // after what is being said
    GVariant* const what =
        asAnnouncement ? g_variant_new("(siiva{sv})", "", polite, 0, g_variant_new_string(text.c_str()), nullptr)
                       : g_variant_new("(siiva{sv})", "showing", 1, 0, g_variant_new_int32(0), nullptr);
    g_dbus_connection_emit_signal(connection_.get(), nullptr, path.c_str(), events,
                                  asAnnouncement ? "Announcement" : "StateChanged", what, nullptr);
  }

  GRef<GDBusConnection> connection_;  // null until the first announcement
  std::vector<std::string> waiting_;
  std::deque<guint> shown_;
  unsigned count_ = 0;
};

}  // namespace

void announce(GtkWidget* /*widget*/, const std::string& text) {
  static auto* const bus = std::make_unique<AccessibilityBus>().release();  // answers may come to the very end
  if (g_strcmp0(g_getenv("GTK_A11Y"), "none") != 0) bus->announce(text);
}

}  // namespace orivex::gtk

#endif

namespace orivex::gtk {

void focusAloud(GtkWidget* widget, const std::string& name) {
  const bool isTold = gtk_widget_get_realized(widget) != FALSE;
  gtk_widget_grab_focus(widget);
  if (!isTold) announce(GTK_WIDGET(gtk_widget_get_root(widget)), name);
}

}  // namespace orivex::gtk
