#include "OurClient.h"

#include <algorithm>
#include <ctime>
#include <stdexcept>

#include <glib.h>

#include "Bench.h"

namespace orivex::bench {
namespace {

double lastWake = 0;
double longestHold = 0;

// Of this thread's own work: what else the machine does is not counted.
double workedMilliseconds() {
  timespec worked{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &worked);
  return static_cast<double>(worked.tv_sec) * 1e3 + static_cast<double>(worked.tv_nsec) / 1e6;
}

// Stands between the main loop and its waits.
gint timedPoll(GPollFD* descriptors, guint count, gint timeout) {
  longestHold = std::max(longestHold, workedMilliseconds() - lastWake);
  const auto ready = g_poll(descriptors, count, timeout);
  lastWake = workedMilliseconds();
  return ready;
}

}  // namespace

OurClient::OurClient() {
  g_setenv("no_proxy", "*", TRUE);
  g_main_context_set_poll_func(nullptr, timedPoll);
}

OurClient::Uploads OurClient::upload(const std::string& url, const std::string& file, int times) {
  url_ = url;
  file_ = file;
  left_ = times;
  uploads_ = {};
  longestHold = 0;
  const double start = milliseconds();
  lastWake = workedMilliseconds();
  uploadNext();
  while (left_ > 0) g_main_context_iteration(nullptr, TRUE);
  uploads_.milliseconds = milliseconds() - start;
  uploads_.longestHold = longestHold;
  return uploads_;
}

void OurClient::uploadNext() {
  client_.upload(
      {.url = *Url::parse(url_),
       .headers = {{"Content-Type", "multipart/form-data"}},
       .file = FilePart{"file", FilePart::Path{file_}, "file", "text/plain"},
       .fields = {}},
      [this](double) { ++uploads_.progress; },
      [this](UploadReply reply) {
        if (!reply.response || reply.response->status != 200) throw std::runtime_error("the upload failed");
        if (--left_ > 0) uploadNext();
      });
}

}  // namespace orivex::bench
