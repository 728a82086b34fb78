#include <gtest/gtest.h>

#include "contract/PhotoLibraryContract.h"

#include "orivex/platform/ui/View.h"
#include "orivex/testing/VirtualDevice.h"

namespace orivex::testing {

/// A sheet that is answered by name.
class VirtualPhotoFixture {
 public:
  PhotoLibrary& photoLibrary() { return device_.photoLibrary(); }
  View& view() { return *view_; }
  bool wait(const std::function<bool()>& condition, double seconds) {
    return device_.mainQueue().advanceUntil(condition, seconds);
  }
  void select(const std::vector<std::string>& names) {
    PhotoSelection selection;
    for (const auto& name : names) selection.items.push_back({MediaType::image, Url::fromFilePath("/photos/" + name)});
    device_.photoLibrary().select(std::move(selection));
  }
  void close() { device_.photoLibrary().close(); }

 private:
  VirtualDevice device_;
  std::shared_ptr<View> view_ = std::make_shared<View>();
};

}  // namespace orivex::testing

namespace orivex::contract {

INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, PhotoLibraryContract, testing::VirtualPhotoFixture);

}  // namespace orivex::contract
