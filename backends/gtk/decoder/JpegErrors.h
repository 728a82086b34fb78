#pragma once

#include <array>
#include <csetjmp>
#include <cstdio>  // jpeglib.h needs it
#include <string>

#include <jpeglib.h>

namespace orivex::gtk {

/// libjpeg's error handler: what libjpeg gives up on comes back to `run` instead of ending the process.
class JpegErrors {
 public:
  JpegErrors();
  JpegErrors(const JpegErrors&) = delete;
  JpegErrors& operator=(const JpegErrors&) = delete;
  ~JpegErrors() = default;

  jpeg_error_mgr* manager() { return &state_.manager; }

  /// Runs `work`, which calls libjpeg, and returns whether it came to its end. Giving up leaves its frames by a jump:
  /// nothing in them may have a destructor, so buffers belong to the caller. Does not nest.
  template <class Work>
  [[nodiscard]] bool run(const Work& work) {
    if (setjmp(state_.jump) != 0) return false;
    work();
    return true;
  }

  /// Why `run` failed last.
  std::string message() const { return state_.message.data(); }

 private:
  struct State {
    jpeg_error_mgr manager;  // in front: libjpeg hands out its address
    std::jmp_buf jump;
    std::array<char, JMSG_LENGTH_MAX> message;
  };

  [[noreturn]] static void giveUp(j_common_ptr info);
  static void note(j_common_ptr info, int level);

  State state_{};
};

}  // namespace orivex::gtk
