#include <filesystem>

#include "PageFixture.h"
#include "glib/GRef.h"
#include "support/TemporaryFolder.h"
#include "support/VideoFiles.h"

namespace orivex::gtk {
namespace {

class OfferedFilesTest : public PageFixture {
 protected:
  using Paths = std::vector<std::string>;

  GdkContentProvider* files(const Paths& paths) {
    GSList* list = nullptr;
    for (const auto& path : paths) list = g_slist_append(list, g_file_new_for_path(path.c_str()));
    auto* const provider = gdk_content_provider_new_typed(GDK_TYPE_FILE_LIST, list);
    g_slist_free_full(list, g_object_unref);
    return provider;
  }

  void paste(GdkContentProvider* content) {
    gdk_clipboard_set_content(gtk_widget_get_clipboard(GTK_WIDGET(view())), content);
    g_object_unref(content);
    hands({"key", "ctrl+v"});
  }

  bool offered(const Paths& paths) {
    return wait([&] { return web_->offered == paths; }, 5);
  }

  const TemporaryFolder temporary_;
  const std::string bill_ = temporary_.write("bill.pdf", "x").string();
};

TEST_F(OfferedFilesTest, WhatIsPastedAndIsNoTextReachesTheHost) {
  open("<textarea id=text autofocus></textarea>");
  evaluate("text.focus()");
  const std::string png = "\x89PNG\r\n\x1a\n and the rest of it";
  paste(gdk_content_provider_new_for_bytes("image/png", g_bytes_new(png.data(), png.size())));
  ASSERT_TRUE(wait([&] { return web_->offered.size() == 1; }, 5));
  const std::filesystem::path picture = web_->offered[0];
  EXPECT_EQ(contentsOf(picture), png) << picture;
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(picture).permissions(), perms::owner_read | perms::owner_write);
  EXPECT_EQ(std::filesystem::status(picture.parent_path()).permissions(), perms::owner_all);
  paste(files({bill_}));
  EXPECT_TRUE(offered({bill_}));

  web_->offered.clear();
  paste(gdk_content_provider_new_typed(G_TYPE_STRING, "words"));
  EXPECT_TRUE(becomes("text.value", "words"));
  evaluate("addEventListener('paste', (event) => event.preventDefault())");
  paste(files({bill_}));
  pass(1);
  EXPECT_TRUE(web_->offered.empty()) << "the page takes them itself";
  EXPECT_EQ(evaluate("text.value"), "words");
  closePage();
  EXPECT_FALSE(std::filesystem::exists(picture.parent_path()));
}

TEST_F(OfferedFilesTest, WhatIsDroppedOnAPageThatDoesNotTakeItReachesTheHost) {
  open(
      "<div id=zone style='height: 100px'>zone</div><div>plain</div><script>window.taken = 0;"
      "zone.ondragover = (event) => event.preventDefault();"
      "zone.ondrop = (event) => { event.preventDefault(); ++taken; };</script>");
  auto* const window = GTK_WINDOW(gtk_widget_get_root(GTK_WIDGET(view())));
  const auto kept = GRef<GtkWidget>::share(GTK_WIDGET(view()));
  gtk_window_set_child(window, nullptr);
  auto* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  auto* const icon = gtk_label_new("bill.pdf");
  gtk_widget_set_size_request(icon, 360, 100);
  gtk_widget_set_vexpand(kept.get(), TRUE);
  gtk_box_append(GTK_BOX(box), icon);
  gtk_box_append(GTK_BOX(box), kept.get());
  gtk_window_set_child(window, box);
  auto* const source = gtk_drag_source_new();
  gtk_drag_source_set_content(source, files({bill_}));
  gtk_widget_add_controller(icon, GTK_EVENT_CONTROLLER(source));
  pass(0.5);

  const auto dragTo = [](int y) {
    hands({"pointer", "100", "50"});
    hands("button-down");
    for (int step = 60; step < y; step += 40) hands({"pointer", "100", std::to_string(step)});
    hands({"pointer", "100", std::to_string(y)});
    pass(0.5);
    hands("button-up");
  };
  dragTo(400);
  EXPECT_TRUE(offered({bill_}));
  web_->offered.clear();
  dragTo(150);
  EXPECT_TRUE(becomes("String(taken)", "1"));
  pass(0.5);
  EXPECT_TRUE(web_->offered.empty()) << "the page takes them itself";
  gtk_box_remove(GTK_BOX(box), kept.get());
}

}  // namespace
}  // namespace orivex::gtk
