#pragma once

#include <functional>
#include <memory>

#include "orivex/platform/base/Once.h"
#include "orivex/platform/ports/HttpClient.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// Brings an upload's progress and its end to the main thread, where the two callbacks also go at last. Of the progress
/// only so much is reported as the main thread keeps up with. Made on the main thread, then used by one other thread.
class UploadReporter {
 public:
  /// `queue` must outlive the reporter.
  UploadReporter(MainQueue& queue, std::function<void(double fraction)> progress, Once<void(UploadReply)> completion);

  /// Reports `fraction` when it is more than was reported before, and not too soon after that.
  void progress(double fraction);

  /// Reports the end. Once, the last call.
  void finish(UploadReply reply);

 private:
  struct Recipient;

  MainQueue& queue_;
  std::shared_ptr<Recipient> recipient_;
};

}  // namespace orivex::gtk
