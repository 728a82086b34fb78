#pragma once

#include <memory>
#include <string>
#include <vector>

#include "../ui/GtkApplicationPort.h"
#include "ConsentFile.h"
#include "MicrophoneDialog.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/RecordPermission.h"

namespace orivex::gtk {

/// Asks the visitor with a dialog over the front window and remembers the answer. After a refusal, each later question
/// is answered with no at once, and a dialog offers the ways out of it. A sandboxed application asks the portal.
class GtkRecordPermission final : public RecordPermission {
 public:
  GtkRecordPermission(MainQueue& queue, const GtkApplicationPort& application, ConsentFile consent, bool isSandboxed)
      : queue_(queue), application_(application), consent_(std::move(consent)), isSandboxed_(isSandboxed) {}

  /// Whether this process runs in a Flatpak sandbox.
  static bool isSandboxed();

  void request(const std::string& applicationName, Once<void(bool granted)> answer) override;

 private:
  void showDialog(const std::string& applicationName, bool isRefused);
  void answered(MicrophoneDialog::Answer answer);
  void give(bool granted);

  MainQueue& queue_;
  const GtkApplicationPort& application_;
  const ConsentFile consent_;
  const bool isSandboxed_;
  std::vector<Once<void(bool)>> waiting_;
  std::unique_ptr<MicrophoneDialog> dialog_;
  Alive alive_;
};

}  // namespace orivex::gtk
