#include "ProxyLookup.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

#include "../Contained.h"
#include "../glib/GMemory.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

struct Lookup {
  GRef<GProxyResolver> resolver;
  std::string address;
  Once<void(ProxyLookup::Proxies)> completion;
  guint timer = 0;
};

// A desktop lets the proxy look the name up, in either spelling; for libcurl, that is another scheme.
std::string curlProxy(std::string_view proxy) {
  if (proxy.starts_with("direct:")) return "";
  for (const std::string_view socks : {"socks://", "socks5://"}) {
    if (proxy.starts_with(socks)) return "socks5h://" + std::string(proxy.substr(socks.size()));
  }
  return std::string(proxy);
}

// The desktop's resolver is made by the first who asks for it, and may wait for a bus: not on the main thread.
void lookUp(GTask* task, gpointer, gpointer data, GCancellable*) noexcept {
  const auto& lookup = *static_cast<Lookup*>(data);
  auto* const resolver = lookup.resolver ? lookup.resolver.get() : g_proxy_resolver_get_default();
  GError* error = nullptr;
  char** const proxies = g_proxy_resolver_lookup(resolver, lookup.address.c_str(), nullptr, &error);
  if (error) {
    g_task_return_error(task, error);
  } else {
    g_task_return_pointer(task, proxies, [](gpointer unused) { g_strfreev(static_cast<char**>(unused)); });
  }
}

gboolean timedOut(gpointer data) noexcept {
  auto& lookup = *static_cast<Lookup*>(data);
  lookup.timer = 0;
  contained([&] { std::move(lookup.completion)(std::nullopt); });
  return G_SOURCE_REMOVE;
}

void lookedUp(GObject*, GAsyncResult* result, gpointer data) noexcept {
  const std::unique_ptr<Lookup> lookup(static_cast<Lookup*>(data));
  if (lookup->timer != 0) g_source_remove(lookup->timer);
  GError* raised = nullptr;
  const GStrvPtr proxies(static_cast<char**>(g_task_propagate_pointer(G_TASK(result), &raised)));
  contained([&] {
    if (const GErrorPtr error(raised); error) log::warning(std::string("No proxy could be found: ") + error->message);
    std::vector<std::string> found;
    for (char** proxy = proxies.get(); proxy && *proxy; ++proxy) found.push_back(curlProxy(*proxy));
    std::move(lookup->completion)(std::move(found));
  });
}

}  // namespace

void ProxyLookup::find(const std::string& address, double seconds, Once<void(Proxies)> completion) const {
  // A desktop's script has no business with what the query tells of the visitor.
  auto* const lookup = new Lookup{resolver_, address.substr(0, address.find_first_of("?#")), std::move(completion)};
  lookup->timer = g_timeout_add(static_cast<guint>(std::min(seconds, 86400.0) * 1000), timedOut, lookup);
  const auto task = GRef<GTask>::adopt(g_task_new(nullptr, nullptr, lookedUp, lookup));
  g_task_set_task_data(task.get(), lookup, nullptr);
  g_task_run_in_thread(task.get(), lookUp);
}

}  // namespace orivex::gtk
