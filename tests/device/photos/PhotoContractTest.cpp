#include <gtest/gtest.h>

#include "PhotoStage.h"
#include "contract/PhotoLibraryContract.h"

namespace orivex::gtk {

/// A real sheet over a real window.
class PhotoContractFixture : private PhotoStage {
 public:
  PhotoContractFixture() {
    for (const auto* name : {"root/a.jpg", "root/b.jpg"}) folder_.write(name, pictureData(8, 8, 0x4080c0ff, "jpeg"));
  }
  PhotoLibrary& photoLibrary() { return library_; }
  View& view() { return *PhotoStage::view(); }
  bool wait(const std::function<bool()>& condition, double seconds) { return gtk::wait(condition, seconds); }
  void select(const std::vector<std::string>& names) {
    waitForSlide();
    for (const auto& name : names) clickCircle(name);
    clickText("完成(" + std::to_string(names.size()) + ")");
  }
  void close() {
    waitForSlide();
    clickText("取消");
  }
};

}  // namespace orivex::gtk

namespace orivex::contract {

INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, PhotoLibraryContract, gtk::PhotoContractFixture);

}  // namespace orivex::contract
