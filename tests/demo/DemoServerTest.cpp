#include <optional>

#include <gtest/gtest.h>

#include "DemoServer.h"

namespace orivex::demo {
namespace {

bool takesConnections(const std::string& address) {
  const ObjectPtr<GSocketClient> client(g_socket_client_new());
  const ObjectPtr<GSocketConnection> connection(
      g_socket_client_connect_to_uri(client.get(), address.c_str(), 80, nullptr, nullptr));
  return connection != nullptr;
}

TEST(DemoServerTest, AnswersWhereItSaysAndEndsWithItsOwner) {
  std::string address;
  std::string failure;
  std::optional<DemoServer> server;
  server.emplace(DemoServer::Handlers{.started = [&](const std::string& found) { address = found; },
                                      .failed = [&](const std::string& reason) { failure = reason; }});
  while (address.empty() && failure.empty()) g_main_context_iteration(nullptr, TRUE);
  ASSERT_EQ(failure, "");
  EXPECT_TRUE(takesConnections(address));
  server.reset();
  // The runner's time-out is the deadline: a server that stays on would be found here.
  while (takesConnections(address)) g_main_context_iteration(nullptr, FALSE);
}

TEST(DemoServerTest, IsSilentOnceItsOwnerIsGone) {
  bool called = false;
  {
    const DemoServer server({.started = [&](auto&) { called = true; }, .failed = [&](auto&) { called = true; }});
  }
  for (int turn = 0; turn < 100; ++turn) {
    g_main_context_iteration(nullptr, FALSE);
    g_usleep(2000);
  }
  EXPECT_FALSE(called);
}

}  // namespace
}  // namespace orivex::demo
