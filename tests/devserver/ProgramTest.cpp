#include <csignal>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <libsoup/soup.h>

#include "ServerProcess.h"
#include "support/TemporaryFolder.h"

namespace orivex::testing {
namespace {

TEST(Program, ExplainsACommandLineThatItCannotUse) {
  struct Case {
    std::vector<std::string> arguments;
    int status;
    const char* text;
  };
  const Case cases[] = {
      {{"--port"}, 2, "--port is unknown or lacks its value"},
      {{"--max-upload", "10MB"}, 2, "--max-upload needs a whole number"},
      {{"--colour=blue"}, 2, "unknown option --colour"},
      {{"--tls-key", "k.pem"}, 2, "--tls-certificate and --tls-key go together"},
      {{"--fault", "page"}, 2, "--fault: expected TARGET:KIND"},
      {{"--fault", "upload:redirect"}, 2, "\"redirect\" cannot happen to the upload"},
      {{"--fault", "socket:drop"}, 2, "nothing is open yet"},
      {{"--host", "nowhere", "--port", "0"}, 1, "not an address to listen on: nowhere"},
      {{"--port", "0", "--files", "/dev/null/files"}, 1, "/dev/null/files"},
      {{"--port", "0", "--page", "/dev/null"}, 1, "--page: there is no index.html to read in /dev/null"},
      {{"--port", "0", "--tls-certificate", "/none", "--tls-key", "/none"}, 1, "the certificate cannot be used"},
  };
  for (const auto& testCase : cases) {
    const auto result = runProgram(testCase.arguments);
    EXPECT_EQ(result.status, testCase.status) << testCase.text;
    EXPECT_NE(result.errors.find(testCase.text), std::string::npos) << result.errors;
    EXPECT_EQ(result.output, "");
  }
  const auto help = runProgram({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.output.find("--exit-with-stdin"), std::string::npos);
}

TEST(Program, PrintsOneLineAndEndsCleanlyWhenTold) {
  for (const int signal : {SIGINT, SIGTERM, 0}) {
    ServerProcess server;
    const ObjectPtr<GSocketClient> client(g_socket_client_new());
    const ObjectPtr<GSocketConnection> open(
        g_socket_client_connect_to_uri(client.get(), server.address().c_str(), 80, nullptr, nullptr));
    ASSERT_TRUE(open);
    if (signal)
      server.sendSignal(signal);
    else
      server.closeInput();
    EXPECT_EQ(server.waitForEnd(), 0) << "signal " << signal;
    EXPECT_EQ(server.restOfOutput(), "");
  }
}

TEST(Program, ServesHttps) {
  const TemporaryFolder folder;
  const auto certificate = (folder.path() / "certificate.pem").string();
  const auto key = (folder.path() / "key.pem").string();
  const auto command = "openssl req -x509 -newkey rsa:2048 -nodes -days 1 -subj /CN=localhost -keyout " + key +
                       " -out " + certificate + " 2>/dev/null";
  if (std::system(command.c_str()) != 0) GTEST_SKIP() << "no openssl to make a certificate with";

  const ServerProcess server({"--tls-certificate", certificate, "--tls-key", key});
  EXPECT_TRUE(server.address().starts_with("https://127.0.0.1:")) << server.address();
  const ObjectPtr<SoupSession> session(soup_session_new());
  const auto page = server.address() + "/api/oauth2/ciphertext/app/client_chat?access_token=K";
  const ObjectPtr<SoupMessage> message(soup_message_new("GET", page.c_str()));
  const auto accept = [](SoupMessage*, GTlsCertificate*, GTlsCertificateFlags, gpointer) -> gboolean { return TRUE; };
  g_signal_connect(message.get(), "accept-certificate", G_CALLBACK(+accept), nullptr);
  GBytes* body = soup_session_send_and_read(session.get(), message.get(), nullptr, nullptr);
  EXPECT_EQ(soup_message_get_status(message.get()), 200U);
  g_bytes_unref(body);
}

}  // namespace
}  // namespace orivex::testing
