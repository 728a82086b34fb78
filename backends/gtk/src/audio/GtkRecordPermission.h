#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "../ui/GtkApplicationPort.h"
#include "ConsentFile.h"
#include "MicrophoneDialog.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Subscription.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/RecordPermission.h"

namespace orivex::gtk {

/// Asks the visitor with a dialog over the window of the view and remembers the answer, in a sandbox as elsewhere: no
/// portal asks for microphones. After a refusal, each later question is answered with no at once, and a dialog offers
/// the ways out of it.
class GtkRecordPermission final : public RecordPermission {
 public:
  GtkRecordPermission(MainQueue& queue, const GtkApplicationPort& application, ConsentFile consent)
      : queue_(queue), application_(application), consent_(std::move(consent)) {}

  /// What the visitor has answered; nothing before the first answer.
  std::optional<bool> answer() const { return consent_.answer(); }

  void request(const std::string& applicationName, View& view, Once<void(bool granted)> answer) override;

 private:
  void showDialog(const std::string& applicationName, View& view, bool isRefused);
  void answered(MicrophoneDialog::Answer answer);
  void give(bool granted);

  MainQueue& queue_;
  const GtkApplicationPort& application_;
  const ConsentFile consent_;
  std::vector<Once<void(bool)>> waiting_;
  std::unique_ptr<MicrophoneDialog> dialog_;
  Subscription leaves_;
  Alive alive_;
};

}  // namespace orivex::gtk
