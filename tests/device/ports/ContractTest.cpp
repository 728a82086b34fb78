#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Bundles.h"
#include "KeyFileUserDefaults.h"
#include "contract/DocumentPickerContract.h"
#include "contract/HttpClientContract.h"
#include "contract/ProgressOverlayContract.h"
#include "contract/StoredDataContract.h"
#include "contract/TimeContract.h"
#include "contract/TypeRegistryContract.h"
#include "contract/UserScriptContract.h"
#include "contract/WebEngineContract.h"
#include "contract/WebsiteDataContract.h"
#include "glib/GMemory.h"
#include "support/FileChooser.h"
#include "support/MainLoop.h"
#include "support/SocketServer.h"
#include "support/TemporaryFolder.h"
#include "support/Widgets.h"
#include "ui/GtkApplicationPort.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/platform/Platform.h"

namespace orivex::gtk {
namespace {

SocketServer::Answer answer(const contract::ServedReply& served) {
  if (served.silent) return {"", SocketServer::Then::silence};
  if (served.endless) return {"HTTP/1.1 200 OK\r\n\r\nx", SocketServer::Then::silence};
  std::string headers = "Content-Type: text/html; charset=utf-8\r\n";
  if (!served.location.empty()) headers += "Location: " + served.location + "\r\n";
  if (!served.cookie.empty()) headers += "Set-Cookie: " + served.cookie + "; Max-Age=3600\r\n";
  return {reply(served.status, served.body, headers)};
}

/// The real device as the contract suites see it, with a server on real sockets.
class ContractFixture {
 public:
  ContractFixture() {
    adw_init();
    install();
  }

  const Platform& platform() const { return Platform::current(); }
  bool wait(const std::function<bool()>& condition, double seconds) { return gtk::wait(condition, seconds); }

  std::string serve(const contract::Site& site) {
    server_ = std::make_unique<SocketServer>([site](const std::string& target) {
      const auto found = site.find(target);
      return found == site.end() ? SocketServer::Answer{reply(404, "not found")} : answer(found->second);
    });
    return server_->url("");
  }
  std::string refusingOrigin() {
    return SocketServer([](const std::string&) { return SocketServer::Answer{}; }).url("");
  }
  std::vector<std::string> userAgents(const std::string& target) {
    constexpr std::string_view name = "\r\nUser-Agent: ";
    std::vector<std::string> agents;
    for (const auto& request : server_->requests()) {
      if (!request.starts_with("GET " + target + " ")) continue;
      const auto start = request.find(name) + name.size();
      agents.push_back(request.substr(start, request.find("\r\n", start) - start));
    }
    return agents;
  }
  std::string localPage() { return folder_.write("local.html", "<p>local"); }

  const Bundle& bundleWith(const std::map<std::string, std::string>& files) {
    for (const auto& [name, contents] : files) folder_.write(name, contents);
    return bundle_.emplace(folder_.path());
  }
  const Bundle& missingBundle() { return bundle_.emplace(folder_.path() / "missing"); }
  const UserDefaults& userDefaultsWith(const contract::Settings& settings) {
    const GKeyFilePtr file(g_key_file_new());
    for (const auto& [key, value] : settings) {
      if (const bool* flag = std::get_if<bool>(&value)) {
        g_key_file_set_boolean(file.get(), "Defaults", key.c_str(), *flag);
      } else {
        g_key_file_set_string(file.get(), "Defaults", key.c_str(), std::get<std::string>(value).c_str());
      }
    }
    const GCharPtr contents(g_key_file_to_data(file.get(), nullptr, nullptr));
    return defaults_.emplace(folder_.write("defaults.ini", contents.get()));
  }
  std::string file(const std::string& name) { return folder_.write(name, "x"); }
  std::string lostFile(const std::string& name) { return folder_.path() / "lost" / name; }

 private:
  TemporaryFolder folder_;
  std::unique_ptr<SocketServer> server_;
  std::optional<FolderBundle> bundle_;
  std::optional<KeyFileUserDefaults> defaults_;
};

/// The same with a window on the screen.
class WindowFixture : public ContractFixture {
 public:
  WindowFixture() : window_(GTK_WINDOW(gtk_window_new())) {
    gtk_window_set_child(window_, gtk_label_new("Shop"));
    attach(window_);
    gtk_window_present(window_);
  }
  WindowFixture(const WindowFixture&) = delete;
  WindowFixture& operator=(const WindowFixture&) = delete;
  ~WindowFixture() {
    if (window_) removeWindow();
  }

  void pick(const std::string& path) { chooseFile(path); }
  void cancelPicking() { cancelFileChooser(); }
  std::optional<std::string> overlayStatus() {
    GtkWidget* const mask = find("orivex-mask");
    if (!mask) return std::nullopt;
    return gtk_label_get_text(GTK_LABEL(findByType(mask, GTK_TYPE_LABEL)));
  }
  bool cancel() {
    GtkWidget* const mask = find("orivex-mask");
    GtkWidget* const close = mask ? findByType(mask, GTK_TYPE_BUTTON) : nullptr;
    if (!close || !gtk_widget_get_visible(close)) return false;
    g_signal_emit_by_name(close, "clicked");
    return true;
  }
  std::optional<std::string> offered() {
    GtkWidget* const bar = find("orivex-offer");
    if (!bar) return std::nullopt;
    return gtk_label_get_text(GTK_LABEL(findByType(bar, GTK_TYPE_LABEL)));
  }
  void answerOffer(bool retries) {
    GtkWidget* const bar = find("orivex-offer");
    g_signal_emit_by_name(retries ? findByType(bar, GTK_TYPE_BUTTON) : gtk_widget_get_last_child(bar), "clicked");
  }
  void removeWindow() {
    gtk_window_destroy(window_);
    window_ = nullptr;
  }

 private:
  /// In the window; null without it.
  GtkWidget* find(const char* cssClass) {
    auto* const host = dynamic_cast<GtkApplicationPort&>(platform().application).find(window_);
    return host ? findByClass(GTK_WIDGET(host->overlay()), cssClass) : nullptr;
  }

  GtkWindow* window_;
};

}  // namespace
}  // namespace orivex::gtk

namespace orivex::contract {

using gtk::ContractFixture;
using gtk::WindowFixture;

INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, MainQueueContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, AnimatorContract, WindowFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, HttpClientContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, BundleContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, UserDefaultsContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, DeviceContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, FileManagerContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, TypeRegistryContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, DocumentPickerContract, WindowFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, ProgressOverlayContract, WindowFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, WebEngineContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, UserScriptContract, ContractFixture);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, WebsiteDataContract, ContractFixture);

}  // namespace orivex::contract
