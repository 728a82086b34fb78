#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <utime.h>

#include "FakeMedia.h"
#include "photos/GtkPhotoLibrary.h"
#include "photos/grid/PhotoCell.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"
#include "support/Visitor.h"

#include "orivex/platform/Platform.h"

namespace orivex::gtk {

/// A window over which the photo library of a folder opens, and what a visitor does in it.
class PhotoStage {
 public:
  PhotoStage() = default;
  PhotoStage(const PhotoStage&) = delete;
  PhotoStage& operator=(const PhotoStage&) = delete;
  // The platform's workers may still read a photo, with what is about to go.
  ~PhotoStage() {
    wait([this] { return media_.isIdle(); }, 10);
  }

  /// Fills the folder with pictures "p01.jpg", "p02.jpg"... and "clip.mp4"; the video is the newest, then the pictures
  /// follow in order.
  void fill(int photos) {
    constexpr std::time_t newest = 1'700'000'000;
    const auto data = pictureData(64, 48, 0x4080c0ff, "jpeg");
    const auto add = [&](const std::string& name, std::time_t modified) {
      const auto path = folder_.write("root/" + name, data);
      const utimbuf times{modified, modified};
      utime(path.c_str(), &times);
    };
    add("clip.mp4", newest + 1);
    for (int index = 1; index <= photos; ++index) {
      add("p" + std::string(index < 10 ? "0" : "") + std::to_string(index) + ".jpg", newest - index);
    }
  }

  /// Opens the sheet and waits until it has slid in.
  void open(const PhotoLibraryOptions& options = {}) {
    library_.show(options, *view(), [this](PhotoSelection selection) { results_.push_back(std::move(selection)); });
    waitForSlide();
  }

  View* view() const { return application().find(visitor_.window())->window()->contentView().get(); }
  static GtkApplicationPort& application() {
    return dynamic_cast<GtkApplicationPort&>(Platform::current().application);
  }

  // The cell of a file, once it shows how the file looks; null when that does not happen.
  PhotoCell* cell(const std::string& name) {
    PhotoCell* found = nullptr;
    wait([&] { return (found = findCell(GTK_WIDGET(visitor_.overlay()), name)) && found->hasThumbnail(); }, 10);
    pass(0.05);
    return found;
  }
  static PhotoCell* findCell(GtkWidget* parent, const std::string& name) {
    for (GtkWidget* child = gtk_widget_get_first_child(parent); child; child = gtk_widget_get_next_sibling(child)) {
      auto* const cell = PhotoCell::of(child);
      if (cell && cell->item() && nameOf(cell->item()->path) == name && gtk_widget_get_mapped(child)) return cell;
      if (auto* const found = findCell(child, name)) return found;
    }
    return nullptr;
  }

  // Until what slides has come to rest.
  static void waitForSlide() { pass(0.6); }

  void addPhoto(const std::string& path) { folder_.write(path, pictureData(8, 8, 0xffffffff, "jpeg")); }
  void clickCircle(const std::string& name) {
    auto* const target = cell(name);
    ASSERT_TRUE(target) << name;
    double x = 0;
    double y = 0;
    gtk_widget_translate_coordinates(target->widget(), GTK_WIDGET(visitor_.window()),
                                     gtk_widget_get_width(target->widget()) - 18.0, 18, &x, &y);
    VisitorWindow::click(x, y);
  }
  // Opens a photo, or a video, large.
  void clickPicture(const std::string& name) {
    ASSERT_TRUE(cell(name)) << name;
    visitor_.click(cell(name)->widget());
  }
  bool reads(const std::string& text) {
    return wait([&] { return findByText(GTK_WIDGET(visitor_.overlay()), text) != nullptr; }, 5);
  }
  void clickText(const std::string& text) {
    ASSERT_TRUE(reads(text)) << text;
    visitor_.click(findByText(GTK_WIDGET(visitor_.overlay()), text));
  }
  bool isGone() {
    return wait([&] { return library_.content() == nullptr; }, 5);
  }
  // Clicks the button that says so; the names that the host gets then.
  std::string confirmed(const std::string& button) {
    clickText(button);
    EXPECT_TRUE(isGone());
    return results_.empty() ? "nothing" : names(results_.back());
  }
  std::string names(const PhotoSelection& selection) {
    std::string all;
    for (const auto& item : selection.items) {
      const auto path = item.file.filePath().value_or("");
      EXPECT_TRUE(std::filesystem::exists(path)) << path;
      all += std::filesystem::path(path).filename().string() + " ";
    }
    return all;
  }

  VisitorWindow visitor_;
  TemporaryFolder folder_;
  const FakeMedia media_{};
  GtkPhotoLibrary library_{
      Platform::current().mainQueue, application(), std::ref(media_), [this] {
        return PhotoSources{{{folder_.path() / "root", "图片"}}, ThumbnailCache(folder_.path() / "cache")};
      }};
  std::vector<PhotoSelection> results_;
};

}  // namespace orivex::gtk
