#pragma once

#include "contract/Fixture.h"

#include "orivex/platform/ports/ProgressOverlay.h"
#include "orivex/platform/ui/Window.h"

namespace orivex::contract {

template <OverlayFixture Fixture>
class ProgressOverlayContract : public Suite<Fixture> {
 protected:
  ProgressOverlay& overlay() { return this->fixture_.platform().progressOverlay; }

  // A panel may take a moment to come or to fade.
  bool becomes(const std::optional<std::string>& status) {
    return this->wait([&] { return this->fixture_.overlayStatus() == status; });
  }
};
TYPED_TEST_SUITE_P(ProgressOverlayContract);

TYPED_TEST_P(ProgressOverlayContract, ALaterCallReplacesAnEarlierOneAndDismissTakesItAway) {
  this->overlay().dismiss();
  EXPECT_TRUE(this->becomes(std::nullopt));
  this->overlay().show();
  EXPECT_TRUE(this->becomes(""));
  this->overlay().showProgress(0.5F, "50%");
  EXPECT_TRUE(this->becomes("50%"));
  this->overlay().showInfo("文件过大");
  EXPECT_TRUE(this->becomes("文件过大"));
  this->overlay().dismiss();
  EXPECT_TRUE(this->becomes(std::nullopt));
}

TYPED_TEST_P(ProgressOverlayContract, APanelShownWhileAnotherIsLeavingStays) {
  this->overlay().showInfo("old");
  EXPECT_TRUE(this->becomes("old"));
  this->overlay().dismiss();
  this->overlay().showInfo("new");
  EXPECT_TRUE(this->becomes("new"));
  this->pass(1);
  EXPECT_EQ(this->fixture_.overlayStatus(), "new");
}

TYPED_TEST_P(ProgressOverlayContract, AMessageGoesAfterTheMaximumDismissTimeOfItsOwnAndProgressStays) {
  this->overlay().setMaximumDismissTime(0.6);
  this->overlay().showInfo("first");
  this->pass(0.4);
  this->overlay().showInfo("second");
  this->pass(0.4);
  EXPECT_EQ(this->fixture_.overlayStatus(), "second") << "the first panel's time ended the second";
  EXPECT_TRUE(this->becomes(std::nullopt));
  this->overlay().showNotice("third");
  EXPECT_TRUE(this->becomes("third"));
  EXPECT_TRUE(this->becomes(std::nullopt));
  this->overlay().showInfo("fourth");
  this->overlay().showProgress(0.5F, "50%");
  this->pass(1);
  EXPECT_EQ(this->fixture_.overlayStatus(), "50%");
  this->overlay().show();
  this->pass(1);
  EXPECT_EQ(this->fixture_.overlayStatus(), "");
}

TYPED_TEST_P(ProgressOverlayContract, WithoutAWindowNothingShowsAndNothingFails) {
  this->fixture_.removeWindow();
  this->overlay().showInfo("unseen");
  this->overlay().dismiss();
  this->overlay().show();
  this->pass(0.05);
  EXPECT_EQ(this->fixture_.overlayStatus(), std::nullopt);
}

TYPED_TEST_P(ProgressOverlayContract, ThePanelShowsOverTheChosenWindowOnly) {
  this->overlay().setWindow(std::make_shared<Window>());  // gone at once
  this->overlay().showInfo("unseen");
  this->pass(0.05);
  EXPECT_EQ(this->fixture_.overlayStatus(), std::nullopt);
  const auto hidden = std::make_shared<Window>();
  this->overlay().setWindow(hidden);
  this->overlay().show();
  this->pass(0.05);
  EXPECT_EQ(this->fixture_.overlayStatus(), std::nullopt) << "it shows over a window that is on no screen";
  this->overlay().setWindow({});
  this->overlay().showInfo("seen");
  EXPECT_TRUE(this->becomes("seen"));
}

TYPED_TEST_P(ProgressOverlayContract, TheVisitorGivesUpWhatIsOnItsWayAndNoMessage) {
  int cancelled = 0;
  this->overlay().show();
  EXPECT_FALSE(this->fixture_.cancel()) << "nothing can be given up";
  this->overlay().setOnCancel([&] { ++cancelled; });
  this->overlay().show();
  EXPECT_TRUE(this->fixture_.cancel());
  this->overlay().showProgress(0.5F, "50%");
  EXPECT_TRUE(this->fixture_.cancel());
  EXPECT_EQ(cancelled, 2);
  this->overlay().showInfo("text");
  EXPECT_FALSE(this->fixture_.cancel());
  EXPECT_EQ(cancelled, 2);
  // What is given up may show something else at once.
  this->overlay().setOnCancel([this] { this->overlay().showInfo("未知错误"); });
  this->overlay().show();
  EXPECT_TRUE(this->fixture_.cancel());
  EXPECT_TRUE(this->becomes("未知错误"));
}

TYPED_TEST_P(ProgressOverlayContract, AnOfferStaysBesideThePanelUntilItIsAnswered) {
  std::string answers;
  const auto offer = [&](const char* status) {
    this->overlay().offer(OverlayOffer{{},
                                       status,
                                       [&, status] {
                                         answers += std::string("retry ") + status + ",";
                                         this->overlay().offer(std::nullopt);
                                       },
                                       [&, status] { answers += std::string("drop ") + status + ","; }});
  };
  offer("1");
  offer("2");
  this->overlay().showInfo("text");
  EXPECT_TRUE(this->becomes("text"));
  this->overlay().dismiss();
  EXPECT_TRUE(this->becomes(std::nullopt));
  EXPECT_EQ(this->fixture_.offered(), "2");
  this->fixture_.answerOffer(false);
  EXPECT_EQ(this->fixture_.offered(), "2");
  this->fixture_.answerOffer(true);
  EXPECT_EQ(this->fixture_.offered(), std::nullopt);
  EXPECT_EQ(answers, "drop 2,retry 2,");
  offer("3");
  this->fixture_.removeWindow();
  offer("4");
  EXPECT_EQ(this->fixture_.offered(), std::nullopt);
}

REGISTER_TYPED_TEST_SUITE_P(ProgressOverlayContract, ALaterCallReplacesAnEarlierOneAndDismissTakesItAway,
                            APanelShownWhileAnotherIsLeavingStays, AnOfferStaysBesideThePanelUntilItIsAnswered,
                            TheVisitorGivesUpWhatIsOnItsWayAndNoMessage,
                            AMessageGoesAfterTheMaximumDismissTimeOfItsOwnAndProgressStays,
                            ThePanelShowsOverTheChosenWindowOnly, WithoutAWindowNothingShowsAndNothingFails);

}  // namespace orivex::contract
