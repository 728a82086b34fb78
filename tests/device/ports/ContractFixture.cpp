#include "ContractFixture.h"

#include "glib/GMemory.h"
#include "support/FileChooser.h"
#include "support/Widgets.h"
#include "ui/GtkApplicationPort.h"

#include "orivex/gtk/Gtk.h"

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

}  // namespace

ContractFixture::ContractFixture() {
  adw_init();
  install();
}

std::string ContractFixture::serve(const contract::Site& site) {
  server_ = std::make_unique<SocketServer>([site](const std::string& target) {
    const auto found = site.find(target);
    return found == site.end() ? SocketServer::Answer{reply(404, "not found")} : answer(found->second);
  });
  return server_->url("");
}

std::string ContractFixture::refusingOrigin() {
  return SocketServer([](const std::string&) { return SocketServer::Answer{}; }).url("");
}

std::vector<std::string> ContractFixture::userAgents(const std::string& target) {
  constexpr std::string_view name = "\r\nUser-Agent: ";
  std::vector<std::string> agents;
  for (const auto& request : server_->requests()) {
    if (!request.starts_with("GET " + target + " ")) continue;
    const auto start = request.find(name) + name.size();
    agents.push_back(request.substr(start, request.find("\r\n", start) - start));
  }
  return agents;
}

const Bundle& ContractFixture::bundleWith(const std::map<std::string, std::string>& files) {
  for (const auto& [name, contents] : files) folder_.write(name, contents);
  return bundle_.emplace(folder_.path());
}

const Bundle& ContractFixture::missingBundle() {
  return bundle_.emplace(folder_.path() / "missing");
}

const UserDefaults& ContractFixture::userDefaultsWith(const contract::Settings& settings) {
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

WindowFixture::WindowFixture() : window_(GTK_WINDOW(gtk_window_new())) {
  gtk_window_set_child(window_, gtk_label_new("Shop"));
  attach(window_);
  gtk_window_present(window_);
}

WindowFixture::~WindowFixture() {
  if (window_) removeWindow();
}

void WindowFixture::pick(const std::string& path) {
  chooseFile(path);
}

void WindowFixture::cancelPicking() {
  cancelFileChooser();
}

// In the window; null without it.
GtkWidget* WindowFixture::find(const char* cssClass) {
  auto* const host = dynamic_cast<GtkApplicationPort&>(platform().application).find(window_);
  return host ? findByClass(GTK_WIDGET(host->overlay()), cssClass) : nullptr;
}

std::optional<std::string> WindowFixture::overlayStatus() {
  GtkWidget* const mask = find("orivex-mask");
  if (!mask) return std::nullopt;
  return gtk_label_get_text(GTK_LABEL(findByType(mask, GTK_TYPE_LABEL)));
}

bool WindowFixture::giveUp() {
  GtkWidget* const mask = find("orivex-mask");
  GtkWidget* const close = mask ? findByType(mask, GTK_TYPE_BUTTON) : nullptr;
  if (!close || !gtk_widget_get_visible(close)) return false;
  g_signal_emit_by_name(close, "clicked");
  return true;
}

std::optional<std::string> WindowFixture::offered() {
  GtkWidget* const bar = find("orivex-offer");
  if (!bar) return std::nullopt;
  return gtk_label_get_text(GTK_LABEL(findByType(bar, GTK_TYPE_LABEL)));
}

void WindowFixture::answerOffer(bool retries) {
  GtkWidget* const bar = find("orivex-offer");
  g_signal_emit_by_name(retries ? findByType(bar, GTK_TYPE_BUTTON) : gtk_widget_get_last_child(bar), "clicked");
}

void WindowFixture::removeWindow() {
  gtk_window_destroy(window_);
  window_ = nullptr;
}

}  // namespace orivex::gtk
