#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include <gio/gio.h>

namespace orivex::testing {

struct UnrefObject {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using ObjectPtr = std::unique_ptr<T, UnrefObject>;

/// The chat server as a child process on a port of the system's choice. It ends with its standard input, so that no
/// test leaves one behind.
class ServerProcess {
 public:
  /// Starts the server and waits until it listens. `arguments` come after the ones that every test needs.
  explicit ServerProcess(const std::vector<std::string>& arguments = {});
  ServerProcess(const ServerProcess&) = delete;
  ServerProcess& operator=(const ServerProcess&) = delete;
  ~ServerProcess();

  [[nodiscard]] const std::string& address() const { return address_; }
  [[nodiscard]] std::uint16_t port() const { return port_; }

  /// Closes the server's standard input.
  void closeInput();
  void sendSignal(int number);
  /// Waits for the end and returns the exit status, or -1 when a signal ended it.
  int waitForEnd();
  /// What the server printed after its first line. Waits for its end.
  std::string restOfOutput();

  /// Adds faults as the control interface takes them.
  void addFaults(const nlohmann::json& faults) const;

 private:
  ObjectPtr<GSubprocess> process_;
  ObjectPtr<GDataInputStream> output_;
  std::string address_;
  std::uint16_t port_ = 0;
};

/// Runs the program to its end with these arguments only.
struct RunResult {
  int status;
  std::string output;
  std::string errors;
};
[[nodiscard]] RunResult runProgram(const std::vector<std::string>& arguments);

}  // namespace orivex::testing
