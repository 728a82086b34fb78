#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "../GtkFixture.h"
#include "LogLines.h"
#include "TemporaryFolder.h"
#include "Visitor.h"

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/DocumentInteraction.h"
#include "orivex/platform/ui/View.h"

namespace orivex::gtk {
namespace {

// A desktop of the tests' own: GLib reads these folders from the environment once, at its first question.
class Desktop : public ::testing::Environment {
 public:
  void SetUp() override {
    folder_ = std::make_unique<TemporaryFolder>();
    for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_DIRS"}) {
      g_setenv(name, folder_->path().c_str(), TRUE);
    }
    g_setenv("GSETTINGS_SCHEMA_DIR", "/usr/share/glib-2.0/schemas", TRUE);  // GTK's own, which it misses otherwise
    const auto opener =
        folder_->write("opener", "#!/bin/sh\nprintf '%s ' \"$@\" > \"$0.got.part\"\nmv \"$0.got.part\" \"$0.got\"\n");
    std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
    got_ = opener.string() + ".got";
    const auto open = opener.string();
    add("Usual", open + " usual %u", "application/pdf");
    add("Paths", open + " paths %f", "application/pdf");
    add("Secret", open + " secret %u", "application/pdf", "NoDisplay=true\n");
    add("Broken", "true %u", "application/x-odd", "DBusActivatable=true\n");  // by a service that nobody offers
    add("Texts", open + " texts %U", "text/plain");
    add("Browser", open + " browser %u", "x-scheme-handler/https");
    folder_->write("mimeapps.list",
                   "[Default Applications]\nx-scheme-handler/https=org.example.Browser.desktop\n"
                   "application/pdf=org.example.Usual.desktop\n");
    // What a package manager's trigger makes of the entries.
    folder_->write("applications/mimeinfo.cache",
                   "[MIME Cache]\napplication/pdf=org.example.Paths.desktop;org.example.Secret.desktop;"
                   "org.example.Usual.desktop;\napplication/x-odd=org.example.Broken.desktop;\n"
                   "text/plain=org.example.Texts.desktop;\n");
    folder_->write("mime/globs2", "50:application/pdf:*.pdf\n50:application/x-odd:*.odd\n50:text/x-note:*.note\n");
    folder_->write("mime/subclasses", "text/x-note text/plain\n");
  }
  void TearDown() override { folder_.reset(); }

  const TemporaryFolder& folder() const { return *folder_; }

  /// What the application was last started with.
  std::string waitForOpened() const {
    std::ifstream file;
    wait([&] { return (file.open(got_), file.is_open()); }, 10);
    std::stringstream text;
    text << file.rdbuf();
    std::filesystem::remove(got_);
    return text.str();
  }

 private:
  void add(const std::string& name, const std::string& exec, const std::string& types, const std::string& more = "") {
    folder_->write(
        "applications/org.example." + name + ".desktop",
        "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=" + exec + "\nMimeType=" + types + ";\n" + more);
  }

  std::unique_ptr<TemporaryFolder> folder_;
  std::string got_;
};

auto& desktop = *static_cast<Desktop*>(::testing::AddGlobalTestEnvironment(std::make_unique<Desktop>().release()));

Url localFile(const std::string& name, const std::string& contents = "x") {
  return Url::fromFilePath(desktop.folder().write(name, contents).string());
}

class OpenWithMenuTest : public ::testing::Test {
 protected:
  bool present(const Url& file) { return Platform::current().documentInteraction.presentOptionsMenu(file, {}, view_); }
  GtkWidget* sheet() const { return findByClass(GTK_WIDGET(visitor_.overlay()), "orivex-sheet"); }
  bool waitUntilGone() const {
    return wait([&] { return !sheet(); }, 5);
  }
  /// Names of the listed applications, once the sheet stands.
  std::vector<std::string> names() const {
    pass(0.4);
    std::vector<std::string> names;
    GtkWidget* const list = findByClass(sheet(), "orivex-applications");
    for (GtkWidget* row = list ? gtk_widget_get_first_child(list) : nullptr; row;
         row = gtk_widget_get_next_sibling(row)) {
      GtkWidget* const box = gtk_list_box_row_get_child(GTK_LIST_BOX_ROW(row));
      names.emplace_back(gtk_label_get_text(GTK_LABEL(gtk_widget_get_last_child(box))));
    }
    return names;
  }
  void choose(const char* name) {
    pass(0.4);
    visitor_.click(findByText(sheet(), name));
  }

