#pragma once

#include <cstddef>
#include <string>

#include "GlibMainQueue.h"
#include "net/CurlHttpClient.h"

namespace orivex::bench {

/// The real HTTP client on GLib's main loop.
class OurClient {
 public:
  OurClient();

  struct Uploads {
    double milliseconds = 0;
    double longestHold = 0;  ///< Milliseconds that the main thread works between two waits of its loop.
    std::size_t progress = 0;
  };

  /// Uploads a file `times` times, each when the one before has ended.
  Uploads upload(const std::string& url, const std::string& file, int times);

 private:
  void uploadNext();

  gtk::GlibMainQueue queue_;
  gtk::CurlHttpClient client_{queue_};
  std::string url_;
  std::string file_;
  int left_ = 0;
  Uploads uploads_;
};

}  // namespace orivex::bench
