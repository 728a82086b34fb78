#include "ScreenReader.h"

#include <algorithm>
#include <memory>

#include <gtest/gtest.h>
#include <unistd.h>

#include "MainLoop.h"

namespace orivex::gtk {
namespace {

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* registry = "org.a11y.atspi.Registry";
constexpr const char* rootPath = "/org/a11y/atspi/accessible/root";

// Kinds of what a visitor works or is told by, as the bus numbers them.
constexpr std::uint32_t controlRoles[] = {7, 11, 16, 31, 32, 42, 43, 44, 51, 55, 56, 61, 62, 79, 88, 101};

constexpr std::uint32_t filler = 20;
constexpr std::uint32_t scrollBar = 48;
constexpr std::uint32_t scrollPane = 49;

constexpr std::uint32_t focusable = 1U << 11;

GRef<GDBusConnection> connectionToBus() {
  const auto session = GRef<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  const GVariantPtr address(g_dbus_connection_call_sync(session.get(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus",
                                                        "GetAddress", nullptr, G_VARIANT_TYPE("(s)"),
                                                        G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
  const char* text = nullptr;
  g_variant_get(address.get(), "(&s)", &text);
  return GRef<GDBusConnection>::adopt(g_dbus_connection_new_for_address_sync(
      text,
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr));
}

bool isClassName(const std::string& name) {
  if (name == "GtkLabel") return false;  // without a text
  const auto has = [&](const char* prefix) { return (" " + name).find(prefix) != std::string::npos; };
  return has(" Gtk") || has(" Adw") || has(" WebKit") || has(" Orivex");
}

}  // namespace

ScreenReader::ScreenReader(Age age) : age_(age), connection_(connectionToBus()) {
  if (age == Age::recent) {
    listen("object:announcement", "Announcement", nullptr);
  } else {
    listen("object:state-changed:showing", "StateChanged", "showing");
  }
}

ScreenReader::~ScreenReader() {
  g_dbus_connection_signal_unsubscribe(connection_.get(), subscription_);
  g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
}

void ScreenReader::listen(const char* event, const char* member, const char* detail) {
  const auto said = [](GDBusConnection*, const char* sender, const char* path, const char*, const char*,
                       GVariant* parameters, gpointer self) {
    static_cast<ScreenReader*>(self)->told({sender, path}, parameters);
  };
  subscription_ = g_dbus_connection_signal_subscribe(connection_.get(), nullptr, "org.a11y.atspi.Event.Object", member,
                                                     nullptr, detail, G_DBUS_SIGNAL_FLAGS_NONE, said, this, nullptr);
  const char* const properties[] = {nullptr};
  EXPECT_TRUE(call({registry, "/org/a11y/atspi/registry"}, registry, "RegisterEvent",
                   g_variant_new("(s^ass)", event, properties, "")));
}

void ScreenReader::told(const Place& place, GVariant* parameters) {
  if (age_ == Age::old) return shown_.push_back(place);
  const GVariantPtr boxed(g_variant_get_child_value(parameters, 3));
  const GVariantPtr text(g_variant_get_variant(boxed.get()));
  heard_.emplace_back(g_variant_get_string(text.get(), nullptr));
}

std::string ScreenReader::heardUntil(const std::string& text) {
  wait(
      [&] {
        for (const auto& place : std::exchange(shown_, {})) {
          heard_.push_back(meanwhile([&] { return spokenAt(place); }));
        }
        return std::find(heard_.begin(), heard_.end(), text) != heard_.end();
      },
      20);
  std::string all;
  for (const auto& said : std::exchange(heard_, {})) all += (all.empty() ? "" : "|") + said;
  return all;
}

GVariantPtr ScreenReader::call(const Place& place, const char* interface, const char* method,
                               GVariant* arguments) const {
  return GVariantPtr(g_dbus_connection_call_sync(connection_.get(), place.first.c_str(), place.second.c_str(),
                                                 interface, method, arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, 10000,
                                                 nullptr, nullptr));
}

GVariantPtr ScreenReader::propertyOf(const Place& place, const char* name) const {
  const auto reply = call(place, "org.freedesktop.DBus.Properties", "Get", g_variant_new("(ss)", accessible, name));
  if (!reply) return nullptr;
  const GVariantPtr boxed(g_variant_get_child_value(reply.get(), 0));
  return GVariantPtr(g_variant_get_variant(boxed.get()));
}

std::string ScreenReader::textOf(const Place& place, const char* property) const {
  const auto text = propertyOf(place, property);
  return text ? g_variant_get_string(text.get(), nullptr) : "";
}

ScreenReader::Place ScreenReader::parentOf(const Place& place) const {
  const auto parent = propertyOf(place, "Parent");
  const char* application = "";
  const char* path = "";
  if (parent) g_variant_get(parent.get(), "(&s&o)", &application, &path);
  return {application, path};
}

// The name of what has come up, if it stands where a reader looks: it climbs to the desktop.
std::string ScreenReader::spokenAt(const Place& place) const {
  auto above = parentOf(place);
  for (int step = 0; step < 10 && above != Place{registry, rootPath}; ++step) above = parentOf(above);
  return above == Place{registry, rootPath} ? textOf(place) : "(nowhere)";
}

bool ScreenReader::isOurs(const std::string& name) const {
  const auto reply = call({"org.freedesktop.DBus", "/org/freedesktop/DBus"}, "org.freedesktop.DBus",
                          "GetConnectionUnixProcessID", g_variant_new("(s)", name.c_str()));
  guint32 process = 0;
  if (reply) g_variant_get(reply.get(), "(u)", &process);
  return process == static_cast<guint32>(getpid());
}

// More than one: announcements have their own.
std::vector<ScreenReader::Place> ScreenReader::applications() const {
  auto all = childrenOf({registry, rootPath});
  std::erase_if(all, [this](const Place& application) { return !isOurs(application.first); });
  return all;
}

std::vector<ScreenReader::Place> ScreenReader::childrenOf(const Place& place) const {
  std::vector<Place> children;
  const auto reply = call(place, accessible, "GetChildren", nullptr);
  if (!reply) return children;
  GVariantIter* iterator = nullptr;
  g_variant_get(reply.get(), "(a(so))", &iterator);
  const std::unique_ptr<GVariantIter, FreeWith<g_variant_iter_free>> owned(iterator);
  const char* name = nullptr;
  const char* path = nullptr;
  while (g_variant_iter_loop(iterator, "(&s&o)", &name, &path)) children.emplace_back(name, path);
  return children;
}

void ScreenReader::read(const Place& place, const Place& from, std::vector<Control>& controls) const {
  Control control{0, textOf(place), textOf(place, "Description")};
  std::uint32_t low = 0;
  const auto role = call(place, accessible, "GetRole", nullptr);
  if (role) g_variant_get(role.get(), "(u)", &control.role);
  if (const auto state = call(place, accessible, "GetState", nullptr)) {
    const GVariantPtr words(g_variant_get_child_value(state.get(), 0));
    g_variant_get_child(words.get(), 0, "u", &low);
  }
  const bool isControl =
      std::find(std::begin(controlRoles), std::end(controlRoles), control.role) != std::end(controlRoles);
  // GTK calls what has no name by its class, which readers say of all but what only holds others.
  const bool isSpoken = control.role != filler && control.role != scrollBar && isClassName(control.name);
  if (isControl || isSpoken || ((low & focusable) != 0 && control.role != scrollPane)) {
    controls.push_back(std::move(control));
  }
  // Some are found on the way up only.
  if (const auto above = parentOf(place); !above.first.empty() && above != from)
    controls.push_back({0, textOf(above), ""});
  for (const auto& child : childrenOf(place)) read(child, place, controls);
}

std::vector<ScreenReader::Control> ScreenReader::controls() const {
  std::vector<Control> found;
  // GTK shows itself on the bus some time after its first window.
  wait(
      [&] {
        found = meanwhile([this] {
          std::vector<Control> controls;
          for (const auto& application : applications()) {
            for (const auto& window : childrenOf(application)) read(window, application, controls);
          }
          return controls;
        });
        return !found.empty();
      },
      30);
  return found;
}

bool ScreenReader::finds(const std::string& part) const {
  const auto all = controls();
  return std::any_of(all.begin(), all.end(), [&](const Control& control) {
    return (control.name + "\n" + control.description).find(part) != std::string::npos;
  });
}

std::string ScreenReader::nameless() const {
  std::string found;
  for (const auto& control : controls()) {
    if (!control.name.empty() && !isClassName(control.name)) continue;
    found += "role " + std::to_string(control.role) + " \"" + control.name + "\"\n";
  }
  return found;
}

}  // namespace orivex::gtk
