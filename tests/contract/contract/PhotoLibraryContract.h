#pragma once

#include <cstddef>

#include "contract/Fixture.h"

#include "orivex/platform/ports/PhotoLibrary.h"
#include "orivex/platform/ui/View.h"

namespace orivex::contract {

/// A device with photos in its library, and the hands of a visitor.
template <class Fixture>
concept PhotoFixture = std::default_initializable<Fixture> &&
    requires(Fixture fixture, const std::vector<std::string>& names, const std::function<bool()>& condition,
             double seconds) {
  { fixture.photoLibrary() } -> std::convertible_to<PhotoLibrary&>;
  { fixture.view() } -> std::convertible_to<View&>;
  { fixture.wait(condition, seconds) } -> std::same_as<bool>;
  /// The visitor selects these, of "a.jpg" and "b.jpg", in this order, and confirms.
  fixture.select(names);
  /// The visitor closes the sheet without an answer.
  fixture.close();
};

template <PhotoFixture Fixture>
class PhotoLibraryContract : public ::testing::Test {
 protected:
  /// The names of what each answer held, such as "b.jpg a.jpg ".
  using Told = std::vector<std::string>;

  void show(Told& told) {
    fixture_.photoLibrary().show({}, fixture_.view(), [&told](const PhotoSelection& selection) {
      std::string names;
      for (const auto& item : selection.items) {
        const auto path = item.file.filePath().value_or("no file");
        names += path.substr(path.rfind('/') + 1) + " ";
      }
      told.push_back(names);
    });
    EXPECT_TRUE(told.empty()) << "told inside the call";
  }
  void pass() {
    fixture_.wait([] { return false; }, moment);
  }

  Fixture fixture_;
};
TYPED_TEST_SUITE_P(PhotoLibraryContract);

TYPED_TEST_P(PhotoLibraryContract, ASelectionIsToldOnceInItsOrderAndToTheFirstCallOnly) {
  typename TestFixture::Told first;
  typename TestFixture::Told second;
  this->show(first);
  this->show(second);
  this->fixture_.select({"b.jpg", "a.jpg"});
  EXPECT_TRUE(this->fixture_.wait([&] { return !first.empty(); }, patience));
  this->pass();
  EXPECT_EQ(first, typename TestFixture::Told{"b.jpg a.jpg "});
  EXPECT_TRUE(second.empty()) << "a second call while a sheet is open is never answered";
}

TYPED_TEST_P(PhotoLibraryContract, ClosingTellsNobodyAndTheSheetOpensAgain) {
  typename TestFixture::Told first;
  typename TestFixture::Told second;
  this->show(first);
  this->fixture_.close();
  this->pass();
  this->show(first);
  this->fixture_.view().setShowing(false);  // as when its screen leaves
  this->show(second);
  this->fixture_.select({"a.jpg"});
  EXPECT_TRUE(this->fixture_.wait([&] { return !second.empty(); }, patience));
  EXPECT_TRUE(first.empty());
}

REGISTER_TYPED_TEST_SUITE_P(PhotoLibraryContract, ASelectionIsToldOnceInItsOrderAndToTheFirstCallOnly,
                            ClosingTellsNobodyAndTheSheetOpensAgain);

}  // namespace orivex::contract
