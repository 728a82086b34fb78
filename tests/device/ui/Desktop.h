#pragma once

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"

#include "orivex/platform/base/Url.h"

namespace orivex::gtk {

/// A desktop of the tests' own: GLib reads these folders from the environment once, at its first question.
class Desktop : public ::testing::Environment {
 public:
  void SetUp() override {
    folder_ = std::make_unique<TemporaryFolder>();
    for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_DIRS"}) {
      g_setenv(name, folder_->path().c_str(), TRUE);
    }
    g_setenv("GSETTINGS_SCHEMA_DIR", "/usr/share/glib-2.0/schemas", TRUE);  // GTK's own, which it misses otherwise
    g_setenv("LANGUAGE", "zh_CN", TRUE);
    const auto opener =
        folder_->write("opener", "#!/bin/sh\nprintf '%s ' \"$@\" > \"$0.got.part\"\nmv \"$0.got.part\" \"$0.got\"\n");
    std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
    got_ = opener.string() + ".got";
    const auto open = opener.string();
    add("Usual", open + " usual %u", "application/pdf");
    add("Paths", open + " paths %f", "application/pdf");
    add("Secret", open + " secret %u", "application/pdf", "NoDisplay=true\n");
    add("Java", open + " java %u", "application/x-java-archive");
    add("Broken", "true %u", "application/x-odd", "Path=/no/such/folder\n");
    add("Texts", open + " texts %U", "text/plain");
    add("Browser", open + " browser %u", "x-scheme-handler/https");
    add("Mail", open + " mail %u", "x-scheme-handler/mailto");
    add("Shop", "true", "application/x-order;x-scheme-handler/shop", "Name[zh_CN]=商店\n");
    folder_->write("mimeapps.list",
                   "[Default Applications]\nx-scheme-handler/https=org.example.Browser.desktop\n"
                   "x-scheme-handler/mailto=org.example.Mail.desktop\n"
                   "application/pdf=org.example.Usual.desktop\n");
    // What a package manager's trigger makes of the entries.
    folder_->write(
        "applications/mimeinfo.cache",
        "[MIME Cache]\napplication/pdf=org.example.Paths.desktop;org.example.Secret.desktop;"
        "org.example.Usual.desktop;\napplication/x-odd=org.example.Broken.desktop;\n"
        "application/x-java-archive=org.example.Java.desktop;\nx-scheme-handler/shop=org.example.Shop.desktop;\n"
        "text/plain=org.example.Texts.desktop;\n");
    folder_->write("mime/globs2",
                   "50:application/pdf:*.pdf\n50:application/x-odd:*.odd\n50:text/x-note:*.note\n"
                   "50:application/x-java-archive:*.jar\n");
    folder_->write("mime/subclasses", "text/x-note text/plain\n");
  }
  void TearDown() override { folder_.reset(); }

  const TemporaryFolder& folder() const { return *folder_; }

  Url file(const std::string& name, const std::string& contents = "x") const {
    return Url::fromFilePath(folder_->write(name, contents).string());
  }

  /// What an application was last started with.
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

inline auto& desktop =
    *static_cast<Desktop*>(::testing::AddGlobalTestEnvironment(std::make_unique<Desktop>().release()));

}  // namespace orivex::gtk
