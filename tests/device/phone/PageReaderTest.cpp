// What a screen reader finds of a page, which is another process than its window.

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ServerProcess.h"
#include "support/ScreenFixture.h"
#include "support/ScreenReader.h"
#include "web/WebKitEngine.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

class PageReader : public ScreenReader {
 public:
  using ScreenReader::Place;
  using Matches = std::function<bool(const Place&)>;

  PageReader() {
    const auto happened = [](GDBusConnection*, const char* sender, const char* path, const char*, const char*,
                             GVariant* parameters, gpointer self) {
      const GVariantPtr boxed(g_variant_get_child_value(parameters, 3));
      const GVariantPtr child(g_variant_get_variant(boxed.get()));
      static_cast<PageReader*>(self)->added_.emplace_back(Place{sender, path}, placeOf(child.get()));
    };
    additions_ =
        g_dbus_connection_signal_subscribe(connection(), nullptr, "org.a11y.atspi.Event.Object", "ChildrenChanged",
                                           nullptr, "add", G_DBUS_SIGNAL_FLAGS_NONE, happened, this, nullptr);
  }
  ~PageReader() { g_dbus_connection_signal_unsubscribe(connection(), additions_); }

  /// As the desktop does for the visitor who turns a reader on.
  static void turnOn() {
    const auto session = GRef<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    const GVariantPtr reply(g_dbus_connection_call_sync(
        session.get(), "org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
        g_variant_new("(ssv)", "org.a11y.Status", "IsEnabled", g_variant_new_boolean(TRUE)), nullptr,
        G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    EXPECT_TRUE(reply);
  }

  /// Waits until something in this process's windows matches, and does not look below that.
  std::optional<Place> waitFor(const Matches& matches) const {
    std::optional<Place> found;
    wait(
        [&] {
          found = meanwhile([&]() -> std::optional<Place> {
            for (const auto& application : applications()) {
              if (auto place = find(application, matches)) return place;
            }
            return std::nullopt;
          });
          return found.has_value();
        },
        30);
    return found;
  }
  std::optional<Place> waitForText(const std::string& text) const {
    return waitFor([&](const Place& place) { return textOf(place) == text; });
  }

  /// Whether the window's application is above it, as a reader finds out where something happens.
  bool belongsToThisApplication(Place place) const {
    return meanwhile([&] {
      const auto all = applications();
      for (int step = 0; step < 50; ++step) {
        if (std::find(all.begin(), all.end(), place) != all.end()) return true;
        place = parentOf(place);
      }
      return false;
    });
  }

  /// Asks for all that an application has, as readers do once: a page's process tells changes to those only and to who
  /// listened when it started.
  void askForAll(const std::string& application) const {
    EXPECT_TRUE(meanwhile([&] {
      return call({application, "/org/a11y/atspi/cache"}, "org.a11y.atspi.Cache", "GetItems", nullptr) != nullptr;
    }));
  }

  /// Waits until this text is added to a live region.
  bool hears(const std::string& text) {
    const auto isIt = [&](const auto& addition) {
      return isLive(addition.first) &&
             find(addition.second, [&](const Place& place) { return textOf(place) == text; }).has_value();
    };
    return wait(
        [&] {
          const auto added = std::exchange(added_, {});  // more may come meanwhile
          return meanwhile([&] { return std::any_of(added.begin(), added.end(), isIt); });
        },
        20);
  }

 private:
  static Place placeOf(GVariant* reference) {
    const char* name = nullptr;
    const char* path = nullptr;
    g_variant_get(reference, "(&s&o)", &name, &path);
    return {name, path};
  }

  std::optional<Place> find(const Place& place, const Matches& matches) const {
    if (matches(place)) return place;
    for (const auto& child : childrenOf(place)) {
      if (auto found = find(child, matches)) return found;
    }
    return std::nullopt;
  }

  std::string textOf(const Place& place) const {
    const auto reply = call(place, "org.a11y.atspi.Text", "GetText", g_variant_new("(ii)", 0, -1));
    const char* text = "";
    if (reply) g_variant_get(reply.get(), "(&s)", &text);
    return text;
  }

  bool isLive(const Place& place) const {
    const auto reply = call(place, "org.a11y.atspi.Accessible", "GetAttributes", nullptr);
    if (!reply) return false;
    const GVariantPtr attributes(g_variant_get_child_value(reply.get(), 0));
    const char* value = "";
    g_variant_lookup(attributes.get(), "container-live", "&s", &value);
    return std::string(value) == "polite";
  }

  guint additions_;
  std::vector<std::pair<Place, Place>> added_;  // to what, and what
};

using PageToAReader = ScreenFixture;

// The development server's own page, and a reader that starts while it shows.
TEST_F(PageToAReader, TheConversationIsInTheWindowAndEachAnswerIsHeard) {
  const testing::ServerProcess server({"--agent-delay", "100"});
  const auto chat = startChat(server.address());
  window()->rootViewController()->present(chat, false);
  const auto answer = [&](const std::string& part) {
    constexpr const char* last =
        "[...document.querySelectorAll('[data-testid=message-agent] .bubble')].at(-1)?.innerText";
    std::string said;
    EXPECT_TRUE(wait([&] { return (said = evaluate(*chat, last)).find(part) != std::string::npos; }, 30)) << part;
    return said;
  };
  const auto question = answer("请问");
  PageReader reader;
  PageReader::turnOn();
  const auto found = reader.waitForText(question);
  ASSERT_TRUE(found);
  EXPECT_TRUE(reader.belongsToThisApplication(*found));
  EXPECT_TRUE(reader.waitForText("小薇:")) << "who says so";

  reader.askForAll(found->first);
  evaluate(*chat,
           "document.querySelector('#message-input').value = 'Ping';"
           "document.querySelector('#composer').requestSubmit()");
  EXPECT_TRUE(reader.hears(answer("Ping")));
}

// In a page that a script puts together.
TEST_F(PageToAReader, ALiveRegionThatCameLateIsHeardAlthoughTheReaderHasNotLookedAtIt) {
  const SocketServer server(
      servePage("<div id=page></div><script>webkit.messageHandlers.initLoaded.postMessage(null);" + raise("ready") +
                "</script>"));
  PageReader reader;
  PageReader::turnOn();
  const auto chat = openChat(server.url(""));
  ASSERT_TRUE(wait([&] { return chat->loadView()->superview() == nullptr; }, 10));
  const auto isPage = [](const auto& place) { return place.second.starts_with("/org/a11y/webkit/accessible/"); };
  const auto page = reader.waitFor(isPage);
  ASSERT_TRUE(page);
  evaluate(*chat, "page.innerHTML = '<main><section aria-label=chat><div role=log id=log></div></section></main>'");
  pass(1);  // a moment later, as messages come
  evaluate(*chat, "log.innerHTML = '<p>Hello</p>'");
  EXPECT_TRUE(reader.hears("Hello"));

  // The next process of the page takes its place.
  auto& engine = dynamic_cast<WebKitEngine&>(chat->webView()->engine());
  webkit_web_view_terminate_web_process(WEBKIT_WEB_VIEW(engine.widget()));
  EXPECT_TRUE(reader.waitFor([&](const auto& place) { return isPage(place) && place != *page; }));
}

}  // namespace
}  // namespace orivex::gtk
