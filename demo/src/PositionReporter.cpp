#include "PositionReporter.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <sstream>
#include <string_view>

#include "orivex/platform/ui/WebView.h"

namespace orivex::demo {
namespace {

constexpr guint period = 150;  // milliseconds
constexpr char answerName[] = "demo.positions";

// Answers through the page's own tracking events, and only when something changed.
constexpr char question[] = R"((() => {
  const found = {};
  for (const element of document.querySelectorAll("[data-testid]")) {
    const box = element.getBoundingClientRect();
    if (!box.width || !box.height || element.disabled) continue;
    const { testid, command } = element.dataset;
    const base = command ? `${testid}.${command}` : testid;
    let name = base;
    for (let count = 2; name in found; ++count) name = `${base}#${count}`;
    const text = (element.value || element.innerText || "").replace(/\s+/g, " ").trim().slice(0, 160);
    found[name] = [box.x, box.y, box.width, box.height].map(Math.round).join(" ") + " " + text;
  }
  const now = JSON.stringify(found);
  if (now === window.demoPositions) return;
  window.demoPositions = now;
  window.webkit.messageHandlers.trackEvent.postMessage({ name: "demo.positions", attributes: found });
})();)";

// The page's position moved to where the page lies in the window.
std::string moved(const std::string& position, double left, double top) {
  std::istringstream reader(position);
  long x = 0;
  long y = 0;
  std::string rest;
  reader >> x >> y;
  std::getline(reader, rest);
  return std::to_string(x + std::lround(left)) + ' ' + std::to_string(y + std::lround(top)) + rest;
}

// The first field on the screen below `parent` that can be written in; null without one.
GtkEditable* entryBelow(GtkWidget* parent) {
  for (auto* child = gtk_widget_get_first_child(parent); child; child = gtk_widget_get_next_sibling(child)) {
    if (!gtk_widget_get_mapped(child)) continue;
    if (GTK_IS_EDITABLE(child)) return GTK_EDITABLE(child);
    if (auto* const entry = entryBelow(child)) return entry;
  }
  return nullptr;
}

// What a visitor reads of labels below `parent`, one after the other.
void addWords(GtkWidget* parent, std::string& words) {
  for (auto* child = gtk_widget_get_first_child(parent); child; child = gtk_widget_get_next_sibling(child)) {
    if (!gtk_widget_get_mapped(child)) continue;
    if (GTK_IS_LABEL(child)) words.append(" ").append(gtk_label_get_text(GTK_LABEL(child)));
    addWords(child, words);
  }
}

// The page can be clicked from when the placeholder, which lies above it, has faded out, to when the chat is closed.
bool canBeClicked(OVKFApi& chat) {
  return chat.isViewInWindow() && chat.isLoaded() && !chat.loadView()->superview();
}

}  // namespace

PositionReporter::PositionReporter(AdwApplicationWindow* window, std::function<std::shared_ptr<OVKFApi>()> chat)
    : window_(window), chat_(std::move(chat)) {
  const auto tick = [](gpointer self) noexcept -> gboolean {
    static_cast<PositionReporter*>(self)->update();
    return G_SOURCE_CONTINUE;
  };
  timer_ = g_timeout_add(period, tick, this);
}

PositionReporter::~PositionReporter() {
  g_source_remove(timer_);
}

bool PositionReporter::take(const ConversationEvent& event) {
  if (event.name != answerName) return false;
  if (const auto chat = chat_()) {
    // Screens fill the window's content, which the frame of the window may surround.
    graphene_rect_t content{};
    const auto window = GTK_WIDGET(window_);
    if (!gtk_widget_compute_bounds(adw_application_window_get_content(window_), window, &content)) return true;
    const auto& frame = chat->webView()->frame();
    Controls found;
    for (const auto& [name, position] : event.attributes)
      found[name] = moved(position, content.origin.x + frame.x, content.origin.y + frame.y);
    report(page_, std::move(found));
  }
  return true;
}

void PositionReporter::update() {
  Controls found;
  addNamed(GTK_WIDGET(window_), found);
  addWindows(found);
  report(shop_, std::move(found));
  const auto chat = chat_();
  if (chat && canBeClicked(*chat)) {
    chat->webView()->evaluate(question);
  } else {
    report(page_, {});
  }
}

void PositionReporter::addNamed(GtkWidget* widget, Controls& found) const {
  if (!gtk_widget_get_mapped(widget)) return;
  graphene_rect_t bounds;
  const std::string_view name = gtk_widget_get_name(widget);
  // A widget without a name of its own has its type's.
  if (name != G_OBJECT_TYPE_NAME(widget) && gtk_widget_is_sensitive(widget) && gtk_widget_get_width(widget) > 0 &&
      gtk_widget_compute_bounds(widget, GTK_WIDGET(window_), &bounds)) {
    std::ostringstream position;
    position << std::lround(bounds.origin.x) << ' ' << std::lround(bounds.origin.y) << ' '
             << std::lround(bounds.size.width) << ' ' << std::lround(bounds.size.height);
    if (GTK_IS_LABEL(widget)) position << ' ' << gtk_label_get_text(GTK_LABEL(widget));
    found.emplace(name, position.str());
  }
  for (auto* child = gtk_widget_get_first_child(widget); child; child = gtk_widget_get_next_sibling(child)) {
    addNamed(child, found);
  }
}

void PositionReporter::addWindows(Controls& found) const {
#if ADW_CHECK_VERSION(1, 5, 0)
  // Newer libraries show a question inside of the window.
  if (auto* const inside = GTK_WIDGET(adw_application_window_get_visible_dialog(window_))) {
    found["dialog"] =
        "0 0 " + std::to_string(gtk_widget_get_width(inside)) + ' ' + std::to_string(gtk_widget_get_height(inside));
  }
#endif
  std::string words = "0 0 0 0";
  auto* const windows = gtk_window_get_toplevels();
  for (guint index = 0; index < g_list_model_get_n_items(windows); ++index) {
    auto* const dialog = static_cast<GtkWidget*>(g_list_model_get_item(windows, index));
    if (gtk_widget_get_mapped(dialog)) addWords(dialog, words);
    if (dialog != GTK_WIDGET(window_) && gtk_widget_get_mapped(dialog)) {
      const char* const title = gtk_window_get_title(GTK_WINDOW(dialog));
      found["dialog"] = "0 0 " + std::to_string(gtk_widget_get_width(dialog)) + ' ' +
                        std::to_string(gtk_widget_get_height(dialog)) + ' ' + (title ? title : "");
      if (auto* const entry = entryBelow(dialog)) {
        found["dialog-entry"] = std::string("0 0 0 0 ") + gtk_editable_get_text(entry);
      }
    }
    g_object_unref(dialog);
  }
  std::replace(words.begin(), words.end(), '\n', ' ');
  found["words"] = std::move(words);
}

void PositionReporter::report(Controls& known, Controls found) {
  for (const auto& [name, position] : known)
    if (!found.contains(name)) std::cout << "hides " << name << std::endl;
  for (const auto& [name, position] : found) {
    const auto before = known.find(name);
    if (before == known.end() || before->second != position)
      std::cout << "shows " << name << ' ' << position << std::endl;
  }
  known = std::move(found);
}

}  // namespace orivex::demo
