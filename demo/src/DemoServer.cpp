#include "DemoServer.h"

#include <filesystem>
#include <string_view>

namespace orivex::demo {
namespace {

constexpr std::string_view announcement = "listening on ";

std::string serverProgram() {
  return std::filesystem::read_symlink("/proc/self/exe").replace_filename("orivex-devserver").string();
}

}  // namespace

DemoServer::DemoServer(Handlers handlers) : handlers_(std::move(handlers)), cancellable_(g_cancellable_new()) {
  const auto program = serverProgram();
  GError* raised = nullptr;
  // The server ends when its standard input does, and that ends with this process, however this process ends.
  const auto pipes = static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDIN_PIPE | G_SUBPROCESS_FLAGS_STDOUT_PIPE);
  process_.reset(g_subprocess_new(pipes, &raised, program.c_str(), "--port", "0", "--exit-with-stdin", nullptr));
  if (const ErrorPtr error(raised); error) {
    // Not from within the constructor: the caller does not have this object yet.
    struct Late {
      std::function<void(const std::string&)> failed;
      std::string reason;
    };
    auto late = std::make_unique<Late>(Late{handlers_.failed, error->message});
    const auto tell = [](gpointer data) {
      const auto* told = static_cast<Late*>(data);
      told->failed(told->reason);
      return G_SOURCE_REMOVE;
    };
    g_idle_add_full(G_PRIORITY_DEFAULT, tell, late.release(),
                    [](gpointer data) { std::unique_ptr<Late>(static_cast<Late*>(data)); });
    return;
  }
  output_.reset(g_data_input_stream_new(g_subprocess_get_stdout_pipe(process_.get())));
  readLine();
}

DemoServer::~DemoServer() {
  g_cancellable_cancel(cancellable_.get());
  // GLib keeps the process's object, and with it the pipe, until the process ends.
  if (process_) g_output_stream_close(g_subprocess_get_stdin_pipe(process_.get()), nullptr, nullptr);
}

void DemoServer::readLine() {
  const auto finished = [](GObject* source, GAsyncResult* result, gpointer self) noexcept {
    GError* raised = nullptr;
    const CharPtr line(
        g_data_input_stream_read_line_finish_utf8(G_DATA_INPUT_STREAM(source), result, nullptr, &raised));
    const ErrorPtr error(raised);
    // Cancelled means that the object is gone.
    if (error && g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED)) return;
    static_cast<DemoServer*>(self)->tookLine(line ? line.get() : "");
  };
  g_data_input_stream_read_line_async(output_.get(), G_PRIORITY_DEFAULT, cancellable_.get(), finished, this);
}

void DemoServer::tookLine(const std::string& line) {
  if (line.starts_with(announcement)) {
    handlers_.started(line.substr(announcement.size()));
  } else {
    handlers_.failed("the chat server did not start: " + line);
  }
}

}  // namespace orivex::demo
