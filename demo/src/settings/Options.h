#pragma once

#include <optional>
#include <stdexcept>
#include <string>

#include "Settings.h"

namespace orivex::demo {

/// What the command line asks for; what it leaves out stays as it was remembered.
struct Options {
  std::optional<std::string> server{};
  std::optional<std::string> entryId{};
  std::optional<std::string> key{};
  std::optional<bool> push{};
  std::optional<double> statusBarHeight{};
  std::optional<double> topInset{};
  std::optional<double> bottomInset{};
  bool frameless = false;
  bool reportPositions = false;

  void applyTo(Settings& settings) const;
};

/// A command line that cannot be understood; what() is one line for the person who typed it.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads the command line. `--help` prints its text and ends the process. Throws UsageError.
Options parseOptions(int argumentCount, char** arguments);

}  // namespace orivex::demo
