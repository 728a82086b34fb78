#include "Action.h"

#include "orivex/platform/base/Text.h"

namespace orivex::testing {
namespace {

std::string pass(World& world, Choice choice) {
  static const double times[] = {0, 0.1, 0, 0.5, 0.05, 1, 2, 0.3, 5, 11};
  const double seconds = choice.of(times);
  world.pass(seconds);
  return doubleText(seconds) + " s pass";
}

std::string load(World& world, Choice choice) {
  static const char* const names[] = {"loads succeed", "loads hang", "loads fail", "loads are led to http"};
  world.loads = choice.below(4);
  return names[world.loads];
}

std::string check(World& world, Choice choice) {
  static const char* const names[] = {"page checks succeed", "page checks are refused", "page checks fail",
                                      "page checks are not answered"};
  world.checks = choice.below(4);
  return names[world.checks];
}

std::string upload(World& world, Choice choice) {
  static const char* const names[] = {"uploads succeed", "uploads take five seconds", "uploads are refused",
                                      "uploads break", "uploads are not answered"};
  world.uploads = choice.below(5);
  return names[world.uploads];
}

}  // namespace

std::vector<Action> networkActions() {
  return {{60, pass}, {2, load}, {2, check}, {3, upload}};
}

}  // namespace orivex::testing
