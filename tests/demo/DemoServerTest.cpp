#include <optional>

#include <gtest/gtest.h>

#include "chat/DemoServer.h"

namespace orivex::demo {
namespace {

bool takesConnections(const std::string& address) {
  const ObjectPtr<GSocketClient> client(g_socket_client_new());
  const ObjectPtr<GSocketConnection> connection(
      g_socket_client_connect_to_uri(client.get(), address.c_str(), 80, nullptr, nullptr));
  return connection != nullptr;
}

TEST(DemoServerTest, AnswersWhereItSaysAndEndsWithItsOwner) {
  std::optional<DemoServer> server(std::in_place, [](std::int64_t) {});
  const auto address = server->address();
  EXPECT_TRUE(takesConnections(address));
  server.reset();
  // The runner's time-out is the deadline: a server that stays on would be found here.
  while (takesConnections(address)) g_main_context_iteration(nullptr, FALSE);
}

}  // namespace
}  // namespace orivex::demo