  View view_;
  VisitorWindow visitor_;
};

TEST_F(OpenWithMenuTest, ListsTheApplicationsThatTakeTheFileTheUsualOneFirst) {
  struct Row {
    Url file;
    std::vector<std::string> names;
  };
  for (const auto& [file, expected] :
       {Row{localFile("a.pdf"), {"Usual", "Paths"}}, Row{localFile("a.note"), {"Texts"}},
        Row{*Url::parse("https://example.org/x/a.pdf?name=b.note#c"), {"Usual", "Browser"}},
        Row{*Url::parse("https://example.org/x.pdf/"), {"Browser"}},
        Row{*Url::parse("https://example.pdf"), {"Browser"}}}) {
    SCOPED_TRACE(file.absoluteString());
    EXPECT_TRUE(present(file));
    EXPECT_EQ(names(), expected);
  }
}

TEST_F(OpenWithMenuTest, WithoutAnApplicationNothingIsShown) {
  for (const auto& file :
       {localFile("a.unheard", "\x01\x02"), *Url::parse("http://example.org/a"), *Url::parse("tel:123"),
        Url::fromFilePath((desktop.folder().path() / "gone").string()), *Url::parse("a.pdf")}) {
    EXPECT_FALSE(present(file)) << file.absoluteString();
    EXPECT_EQ(sheet(), nullptr);
  }
  visitor_.destroy();
  EXPECT_FALSE(present(localFile("a.pdf"))) << "without a window";
}

TEST_F(OpenWithMenuTest, AChoiceOpensTheFileInThatApplication) {
  const auto file = localFile("我的 a 100%.pdf");
  struct Row {
    Url file;
    const char* name;
    std::string opened;
  };
  for (const auto& [url, name, expected] :
       {Row{file, "Paths", "paths " + *file.filePath() + " "}, Row{file, "Usual", "usual " + *file.filePath() + " "},
        Row{*Url::parse("https://example.org/a%20b.pdf?c=d"), "Browser",
            "browser https://example.org/a%20b.pdf?c=d "}}) {
    ASSERT_TRUE(present(url));
    choose(name);
    EXPECT_EQ(desktop.waitForOpened(), expected);
    EXPECT_TRUE(waitUntilGone());
  }
}

TEST_F(OpenWithMenuTest, CancelOpensNothingAndAnApplicationThatDoesNotStartIsOneLogLine) {
  const LogLines lines;
  ASSERT_TRUE(present(localFile("a.odd")));
  choose("取消");
  EXPECT_TRUE(waitUntilGone());
  EXPECT_TRUE(lines.get().empty());
  ASSERT_TRUE(present(localFile("a.odd")));
  choose("Broken");
  EXPECT_TRUE(wait([&] { return !lines.get().empty(); }, 10));
  EXPECT_TRUE(waitUntilGone());
  EXPECT_EQ(lines.get().size(), 1U);
}

TEST_F(OpenWithMenuTest, TheKeyboardChoosesTooAndTheWindowMayGoMeanwhile) {
  const auto file = localFile("b.pdf");
  ASSERT_TRUE(present(file));
  pass(0.4);
  VisitorWindow::press({"Down", "Return"});
  EXPECT_EQ(desktop.waitForOpened(), "paths " + *file.filePath() + " ");
  EXPECT_TRUE(waitUntilGone());
  ASSERT_TRUE(present(file));
  visitor_.destroy();
  pass(0.5);
}

}  // namespace
}  // namespace orivex::gtk
