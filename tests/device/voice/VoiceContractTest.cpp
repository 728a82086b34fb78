#include <cerrno>

#include <adwaita.h>
#include <gtest/gtest.h>

#include "av/GtkRecordPermission.h"
#include "contract/AudioContract.h"
#include "support/LogLines.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"

#include "orivex/gtk/Gtk.h"

namespace orivex::contract {
namespace {

class Device {
 public:
  Device() {
    adw_init();
    gtk::install();
    g_setenv("ORIVEX_AUDIO_SOURCE", "audiotestsrc is-live=true volume=0.5", TRUE);
  }

  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;
  ~Device() { g_unsetenv("ORIVEX_AUDIO_SOURCE"); }

  const Platform& platform() const { return Platform::current(); }
  bool wait(const std::function<bool()>& condition, double seconds) { return gtk::wait(condition, seconds); }
  std::string soundPlace(const std::string& name) { return folder_.path() / name; }
  void speak() {}
  void rememberPermission(bool granted) {
    gtk::ConsentFile(gtk::ConsentFile::defaultPath(), program_invocation_short_name).remember(granted);
  }

 private:
  LogLines log_;  // a file that is not there is played
  TemporaryFolder folder_;
};

}  // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, AudioContract, Device);
INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, RecordPermissionContract, Device);

}  // namespace orivex::contract
