#include "ServerProcess.h"

#include <string_view>

#include <gtest/gtest.h>

#include "HttpClient.h"

namespace orivex::testing {
namespace {

std::vector<const char*> commandLine(const std::vector<std::string>& arguments) {
  std::vector<const char*> line{DEVSERVER_PROGRAM};
  for (const auto& argument : arguments) line.push_back(argument.c_str());
  line.push_back(nullptr);
  return line;
}

GSubprocess* spawn(const std::vector<std::string>& arguments, int flags) {
  return g_subprocess_newv(commandLine(arguments).data(), static_cast<GSubprocessFlags>(flags), nullptr);
}

std::string takeString(char* text) {
  std::string copy = text ? text : "";
  g_free(text);
  return copy;
}

}  // namespace

ServerProcess::ServerProcess(const std::vector<std::string>& arguments) {
  std::vector<std::string> all{"--port", "0", "--agent-delay", "0", "--exit-with-stdin"};
  all.insert(all.end(), arguments.begin(), arguments.end());
  process_.reset(spawn(all, G_SUBPROCESS_FLAGS_STDIN_PIPE | G_SUBPROCESS_FLAGS_STDOUT_PIPE));
  if (!process_) throw std::runtime_error("the server program cannot be started");
  output_.reset(g_data_input_stream_new(g_subprocess_get_stdout_pipe(process_.get())));
  const auto line = takeString(g_data_input_stream_read_line(output_.get(), nullptr, nullptr, nullptr));
  constexpr std::string_view greeting = "listening on ";
  if (!line.starts_with(greeting)) throw std::runtime_error("unexpected first line: " + line);
  address_ = line.substr(greeting.size());
  port_ = static_cast<std::uint16_t>(std::stoi(address_.substr(address_.rfind(':') + 1)));
}

ServerProcess::~ServerProcess() {
  closeInput();
  waitForEnd();
}

void ServerProcess::closeInput() {
  g_output_stream_close(g_subprocess_get_stdin_pipe(process_.get()), nullptr, nullptr);
}

void ServerProcess::sendSignal(int number) {
  g_subprocess_send_signal(process_.get(), number);
}

int ServerProcess::waitForEnd() {
  g_subprocess_wait(process_.get(), nullptr, nullptr);
  return g_subprocess_get_if_exited(process_.get()) ? g_subprocess_get_exit_status(process_.get()) : -1;
}

std::string ServerProcess::restOfOutput() {
  gsize size = 0;
  return takeString(g_data_input_stream_read_upto(output_.get(), "", 0, &size, nullptr, nullptr));
}

void ServerProcess::addFaults(const nlohmann::json& faults) const {
  const auto reply = fetch(port_, {.method = "POST", .path = "/_dev/faults", .body = faults.dump()});
  ASSERT_EQ(reply.status, 200) << reply.body;
}

RunResult runProgram(const std::vector<std::string>& arguments) {
  const ObjectPtr<GSubprocess> process(
      spawn(arguments, G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_PIPE));
  char* output = nullptr;
  char* errors = nullptr;
  g_subprocess_communicate_utf8(process.get(), nullptr, nullptr, &output, &errors, nullptr);
  return {g_subprocess_get_exit_status(process.get()), takeString(output), takeString(errors)};
}

}  // namespace orivex::testing
