#include "Services.h"

#include <cstdlib>
#include <fstream>

#include "support/FileChooser.h"
#include "support/Widgets.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex::bench {
namespace {

constexpr double patience = 20;  // seconds for a step

/// In any window.
GtkWidget* find(const std::function<bool(GtkWidget*)>& matches) {
  const gtk::GListPtr windows(gtk_window_list_toplevels());
  for (const GList* window = windows.get(); window; window = window->next) {
    auto* const top = GTK_WIDGET(window->data);
    if (matches(top)) return top;
    if (auto* const found = gtk::findBelow(top, matches)) return found;
  }
  return nullptr;
}

bool isButton(GtkWidget* widget, const std::string& mark) {
  if (!GTK_IS_BUTTON(widget) || !gtk_widget_get_mapped(widget) || gtk_widget_get_opacity(widget) < 1) return false;
  return mark == gtk_widget_get_name(widget) || g_strcmp0(gtk_button_get_label(GTK_BUTTON(widget)), mark.c_str()) == 0;
}

bool click(const std::string& mark) {
  GtkWidget* button = nullptr;
  const bool came = gtk::wait(
      [&] {
        button = find([&](GtkWidget* widget) { return isButton(widget, mark); });
        return button != nullptr;
      },
      patience);
  if (came) g_signal_emit_by_name(button, "clicked");
  return came;
}

bool pickDocument() {
  const std::string path = std::string(g_get_tmp_dir()) + "/screen-bench.txt";
  std::ofstream(path) << "a document";
  return gtk::wait([] { return gtk::openFileChooser() != nullptr; }, patience) && gtk::chooseFile(path);
}

}  // namespace

gtk::SocketServer::Handler serveChat() {
  return [page = serve("<script>window.answers = 0;"
                       "handleSelectedFiles = files => { answers += files.length; };"
                       "handleSelectedRecord = record => { answers += record.url || record.base64Str ? 1 : 0; };" +
                       post + "</script>")](const std::string& target) {
    if (target.find("upload") == std::string::npos) return page(target);
    return gtk::SocketServer::Answer{
        gtk::reply(200, R"({"url":"https://files.example/1","inputContentType":"a/b","actualContentType":"a/b"})",
                   "Content-Type: application/json\r\n")};
  };
}

bool useEveryService(const std::shared_ptr<OVKFApi>& chat) {
  setenv("ORIVEX_CAMERA_SOURCE", "videotestsrc is-live=true ! video/x-raw,width=1280,height=720,framerate=30/1", 1);
  const auto send = [&](const char* name, const std::string& body) {
    chat->webView()->evaluate("window.webkit.messageHandlers." + std::string(name) + ".postMessage(" + body + ");");
  };
  const auto answers = [&](int count) {
    bool came = false;
    return gtk::wait(
        [&] {
          bool told = false;
          chat->webView()->evaluate("if (answers < " + std::to_string(count) + ") throw 'wait';",
                                    [&](const std::optional<std::string>& error) {
                                      came = !error;
                                      told = true;
                                    });
          gtk::wait([&] { return told; }, patience);
          return came;
        },
        patience);
  };
  const std::string request = "{deviceId: 'visitor'}";
  send("initLoaded", "null");
  send("trackEvent", "{name: 'n', attributes: {n: '1'}}");
  send("openUrl", "'not an address'");
  send("openFile", "'not an address'");
  send("openDocumentPicker", request);
  if (!pickDocument() || !answers(1)) return false;
  send("openPhotoLibraryPicker", request);
  if (!click("取消")) return false;
  send("openCamera", request);
  if (!click("camera-shutter") || !click("camera-use") || !answers(2)) return false;
  send("recording", "{deviceId: 'visitor', action: 'start'}");
  gtk::pass(0.5);
  gtk::pressInDialog("允许");  // asked once in the life of a process's home
  gtk::pass(2);
  send("recording", "{deviceId: 'visitor', action: 'end'}");
  return answers(3);
}

}  // namespace orivex::bench
