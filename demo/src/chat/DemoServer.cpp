#include "DemoServer.h"

#include <filesystem>
#include <stdexcept>
#include <string_view>

namespace orivex::demo {
namespace {

constexpr std::string_view announcement = "listening on ";

std::string serverProgram() {
  return std::filesystem::read_symlink("/proc/self/exe").replace_filename("orivex-devserver").string();
}

}  // namespace

DemoServer::DemoServer() {
  GError* raised = nullptr;
  // The server ends when its standard input does, and that ends with this process.
  const auto pipes = static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDIN_PIPE | G_SUBPROCESS_FLAGS_STDOUT_PIPE);
  process_.reset(
      g_subprocess_new(pipes, &raised, serverProgram().c_str(), "--port", "0", "--exit-with-stdin", nullptr));
  if (const ErrorPtr error(raised); error) throw std::runtime_error(error->message);
  const ObjectPtr<GDataInputStream> output(g_data_input_stream_new(g_subprocess_get_stdout_pipe(process_.get())));
  const CharPtr line(g_data_input_stream_read_line_utf8(output.get(), nullptr, nullptr, nullptr));
  const std::string text = line ? line.get() : "";
  if (!text.starts_with(announcement)) throw std::runtime_error("the chat server did not start: " + text);
  address_ = text.substr(announcement.size());
}

DemoServer::~DemoServer() {
  // GLib keeps the process's object, and with it the pipe, until the process ends.
  g_output_stream_close(g_subprocess_get_stdin_pipe(process_.get()), nullptr, nullptr);
}

}  // namespace orivex::demo
