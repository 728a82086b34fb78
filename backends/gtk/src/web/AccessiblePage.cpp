#include "AccessiblePage.h"

#if !GTK_CHECK_VERSION(4, 14, 0)

#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "../Contained.h"
#include "../glib/AsyncCallback.h"
#include "../glib/GMemory.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

constexpr int patience = 3000;  // milliseconds

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* collection = "org.a11y.atspi.Collection";
constexpr const char* pagesPath = "/org/a11y/webkit/accessible";
constexpr const char* rootPath = "/org/a11y/atspi/accessible/root";

/// The roots of linked pages, by the paths of their views. The bus's own thread reads them.
struct Links {
  std::mutex mutex;
  std::map<std::string, GVariantPtr> pages;
};

Links& links() {
  static auto* const shared = std::make_unique<Links>().release();  // questions may come to the very end
  return *shared;
}

// GTK keeps its connection to itself. In the releases before 4.14, of which none will follow, it lies behind the bus's
// address in an object that hangs on the display.
GDBusConnection* toolkitConnection() {
  struct ToolkitRoot {
    GObject object;
    const char* address;
    GDBusConnection* connection;
  };
  if (gtk_get_major_version() != 4 || gtk_get_minor_version() >= 14) return nullptr;
  const gpointer root = g_object_get_data(G_OBJECT(gdk_display_get_default()), "-gtk-atspi-root");
  if (!root) return nullptr;
  char* address = nullptr;
  g_object_get(root, "bus-address", &address, nullptr);
  const GCharPtr owned(address);
  const auto* const known = static_cast<const ToolkitRoot*>(root);
  if (g_strcmp0(known->address, address) != 0 || !G_IS_DBUS_CONNECTION(known->connection)) return nullptr;
  return known->connection;
}

// What to say in the toolkit's place; null leaves it to the toolkit.
GVariant* answer(GDBusMessage* call) {
  const std::string interface = g_dbus_message_get_interface(call) ? g_dbus_message_get_interface(call) : "";
  const std::string member = g_dbus_message_get_member(call);
  GVariant* const body = g_dbus_message_get_body(call);
  auto& [mutex, pages] = links();
  const std::lock_guard lock(mutex);
  // A reader that knows the toolkit's whole list believes that the view has no children, and never asks the view.
  if (member == "GetItems" && !pages.empty()) return g_variant_new("(a((so)(so)(so)iiassusau))", nullptr);
  const auto found = pages.find(g_dbus_message_get_path(call));
  if (found == pages.end()) return nullptr;
  GVariant* page = found->second.get();
  if (interface == accessible && member == "GetChildren") {
    return g_variant_new("(@a(so))", g_variant_new_array(nullptr, &page, 1));
  }
  if (interface == accessible && member == "GetChildAtIndex" && body &&
      g_variant_is_of_type(body, G_VARIANT_TYPE("(i)"))) {
    gint32 index = 0;
    g_variant_get(body, "(i)", &index);
    return index == 0 ? g_variant_new("(@(so))", page) : nullptr;
  }
  if (member == "Get" && body && g_variant_is_of_type(body, G_VARIANT_TYPE("(ss)"))) {
    const char* property = nullptr;
    g_variant_get(body, "(s&s)", nullptr, &property);
    if (g_str_equal(property, "ChildCount")) return g_variant_new("(v)", g_variant_new_int32(1));
  }
  return nullptr;
}

