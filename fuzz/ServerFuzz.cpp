// What a client sends to the chat server on one connection: requests, forms, the frames of a web socket.

#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include "Expect.h"
#include "Server.h"

namespace orivex::devserver {
namespace {

using fuzz::expect;
using Clock = std::chrono::steady_clock;

// Connected to the server at "http://127.0.0.1:port".
int connection(const std::string& address) {
  sockaddr_in to{};
  to.sin_family = AF_INET;
  to.sin_port = htons(static_cast<std::uint16_t>(std::stoi(address.substr(address.rfind(':') + 1))));
  to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  expect(connect(client, reinterpret_cast<const sockaddr*>(&to), sizeof to) == 0, "the server takes connections");
  return client;
}

bool iterate() {
  bool any = false;
  while (g_main_context_iteration(nullptr, FALSE)) any = true;
  return any;
}

// Lets the server work until it closes the connection or has nothing more to do.
std::string answer(int client) {
  constexpr auto longestSilence = std::chrono::milliseconds(5);
  std::string received;
  std::array<char, 4096> part{};
  for (auto last = Clock::now(); Clock::now() - last < longestSilence;) {
    if (iterate()) last = Clock::now();
    const auto count = recv(client, part.data(), part.size(), MSG_DONTWAIT);
    if (count > 0) received.append(part.data(), static_cast<std::size_t>(count));
    if (count == 0 || (count < 0 && errno != EAGAIN)) break;
  }
  return received;
}

void serve(std::string_view bytes) {
  Options options;
  options.port = 0;
  options.agentDelay = 0;
  {
    const Server server(options);
    const int client = connection(server.address());
    expect(send(client, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size()), "it is sent");
    shutdown(client, SHUT_WR);
    const auto received = answer(client);
    expect(received.empty() || received.starts_with("HTTP/1."), "the server speaks HTTP");
    close(client);
    iterate();
  }
  iterate();
}

}  // namespace
}  // namespace orivex::devserver

// libsoup 3.2 loses the path of a request that it cannot read, and of its frames too little is known to leave out
// those. NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" const char* __asan_default_options() {
  return "detect_leaks=0";
}

// The name that the fuzzer calls.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  orivex::devserver::serve({reinterpret_cast<const char*>(data), size});
  return 0;
}
