#include "OpenWithMenu.h"

#include <string>
#include <string_view>
#include <utility>

#include "../Sandbox.h"
#include "../glib/GMemory.h"
#include "../ui/GtkApplicationPort.h"
#include "../ui/Widgets.h"
#include "Applications.h"

#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ui/View.h"

namespace orivex::gtk {
namespace {

constexpr const char* title = trLater("用其他应用打开");

constexpr int iconSize = 40;  // points

constexpr const char* css = R"css(
.orivex-open-with { padding: 20px 16px 16px; }
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
  GtkWidget* const box = boxNew(GTK_ORIENTATION_VERTICAL, 2, {styled(gtk_label_new(tr(title)), "title")});
  if (const auto name = nameOf(file); !name.empty()) {
    GtkWidget* const label = styled(gtk_label_new(name.c_str()), "dim-label");
    gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_MIDDLE);
    gtk_box_append(GTK_BOX(box), label);
  }
  return box;
}

GtkWidget* rowNew(GAppInfo* application) {
  GIcon* const icon = g_app_info_get_icon(application);
  GtkWidget* const image =
      icon ? gtk_image_new_from_gicon(icon) : gtk_image_new_from_icon_name("application-x-executable");
  gtk_image_set_pixel_size(GTK_IMAGE(decorative(image)), iconSize);
  GtkWidget* const name = gtk_label_new(g_app_info_get_display_name(application));
  gtk_widget_set_hexpand(name, TRUE);
  gtk_label_set_xalign(GTK_LABEL(name), 0);
  gtk_label_set_wrap(GTK_LABEL(name), TRUE);
  gtk_label_set_wrap_mode(GTK_LABEL(name), PANGO_WRAP_WORD_CHAR);
  gtk_label_set_lines(GTK_LABEL(name), 2);
  gtk_label_set_ellipsize(GTK_LABEL(name), PANGO_ELLIPSIZE_END);
  GtkWidget* const row = gtk_list_box_row_new();
  gtk_list_box_row_set_child(GTK_LIST_BOX_ROW(row), boxNew(GTK_ORIENTATION_HORIZONTAL, 12, {image, name}));
  setAccessibleLabel(row, name);
  return row;
}

}  // namespace

/// One open menu: its sheet, and what it opens with what.
struct OpenWithMenu::Menu {
  Menu(const Url& opened, std::vector<GRef<GAppInfo>> choices) : file(opened), applications(std::move(choices)) {}

  GtkWidget* contentNew() {
    GtkWidget* const cancel = gtk_button_new_with_label(tr("取消"));
    connections.add(cancel, "clicked", [this] { sheet->close(); });
    return styled(boxNew(GTK_ORIENTATION_VERTICAL, 12, {headingNew(file), listNew(), cancel}), "orivex-open-with");
  }

  GtkWidget* listNew() {
    GtkWidget* const list = styled(gtk_list_box_new(), "orivex-applications");
    gtk_list_box_set_selection_mode(GTK_LIST_BOX(list), GTK_SELECTION_NONE);
    setAccessibleLabel(list, tr(title));
    for (const auto& application : applications) gtk_list_box_append(GTK_LIST_BOX(list), rowNew(application.get()));
    connections.add(list, "row-activated", [this](GtkListBoxRow* row) {
      connections.disconnect();
      launch(applications[static_cast<std::size_t>(gtk_list_box_row_get_index(row))].get(), file);
      sheet->close();
    });
    GtkWidget* const scroller = gtk_scrolled_window_new();
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
    gtk_scrolled_window_set_propagate_natural_height(GTK_SCROLLED_WINDOW(scroller), TRUE);
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), list);
    return scroller;
  }

  const Url file;
  const std::vector<GRef<GAppInfo>> applications;
  SignalConnections connections;
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
  installStyle(css);
  menu_ = std::make_unique<Menu>(file, std::move(applications));
  menu_->sheet =
      std::make_unique<Sheet>(host->overlay(), mainQueue_, menu_->contentNew(), tr(title), [this] { menu_.reset(); });
  leaves_ = view.observeLeaving([this] { menu_.reset(); });
  return true;
}

}  // namespace orivex::gtk
