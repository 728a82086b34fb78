#include "DemoServer.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace orivex::demo {
namespace {

constexpr std::string_view announcement = "listening on ";
constexpr std::string_view unreadAnnouncement = "unread ";

std::string serverProgram() {
  return std::filesystem::read_symlink("/proc/self/exe").replace_filename("orivex-devserver").string();
}

}  // namespace

DemoServer::DemoServer(std::function<void(std::int64_t)> unread)
    : unread_(std::move(unread)), reading_(g_cancellable_new()) {
  GError* raised = nullptr;
  // The server ends when its standard input does, and that ends with this process.
  const auto pipes = static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDIN_PIPE | G_SUBPROCESS_FLAGS_STDOUT_PIPE);
  process_.reset(
      g_subprocess_new(pipes, &raised, serverProgram().c_str(), "--port", "0", "--exit-with-stdin", nullptr));
  if (const ErrorPtr error(raised); error) throw std::runtime_error(error->message);
  output_.reset(g_data_input_stream_new(g_subprocess_get_stdout_pipe(process_.get())));
  const CharPtr line(g_data_input_stream_read_line_utf8(output_.get(), nullptr, nullptr, nullptr));
  const std::string text = line ? line.get() : "";
  if (!text.starts_with(announcement)) throw std::runtime_error("the chat server did not start: " + text);
  address_ = text.substr(announcement.size());
  readLine();
}

void DemoServer::readLine() {
  g_data_input_stream_read_line_async(output_.get(), G_PRIORITY_DEFAULT, reading_.get(), lineCame, this);
}

void DemoServer::lineCame(GObject* output, GAsyncResult* result, gpointer self) noexcept {
  auto* const stream = G_DATA_INPUT_STREAM(output);
  const CharPtr line(g_data_input_stream_read_line_finish_utf8(stream, result, nullptr, nullptr));
  if (!line) return;  // the server has ended, or this object has
  auto& server = *static_cast<DemoServer*>(self);
  const std::string_view text = line.get();
  if (text.starts_with(unreadAnnouncement)) server.unread_(std::atoll(line.get() + unreadAnnouncement.size()));
  server.readLine();
}

DemoServer::~DemoServer() {
  g_cancellable_cancel(reading_.get());
  // GLib keeps the process's object, and with it the pipe, until the process ends.
  g_output_stream_close(g_subprocess_get_stdin_pipe(process_.get()), nullptr, nullptr);
}

}  // namespace orivex::demo
