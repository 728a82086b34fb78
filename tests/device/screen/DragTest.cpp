#include "PageFixture.h"
#include "glib/GRef.h"
#include "support/TemporaryFolder.h"

namespace orivex::gtk {
namespace {

/// A window beside the page's from which a file can be dragged.
class FileManagerWindow {
 public:
  explicit FileManagerWindow(const std::string& path) : window_(GTK_WINDOW(gtk_window_new())) {
    gtk_window_set_title(window_, title);
    gtk_window_set_decorated(window_, FALSE);
    gtk_window_set_default_size(window_, 200, 100);
    GtkWidget* const icon = gtk_label_new("file");
    gtk_window_set_child(window_, icon);
    const auto file = GRef<GFile>::adopt(g_file_new_for_path(path.c_str()));
    GFile* files[] = {file.get()};
    GdkFileList* const list = gdk_file_list_new_from_array(files, 1);
    const auto content = GRef<GdkContentProvider>::adopt(gdk_content_provider_new_typed(GDK_TYPE_FILE_LIST, list));
    g_boxed_free(GDK_TYPE_FILE_LIST, list);
    GtkDragSource* const source = gtk_drag_source_new();
    gtk_drag_source_set_content(source, content.get());
    gtk_widget_add_controller(icon, GTK_EVENT_CONTROLLER(source));
    gtk_window_present(window_);
    wait([&] { return gtk_widget_get_mapped(icon) != FALSE; }, 10);
  }
  FileManagerWindow(const FileManagerWindow&) = delete;
  FileManagerWindow& operator=(const FileManagerWindow&) = delete;
  ~FileManagerWindow() { gtk_window_destroy(window_); }

  static constexpr const char* title = "orivex-files";

 private:
  GtkWindow* window_;
};

class Drag : public PageFixture {
 protected:
  // From the other window to this point of the page, as slowly as a hand.
  static void dropAt(int x, int y) {
    hands("pointer", 600, 50);
    hands("button-down");
    for (int step = 5; step >= 0; --step) {
      hands("pointer", x + step * 40, y);
      pass(0.1);
    }
    hands("button-up");
    pass(0.7);
  }
};

TEST_F(Drag, AFileThatIsDroppedOnTheChatDoesNotReplaceIt) {
  const TemporaryFolder folder;
  const FileManagerWindow files(folder.write("photo.txt", "not the chat"));
  hands({"move-window", FileManagerWindow::title, "500", "0"});
  open(
      "<body style='margin:0'>chat<div style='height:200px'></div><input id=text style='width:300px;height:60px'>"
      "<div id=zone style='height:200px'></div>"
      "<script>window.overs = window.drops = 0; addEventListener('dragover', () => ++window.overs);"
      "zone.ondragover = (event) => event.preventDefault();"
      "zone.ondrop = (event) => { event.preventDefault(); ++window.drops; };"
      "</script>");
  for (const auto& [what, y] : {std::pair{"the page", 100}, std::pair{"a text field", 240}, std::pair{"a zone", 380}}) {
    SCOPED_TRACE(what);
    evaluate("window.overs = 0; 0");
    dropAt(100, y);
    EXPECT_EQ(evaluate("window.overs > 0"), "true") << "the drag has not come over the page";
    EXPECT_EQ(evaluate("location.pathname"), "/");
  }
  EXPECT_EQ(evaluate("text.value"), "") << "where the visitor keeps the file is no business of the page's";
  EXPECT_EQ(evaluate("window.drops"), "1") << "a page that takes drops gets them";
}

}  // namespace
}  // namespace orivex::gtk
