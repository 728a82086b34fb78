#pragma once

#include <memory>

#include "contract/Fixture.h"

#include "orivex/platform/ports/Documents.h"
#include "orivex/platform/ui/Window.h"

namespace orivex::contract {

template <PickerFixture Fixture>
class DocumentPickerContract : public Suite<Fixture> {
 protected:
  /// What one call of `present` was told: the path of the one file that was picked, "cancelled", or something else.
  using Told = std::vector<std::string>;

  DocumentPicker& picker() { return this->fixture_.platform().documentPicker; }

  void present(Told& told) {
    const auto window = firstWindow(this->fixture_.platform().application);
    picker().present({}, *window->contentView(), [&told](const DocumentPickerOutcome& outcome) {
      const auto* picked = std::get_if<PickedDocuments>(&outcome);
      if (!picked) {
        told.push_back("cancelled");
      } else {
        told.push_back(picked->files.size() == 1 ? picked->files.front().filePath().value_or("no file")
                                                 : "no one file");
      }
    });
    EXPECT_TRUE(told.empty()) << "told inside the call";
  }
  bool waitFor(const Told& told) {
    return this->wait([&] { return !told.empty(); });
  }
};
TYPED_TEST_SUITE_P(DocumentPickerContract);

TYPED_TEST_P(DocumentPickerContract, EachAnswerIsToldOnceAndTheChooserIsFreeAgain) {
  const auto file = this->fixture_.file("我的 100% report.pdf");
  for (const bool picks : {true, false, true}) {
    typename TestFixture::Told told;
    this->present(told);
    if (picks) {
      this->fixture_.pick(file);
    } else {
      this->fixture_.cancelPicking();
    }
    EXPECT_TRUE(this->waitFor(told));
    this->pass(moment);
    EXPECT_EQ(told, (typename TestFixture::Told{picks ? file : "cancelled"}));
  }
}

TYPED_TEST_P(DocumentPickerContract, ASecondCallIsCancelledAndTheFirstStillAnswers) {
  const auto file = this->fixture_.file("a.txt");
  typename TestFixture::Told first;
  typename TestFixture::Told second;
  this->present(first);
  this->present(second);
  EXPECT_TRUE(this->waitFor(second));
  EXPECT_EQ(second, (typename TestFixture::Told{"cancelled"}));
  EXPECT_TRUE(first.empty());
  this->fixture_.pick(file);
  EXPECT_TRUE(this->waitFor(first));
  this->pass(moment);
  EXPECT_EQ(first, (typename TestFixture::Told{file}));
  EXPECT_EQ(second.size(), 1U);
}

TYPED_TEST_P(DocumentPickerContract, TheChooserClosesWithItsScreenAndTellsNobody) {
  typename TestFixture::Told first;
  typename TestFixture::Told second;
  this->present(first);
  firstWindow(this->fixture_.platform().application)->contentView()->setShowing(false);
  this->present(second);
  this->fixture_.pick(this->fixture_.file("a.txt"));
  EXPECT_TRUE(this->waitFor(second));
  EXPECT_NE(second, (typename TestFixture::Told{"cancelled"})) << "the first chooser is still open";
  EXPECT_TRUE(first.empty());
}

TYPED_TEST_P(DocumentPickerContract, AccessIsGrantedToAFileAndRefusedWithAReason) {
  const auto granted = this->picker().startAccess(Url::fromFilePath(this->fixture_.file("a.txt")));
  ASSERT_TRUE(std::holds_alternative<std::unique_ptr<FileAccess>>(granted));
  EXPECT_TRUE(std::get<std::unique_ptr<FileAccess>>(granted));
  for (const auto& path : {this->fixture_.lostFile("b.txt"), std::string("/")}) {
    const auto refused = this->picker().startAccess(Url::fromFilePath(path));
    ASSERT_TRUE(std::holds_alternative<Failure>(refused)) << path;
    EXPECT_FALSE(std::get<Failure>(refused).description.empty());
  }
}

REGISTER_TYPED_TEST_SUITE_P(DocumentPickerContract, EachAnswerIsToldOnceAndTheChooserIsFreeAgain,
                            ASecondCallIsCancelledAndTheFirstStillAnswers, TheChooserClosesWithItsScreenAndTellsNobody,
                            AccessIsGrantedToAFileAndRefusedWithAReason);

}  // namespace orivex::contract
