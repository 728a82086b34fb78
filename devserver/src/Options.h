#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "faults/Faults.h"

namespace orivex::devserver {

/// What the command line asks for.
struct Options {
  std::string host = "127.0.0.1";
  /// 0 lets the system choose.
  std::uint16_t port = 8700;
  std::filesystem::path tlsCertificate;
  std::filesystem::path tlsKey;
  /// The access tokens that pass; none given means that any token passes that is not expired.
  std::vector<std::string> tokens;
  /// Where uploaded files are kept; none given means a fresh folder that goes with the server.
  std::optional<std::filesystem::path> files;
  /// The developer's own chat page; none given means the one that travels inside the program.
  std::optional<std::filesystem::path> page;
  /// Bytes of the largest file that an upload may carry.
  std::int64_t maxUpload = std::int64_t{256} * 1024 * 1024;
  /// Milliseconds that the agent "types" before each answer.
  unsigned agentDelay = 900;
  std::vector<Fault> faults;
  bool exitWithStdin = false;
  bool help = false;
};

/// A command line that cannot be understood; what() is one line for the person who typed it.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads the command line, without the program's name. Throws UsageError.
[[nodiscard]] Options parseOptions(const std::vector<std::string>& arguments);

/// The text of `--help`.
[[nodiscard]] std::string usage();

}  // namespace orivex::devserver
