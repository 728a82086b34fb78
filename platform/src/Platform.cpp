#include "orivex/platform/Platform.h"

#include "orivex/platform/base/Log.h"

namespace orivex {
namespace {

const Platform* installed = nullptr;

}  // namespace

void Platform::install(const Platform* platform) {
  installed = platform;
}

bool Platform::isInstalled() {
  return installed != nullptr;
}

const Platform& Platform::current() {
  if (!installed) {
    fatalError("OrivexSDK/Platform",
               "no backend is installed. Call orivex::gtk::install() (or orivex::testing::install()) first.");
  }
  return *installed;
}

}  // namespace orivex
