#include <csignal>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <glib-unix.h>
#include <unistd.h>

#include "Options.h"
#include "Server.h"

namespace {

using namespace orivex::devserver;

struct UnrefLoop {
  void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
};

gboolean quit(gpointer loop) {
  g_main_loop_quit(static_cast<GMainLoop*>(loop));
  return G_SOURCE_CONTINUE;
}

/// Ends the loop with standard input; what comes before its end is thrown away.
gboolean quitAtEnd(gint descriptor, GIOCondition, gpointer loop) {
  char bytes[256];
  if (read(descriptor, bytes, sizeof bytes) > 0) return G_SOURCE_CONTINUE;
  g_main_loop_quit(static_cast<GMainLoop*>(loop));
  return G_SOURCE_REMOVE;
}

void serve(const Options& options) {
  const std::unique_ptr<GMainLoop, UnrefLoop> loop(g_main_loop_new(nullptr, FALSE));
  const Server server(options);
  g_unix_signal_add(SIGINT, quit, loop.get());
  g_unix_signal_add(SIGTERM, quit, loop.get());
  if (options.exitWithStdin)
    g_unix_fd_add(STDIN_FILENO, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR), quitAtEnd, loop.get());
  std::cout << "listening on " << server.address() << std::endl;
  g_main_loop_run(loop.get());
}

}  // namespace

int main(int argumentCount, char** arguments) {
  try {
    const auto options = parseOptions({arguments + 1, arguments + argumentCount});
    if (options.help)
      std::cout << usage();
    else
      serve(options);
    return 0;
  } catch (const UsageError& error) {
    std::cerr << "orivex-devserver: " << error.what() << "\nTry --help.\n";
    return 2;
  } catch (const std::exception& error) {
    std::cerr << "orivex-devserver: " << error.what() << '\n';
    return 1;
  }
}