GDBusMessage* filter(GDBusConnection* bus, GDBusMessage* message, gboolean isIncoming, gpointer /*data*/) noexcept {
  if (!isIncoming || g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL) return message;
  return contained([&]() -> GDBusMessage* {
    GVariant* const body = answer(message);
    if (!body) return message;
    const auto call = GRef<GDBusMessage>::adopt(message);
    const auto reply = GRef<GDBusMessage>::adopt(g_dbus_message_new_method_reply(message));
    g_dbus_message_set_body(reply.get(), body);
    g_dbus_connection_send_message(bus, reply.get(), G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
    return nullptr;
  });
}

void filterOnce(GDBusConnection* bus) {
  constexpr const char* mark = "orivex-accessible-pages";
  if (g_object_get_data(G_OBJECT(bus), mark)) return;
  g_object_set_data(G_OBJECT(bus), mark, bus);
  g_dbus_connection_add_filter(bus, filter, nullptr, nullptr);
}

void tell(GDBusConnection* bus, const std::string& viewPath, const char* change, GVariant* page) {
  g_dbus_connection_emit_signal(bus, nullptr, viewPath.c_str(), "org.a11y.atspi.Event.Object", "ChildrenChanged",
                                g_variant_new("(siiva{sv})", change, 0, 0, page, nullptr), nullptr);
}

// What is below an object, all of it. WebKit has no object for what was never asked for, and so cannot tell when such a
// live region changes.
GVariant* everything() {
  constexpr guint32 canonicalOrder = 1;
  return g_variant_new("((aiia{ss}iaiiasib)uib)", nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0, FALSE, canonicalOrder,
                       0, TRUE);
}

void partAdded(GDBusConnection* bus, const char* page, const char* /*path*/, const char* /*interface*/,
               const char* /*signal*/, GVariant* body, gpointer /*data*/) noexcept {
  if (!g_variant_is_of_type(body, G_VARIANT_TYPE("(siiv(so))"))) return;
  const char* path = nullptr;
  const GVariantPtr wrapped(g_variant_get_child_value(body, 3));
  const GVariantPtr part(g_variant_get_variant(wrapped.get()));
  if (!g_variant_is_of_type(part.get(), G_VARIANT_TYPE("(so)"))) return;
  g_variant_get(part.get(), "(&s&o)", nullptr, &path);
  g_dbus_connection_call(bus, page, path, collection, "GetMatches", everything(), nullptr, G_DBUS_CALL_FLAGS_NONE,
                         patience, nullptr, nullptr, nullptr);
}

/// Looks for the two ends of a link on the bus. On a worker: the other processes may take their time.
class Search {
 public:
  Search(GRef<GDBusConnection> bus, GRef<GCancellable> cancellable)
      : bus_(std::move(bus)), cancellable_(std::move(cancellable)) {}

  /// The root of the page whose process has `connection` besides WebKit's own; null when there is none.
  GVariantPtr page(const std::string& connection) const {
    const auto process = processOf(connection.c_str());
    const auto names = ask("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "ListNames");
    if (!names || process == 0) return nullptr;
    GVariantIter* each = nullptr;
    g_variant_get(names.get(), "(as)", &each);
    const std::unique_ptr<GVariantIter, FreeWith<g_variant_iter_free>> owned(each);
    for (const char* name = nullptr; g_variant_iter_next(each, "&s", &name);) {
      if (name != connection && g_dbus_is_unique_name(name) && processOf(name) == process) {
        if (auto found = pageAt(name)) return found;
      }
    }
    return nullptr;
  }

  /// The path of the widget with this description below another, depth first; empty when there is none. The toolkit
  /// has no path for a widget that nobody has come across.
  std::string widget(const std::string& description, const char* parent = rootPath) const {
    const char* const toolkit = g_dbus_connection_get_unique_name(bus_.get());
    const auto reply = ask(toolkit, parent, accessible, "GetChildren");
    const GVariantPtr children(reply ? g_variant_get_child_value(reply.get(), 0) : nullptr);
    for (gsize i = 0; children && i < g_variant_n_children(children.get()); ++i) {
      const char* path = nullptr;
      g_variant_get_child(children.get(), i, "(&s&o)", nullptr, &path);
      const auto value = ask(toolkit, path, "org.freedesktop.DBus.Properties", "Get",
                             g_variant_new("(ss)", accessible, "Description"));
      if (value && description == textIn(value.get())) return path;
      if (auto found = widget(description, path); !found.empty()) return found;
    }
    return {};
  }

  /// Tells the page where it is.
  bool embed(GVariant* page, const std::string& viewPath) const {
    const char* name = nullptr;
    const char* path = nullptr;
    g_variant_get(page, "(&s&o)", &name, &path);
    if (!ask(name, path, "org.a11y.atspi.Socket", "Embedded", g_variant_new("(s)", viewPath.c_str()))) return false;
    const auto document = ask(name, path, accessible, "GetChildAtIndex", g_variant_new("(i)", 0));
    if (!document) return false;
    g_variant_get(document.get(), "((&s&o))", nullptr, &path);
    ask(name, path, collection, "GetMatches", everything());
    return true;
  }

 private:
  GVariantPtr ask(const char* name, const char* path, const char* interface, const char* method,
                  GVariant* arguments = nullptr) const {
    return GVariantPtr(g_dbus_connection_call_sync(bus_.get(), name, path, interface, method, arguments, nullptr,
                                                   G_DBUS_CALL_FLAGS_NONE, patience, cancellable_.get(), nullptr));
  }

  guint32 processOf(const char* name) const {
    const auto process = ask("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetConnectionUnixProcessID",
                             g_variant_new("(s)", name));
    guint32 id = 0;
    if (process) g_variant_get(process.get(), "(u)", &id);
    return id;
  }

  static std::string textIn(GVariant* value) {
    const GVariantPtr variant(g_variant_get_child_value(value, 0));
    const GVariantPtr text(g_variant_get_variant(variant.get()));
    return g_variant_get_string(text.get(), nullptr);
  }

  // WebKit makes the last part of the path at random.
  GVariantPtr pageAt(const char* name) const {
    const auto description = ask(name, pagesPath, "org.freedesktop.DBus.Introspectable", "Introspect");
    if (!description) return nullptr;
    const char* xml = nullptr;
    g_variant_get(description.get(), "(&s)", &xml);
    const std::unique_ptr<GDBusNodeInfo, FreeWith<g_dbus_node_info_unref>> node(
        g_dbus_node_info_new_for_xml(xml, nullptr));
    if (!node || !node->nodes || !*node->nodes) return nullptr;
    const auto path = std::string(pagesPath) + "/" + (*node->nodes)->path;
    return GVariantPtr(g_variant_ref_sink(g_variant_new("(so)", name, path.c_str())));
  }

  GRef<GDBusConnection> bus_;
  GRef<GCancellable> cancellable_;
};

}  // namespace

AccessiblePage::AccessiblePage(WebKitWebView* view, MainQueue& mainQueue)
    : view_(view), mainQueue_(mainQueue), cancellable_(GRef<GCancellable>::adopt(g_cancellable_new())) {
  signals_.add(view, "load-changed", [this](WebKitLoadEvent event) {
    if (event == WEBKIT_LOAD_FINISHED) desktop_ ? askPage() : askDesktop();
  });
  signals_.add(view, "web-process-terminated", [this] { unlink(); });
}

AccessiblePage::~AccessiblePage() {
  g_cancellable_cancel(cancellable_.get());
  unlink();
}

void AccessiblePage::askDesktop() {
  const auto answered = asyncCallback(alive_.guard([this](GObject* /*source*/, GAsyncResult* result) {
    desktop_ = GRef<GDBusProxy>::adopt(g_dbus_proxy_new_for_bus_finish(result, nullptr));
    if (!desktop_) return;
    signals_.add(desktop_.get(), "g-properties-changed", [this] { askPage(); });
    askPage();
  }));
  g_dbus_proxy_new_for_bus(G_BUS_TYPE_SESSION, G_DBUS_PROXY_FLAGS_NONE, nullptr, "org.a11y.Bus", "/org/a11y/bus",
                           "org.a11y.Status", cancellable_.get(), answered.function, answered.data);
}

void AccessiblePage::askPage() {
  const GVariantPtr isEnabled(g_dbus_proxy_get_cached_property(desktop_.get(), "IsEnabled"));
  if (!isEnabled || !g_variant_get_boolean(isEnabled.get()) || !toolkitConnection()) return;
  const auto answered = asyncCallback(alive_.guard([this](GObject* view, GAsyncResult* result) {
    const auto reply = GRef<WebKitUserMessage>::adopt(
        webkit_web_view_send_message_to_page_finish(WEBKIT_WEB_VIEW(view), result, nullptr));
    GVariant* const name = reply ? webkit_user_message_get_parameters(reply.get()) : nullptr;
    if (name && g_variant_is_of_type(name, G_VARIANT_TYPE_STRING)) link(g_variant_get_string(name, nullptr));
  }));
  webkit_web_view_send_message_to_page(view_, webkit_user_message_new("accessibility", nullptr), cancellable_.get(),
                                       answered.function, answered.data);
}

void AccessiblePage::link(const std::string& connection) {
  auto* const bus = toolkitConnection();
  if (!bus) return;
  static int ordinal = 0;
  const auto mark = "orivex-page-" + std::to_string(++ordinal);
  gtk_accessible_update_property(GTK_ACCESSIBLE(view_), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION, mark.c_str(), -1);
  auto linked = alive_.guard([this](const std::string& viewPath, GVariantPtr page) {
    gtk_accessible_reset_property(GTK_ACCESSIBLE(view_), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION);
    unlink();
    if (!page) return log::warning("A page is hidden from screen readers: it is not on the accessibility bus");
    viewPath_ = viewPath;
    auto* const toolkit = toolkitConnection();
    filterOnce(toolkit);
    GVariant* const root = page.get();
    const char* name = nullptr;
    g_variant_get(root, "(&s&o)", &name, nullptr);
    parts_ = g_dbus_connection_signal_subscribe(toolkit, name, "org.a11y.atspi.Event.Object", "ChildrenChanged",
                                                nullptr, "add", G_DBUS_SIGNAL_FLAGS_NONE, partAdded, nullptr, nullptr);
    {
      const std::lock_guard lock(links().mutex);
      links().pages[viewPath_] = std::move(page);
    }
    tell(toolkit, viewPath_, "add", root);
  });
  mainQueue_.global([&mainQueue = mainQueue_, search = Search(GRef<GDBusConnection>::share(bus), cancellable_),
                     connection, mark, linked = std::move(linked)]() mutable {
    const auto viewPath = search.widget(mark);
    auto page = viewPath.empty() ? nullptr : search.page(connection);
    if (page && !search.embed(page.get(), viewPath)) page = nullptr;
    mainQueue.async([linked = std::move(linked), viewPath, page = std::move(page)]() mutable {
      linked(viewPath, std::move(page));
    });
  });
}

void AccessiblePage::unlink() {
  if (viewPath_.empty()) return;
  const auto path = std::exchange(viewPath_, "");
  GVariantPtr page;
  {
    const std::lock_guard lock(links().mutex);
    page = std::move(links().pages.extract(path).mapped());
  }
  auto* const bus = toolkitConnection();
  if (!bus) return;
  g_dbus_connection_signal_unsubscribe(bus, parts_);
  tell(bus, path, "remove", page.get());
}

}  // namespace orivex::gtk

#endif
