#include <gtest/gtest.h>

#include "contract/AudioContract.h"
#include "contract/FileManagerContract.h"
#include "contract/RecordPermissionContract.h"

#include "orivex/testing/VirtualDevice.h"

namespace orivex::contract {
namespace {

class Virtual {
 public:
  const Platform& platform() { return device_.platform(); }
  bool wait(const std::function<bool()>& condition, double seconds) {
    return device_.mainQueue().advanceUntil(condition, seconds);
  }
  std::string soundPlace(const std::string& name) { return "/virtual/" + name; }
  void speak() { device_.audioSession().setPeakPower(-6); }
  void rememberPermission(bool granted) { device_.recordPermission().remember(granted); }

 private:
  testing::VirtualDevice device_;
};

}  // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, AudioContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, FileManagerContract, Virtual);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, RecordPermissionContract, Virtual);

}  // namespace orivex::contract
