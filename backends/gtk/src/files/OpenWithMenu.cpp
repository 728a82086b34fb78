#include "OpenWithMenu.h"

#include <string>
#include <string_view>
#include <utility>

#include "../Sandbox.h"
#include "../glib/GMemory.h"
#include "../ui/GtkApplicationPort.h"
#include "../ui/StyleSheet.h"
#include "Applications.h"
#include "OpenPortal.h"

#include "orivex/platform/ui/View.h"

namespace orivex::gtk {
namespace {

constexpr const char* title = "用其他应用打开";

// Points.
constexpr int margin = 16;
constexpr int iconSize = 40;

constexpr const char* css = R"css(
.orivex-open-with .title { font-weight: bold; font-size: 115%; }
.orivex-applications { background-color: transparent; }
.orivex-applications row { border-radius: 12px; padding: 8px 12px; }
.orivex-open-with button { min-height: 44px; border-radius: 12px; }
)css";

// The last part of the path, as its author wrote it; nothing for an address that ends in a slash.
std::string nameOf(const Url& file) {
  std::string_view path = file.absoluteString();
  path = path.substr(0, path.find_first_of("?#"));
  const std::string name(path.substr(path.rfind('/') + 1));
  const GCharPtr decoded(g_uri_unescape_string(name.c_str(), nullptr));
  return decoded && g_utf8_validate(decoded.get(), -1, nullptr) ? decoded.get() : name;
}

GtkWidget* headingNew(const Url& file) {
  GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 2);
  GtkWidget* const heading = gtk_label_new(title);
  gtk_widget_add_css_class(heading, "title");
  gtk_box_append(GTK_BOX(box), heading);
  if (const auto name = nameOf(file); !name.empty()) {
    GtkWidget* const label = gtk_label_new(name.c_str());
    gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_MIDDLE);
    gtk_widget_add_css_class(label, "dim-label");
    gtk_box_append(GTK_BOX(box), label);
  }
  return box;
}

GtkWidget* rowNew(GAppInfo* application) {
  GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 12);
  GIcon* const icon = g_app_info_get_icon(application);
  GtkWidget* const image =
      icon ? gtk_image_new_from_gicon(icon) : gtk_image_new_from_icon_name("application-x-executable");
  gtk_image_set_pixel_size(GTK_IMAGE(image), iconSize);
  gtk_box_append(GTK_BOX(box), image);
  GtkWidget* const name = gtk_label_new(g_app_info_get_display_name(application));
  gtk_widget_set_hexpand(name, TRUE);
  gtk_label_set_xalign(GTK_LABEL(name), 0);
  gtk_label_set_wrap(GTK_LABEL(name), TRUE);
  gtk_label_set_wrap_mode(GTK_LABEL(name), PANGO_WRAP_WORD_CHAR);
  gtk_label_set_lines(GTK_LABEL(name), 2);
  gtk_label_set_ellipsize(GTK_LABEL(name), PANGO_ELLIPSIZE_END);
  gtk_box_append(GTK_BOX(box), name);
  return box;
}

}  // namespace

/// One open menu: its sheet, and what it opens with what.
struct OpenWithMenu::Menu {
  Menu(const Url& opened, std::vector<GRef<GAppInfo>> choices) : file(opened), applications(std::move(choices)) {}

  GtkWidget* contentNew() {
    GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 12);
    gtk_widget_add_css_class(box, "orivex-open-with");
    gtk_widget_set_margin_top(box, margin + 4);
    gtk_widget_set_margin_bottom(box, margin);
    gtk_widget_set_margin_start(box, margin);
    gtk_widget_set_margin_end(box, margin);
    gtk_box_append(GTK_BOX(box), headingNew(file));
    gtk_box_append(GTK_BOX(box), listNew());
    GtkWidget* const cancel = gtk_button_new_with_label("取消");
    cancelled = SignalConnection::connect<&Menu::cancel>(cancel, "clicked", this);
    gtk_box_append(GTK_BOX(box), cancel);
    return box;
  }

  GtkWidget* listNew() {
    GtkWidget* const list = gtk_list_box_new();
    gtk_widget_add_css_class(list, "orivex-applications");
    gtk_list_box_set_selection_mode(GTK_LIST_BOX(list), GTK_SELECTION_NONE);
    for (const auto& application : applications) gtk_list_box_append(GTK_LIST_BOX(list), rowNew(application.get()));
    activated = SignalConnection::connect<&Menu::choose>(list, "row-activated", this);
    GtkWidget* const scroller = gtk_scrolled_window_new();
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
    gtk_scrolled_window_set_propagate_natural_height(GTK_SCROLLED_WINDOW(scroller), TRUE);
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), list);
    return scroller;
  }

  void choose(GtkListBox* /*list*/, GtkListBoxRow* row) {
    activated.disconnect();
    launch(applications[static_cast<std::size_t>(gtk_list_box_row_get_index(row))].get(), file);
    sheet->close();
  }

  void cancel(GtkButton* /*button*/) { sheet->close(); }

  const Url file;
  const std::vector<GRef<GAppInfo>> applications;
  SignalConnection activated;
  SignalConnection cancelled;
  std::unique_ptr<Sheet> sheet;
};

OpenWithMenu::OpenWithMenu(MainQueue& mainQueue, const GtkApplicationPort& application, const TypeRegistry& types)
    : mainQueue_(mainQueue), application_(application), types_(types) {}

OpenWithMenu::~OpenWithMenu() = default;

bool OpenWithMenu::presentOptionsMenu(const Url& file, const Rect& /*rect*/, View& view) {
  auto* const host = application_.find(view);
  if (!host) return false;
  if (const auto scheme = file.scheme(); runsInSandbox()) {
    const bool opens = scheme == "file" || scheme == "http" || scheme == "https";
    if (opens) openThroughPortal(file);
    return opens;
  }
  auto applications = applicationsFor(file, types_);
  if (applications.empty()) return false;
  static const bool styled = (installStyle(css), true);
  static_cast<void>(styled);
  menu_ = std::make_unique<Menu>(file, std::move(applications));
  menu_->sheet =
      std::make_unique<Sheet>(host->overlay(), mainQueue_, menu_->contentNew(), title, [this] { menu_.reset(); });
  leaves_ = view.observeLeaving([this] { menu_.reset(); });
  return true;
}

}  // namespace orivex::gtk
