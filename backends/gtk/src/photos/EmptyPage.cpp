#include "EmptyPage.h"

#include <cerrno>
#include <utility>

#include "../Sandbox.h"
#include "../ui/Widgets.h"
#include "library/MediaTexts.h"

#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {
namespace {

// There, but not to be read; what a sandbox does not share looks as if it were not there.
bool isForbidden(const MediaRoot& root) {
  return !isReadable(root) && (errno != ENOENT || runsInSandbox());
}

template <class Predicate>
std::string pathsOf(const std::vector<MediaRoot>& roots, Predicate isMeant) {
  std::string paths;
  for (const auto& root : roots) {
    if (isMeant(root)) paths += "\n" + root.path;
  }
  return paths;
}

}  // namespace

EmptyPage::EmptyPage(const std::vector<MediaRoot>& roots, const MediaFilter& filter, std::function<void()> browse)
    : roots_(roots),
      filter_(filter),
      widget_(gtk_scrolled_window_new()),
      icon_(decorative(gtk_image_new())),
      title_(styled(gtk_label_new(nullptr), "title")),
      hint_(styled(gtk_label_new(nullptr), "hint")) {
  gtk_image_set_pixel_size(GTK_IMAGE(icon_), 72);
  for (GtkWidget* const label : {title_, hint_}) {
    gtk_label_set_justify(GTK_LABEL(label), GTK_JUSTIFY_CENTER);
    gtk_label_set_wrap(GTK_LABEL(label), TRUE);
    gtk_label_set_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
  }
  GtkWidget* const elsewhere = styled(gtk_button_new_with_label(tr("浏览…")), "browse");
  pressed_ = SignalConnection::connect(elsewhere, "clicked", std::move(browse));
  GtkWidget* const page =
      styled(boxNew(GTK_ORIENTATION_VERTICAL, 12, {icon_, title_, hint_, elsewhere}), "orivex-photos-empty");
  gtk_widget_set_valign(page, GTK_ALIGN_CENTER);
  // A phone that is held sideways has no room for it.
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(widget_), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(widget_), page);
}

void EmptyPage::update() {
  const std::string unreadable = pathsOf(roots_, isForbidden);
  const bool isEmpty = unreadable.empty();
  const auto everywhere = [](const MediaRoot&) { return true; };
  gtk_image_set_from_icon_name(GTK_IMAGE(icon_), isEmpty ? "image-x-generic-symbolic" : "changes-prevent-symbolic");
  gtk_label_set_text(GTK_LABEL(title_),
                     isEmpty ? kindsOf(filter_, tr("没有照片或视频"), tr("没有照片"), tr("没有视频"))
                             : kindsOf(filter_, tr("无法访问照片和视频"), tr("无法访问照片"), tr("无法访问视频")));
  gtk_label_set_text(GTK_LABEL(hint_), (isEmpty ? tr("在这些文件夹里没有找到:%1", {pathsOf(roots_, everywhere)})
                                                : tr("没有权限读取这些文件夹:%1", {unreadable}))
                                           .c_str());
}

}  // namespace orivex::gtk
