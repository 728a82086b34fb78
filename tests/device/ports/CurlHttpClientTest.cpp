#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <gio/gio.h>
#include <gtest/gtest.h>

#include "../GtkFixture.h"
#include "GlibMainQueue.h"
#include "SocketServer.h"
#include "TlsServer.h"
#include "glib/GRef.h"
#include "net/CurlHttpClient.h"

namespace orivex::gtk {
namespace {

using Answer = SocketServer::Answer;
using Then = SocketServer::Then;

constexpr double patience = 10;

UrlRequest get(const std::string& url, double timeout = patience) {
  return {*Url::parse(url), timeout, {}};
}

std::string gzip(const std::string& text) {
  const auto compressor = GRef<GZlibCompressor>::adopt(g_zlib_compressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP, 1));
  std::string packed(text.size(), '\0');
  gsize read = 0;
  gsize written = 0;
  g_converter_convert(G_CONVERTER(compressor.get()), text.data(), text.size(), packed.data(), packed.size(),
                      G_CONVERTER_INPUT_AT_END, &read, &written, nullptr);
  packed.resize(written);
  return packed;
}

class CurlHttpClientTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { g_setenv("no_proxy", "*", TRUE); }

  std::optional<HttpResult> fetch(const UrlRequest& request) {
    std::optional<HttpResult> result;
    client_->send(request, [&](HttpResult got) { result = std::move(got); });
    EXPECT_FALSE(result) << "answered inside the call";
    EXPECT_TRUE(wait([&] { return result.has_value(); }, patience)) << request.url.absoluteString();
    return result;
  }

  HttpResponse response(const UrlRequest& request) {
    const auto result = fetch(request);
    if (result && std::holds_alternative<HttpResponse>(*result)) return std::get<HttpResponse>(*result);
    ADD_FAILURE() << "no reply from " << request.url.absoluteString() << ": "
                  << (result ? std::get<TransportError>(*result).description : "nothing");
    return {};
  }

  GlibMainQueue queue_;
  std::unique_ptr<CurlHttpClient> client_ = std::make_unique<CurlHttpClient>(queue_);
};

TEST_F(CurlHttpClientTest, SendsTheHeadersOfTheRequestAndNothingOfItsOwnInTheirPlace) {
  SocketServer server([](const std::string&) { return Answer{reply(200, "")}; });
  auto request = get(server.url("/chat?a=%7B1%7D"));
  request.headers = {{"User-Agent", "Kit/1.0(x86_64)"}, {"x-empty", ""}, {"Accept", "text/html"}};
  EXPECT_EQ(response(request).status, 200);
  ASSERT_EQ(server.requests().size(), 1U);
  const auto head = server.requests().front();
  EXPECT_TRUE(head.starts_with("GET /chat?a=%7B1%7D HTTP/1.1\r\n")) << head;
  for (const char* line : {"\r\nUser-Agent: Kit/1.0(x86_64)\r\n", "\r\nx-empty:\r\n", "\r\nAccept: text/html\r\n",
                           "\r\nAccept-Encoding: gzip, deflate\r\n"}) {
    EXPECT_NE(head.find(line), std::string::npos) << "no" << line << "in\n" << head;
  }
}

TEST_F(CurlHttpClientTest, GoesThroughTheProxyOfTheEnvironment) {
  SocketServer proxy([](const std::string&) { return Answer{reply(200, "by proxy")}; });
  g_unsetenv("no_proxy");
  g_setenv("http_proxy", proxy.url("").c_str(), TRUE);
  EXPECT_EQ(response(get("http://chat.invalid/page")).body, "by proxy");
  g_unsetenv("http_proxy");
  g_setenv("no_proxy", "*", TRUE);
  EXPECT_TRUE(proxy.requests().front().starts_with("GET http://chat.invalid/page HTTP/1.1\r\n"));
}

TEST_F(CurlHttpClientTest, TransportFailuresAreToldInWordsAndTimeOutsByTheirCode) {
  SocketServer server([](const std::string& target) -> Answer {
    if (target == "/silent") return {"", Then::silence};
    if (target == "/stalls") return {"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf", Then::silence};
    if (target == "/reset") return {"", Then::reset};
    if (target == "/cut") return {"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf", Then::close};
    if (target == "/loop") return {reply(302, "", "Location: /loop\r\n")};
    if (target == "/file") return {reply(302, "", "Location: file:///etc/hostname\r\n")};
    return {"this is no HTTP", Then::close};
  });
  const TlsServer selfSigned;
  struct Case {
    std::string url;
    int code;
    const char* words;
  };
  const Case cases[] = {
      {server.url("/silent"), TransportError::timedOut, "timed out"},
      {server.url("/stalls"), TransportError::timedOut, "timed out"},
      {server.url("/reset"), TransportError::other, "reset"},
      {server.url("/cut"), TransportError::other, "remaining"},
      {server.url("/loop"), TransportError::other, "20"},
      {server.url("/file"), TransportError::other, "file"},
      {server.url("/nonsense"), TransportError::other, "HTTP/0.9"},
      {selfSigned.url(), TransportError::other, "certificate"},
      {"http://127.0.0.1:1/", TransportError::other, "connect"},
      {"ftp://127.0.0.1/", TransportError::other, "ftp"},
      {"file:///etc/hostname", TransportError::other, "file"},
      {"127.0.0.1/path", TransportError::other, "not supported"},
      {"/path", TransportError::other, ""},
  };
  for (const auto& [url, code, words] : cases) {
    SCOPED_TRACE(url);
    const auto result = fetch(get(url, code == TransportError::timedOut ? 0.3 : patience));
    ASSERT_TRUE(result && std::holds_alternative<TransportError>(*result));
    const auto& error = std::get<TransportError>(*result);
    EXPECT_EQ(error.code, code);
    EXPECT_FALSE(error.description.empty());
    EXPECT_NE(error.description.find(words), std::string::npos) << error.description;
  }
}

TEST_F(CurlHttpClientTest, FollowsAsManyRedirectsAsABrowserWithTheirCookies) {
  SocketServer server([](const std::string& target) -> Answer {
    const int left = std::stoi(target.substr(1));
    if (left == 0) return {reply(200, "arrived")};
    return {reply(left % 2 ? 302 : 308, "",
                  "Set-Cookie: step=" + std::to_string(left) + "\r\nLocation: /" + std::to_string(left - 1) + "\r\n")};
  });
  EXPECT_EQ(response(get(server.url("/20"))).body, "arrived");
  ASSERT_EQ(server.requests().size(), 21U);
  EXPECT_NE(server.requests().back().find("\r\nCookie: step=1\r\n"), std::string::npos) << server.requests().back();
  response(get(server.url("/0")));
  EXPECT_EQ(server.requests().back().find("Cookie"), std::string::npos) << "a cookie outlived its exchange";
}

TEST_F(CurlHttpClientTest, TheTimeOutCoversAllRedirectsTogether) {
  SocketServer server([](const std::string& target) -> Answer {
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    return {reply(302, "", "Location: " + target + "x\r\n")};
  });
  const auto result = fetch(get(server.url("/"), 0.5));
  ASSERT_TRUE(result && std::holds_alternative<TransportError>(*result));
  EXPECT_EQ(std::get<TransportError>(*result).code, TransportError::timedOut);
  EXPECT_LT(server.requests().size(), 5U);
}

TEST_F(CurlHttpClientTest, KeepsTheFirstMebibyteOfALongBodyAndReadsTheRest) {
  std::string body(10U << 20U, 'x');
  body.replace((1U << 20U) - 3, 6, "abcdef");
  SocketServer server([&](const std::string& target) {
    return Answer{target == "/packed" ? reply(200, gzip(body), "Content-Encoding: gzip\r\n") : reply(200, body)};
  });
  for (const char* target : {"/plain", "/packed"}) {
    const auto got = response(get(server.url(target)));
    EXPECT_EQ(got.body.size(), 1U << 20U) << target;
    EXPECT_TRUE(got.body.ends_with("xabc")) << target;
  }
  EXPECT_EQ(server.connections(), 1) << "a body that is not read to its end costs the connection";
}

TEST_F(CurlHttpClientTest, FiveHundredRequestsLeaveNoDescriptorAndNoThreadBehind) {
  SocketServer server([](const std::string& target) { return Answer{reply(200, target)}; });
  client_.reset();
  const auto descriptorsBefore = entriesOf("/proc/self/fd");
  const auto threadsBefore = entriesOf("/proc/self/task");
  client_ = std::make_unique<CurlHttpClient>(queue_);
  for (int index = 0; index < 500; ++index) {
    const auto target = "/" + std::to_string(index);
    ASSERT_EQ(response(get(server.url(target))).body, target);
  }
  EXPECT_EQ(server.connections(), 1);
  client_.reset();
  // The server's side of the one connection ends on its own threads.
  EXPECT_TRUE(wait([&] { return entriesOf("/proc/self/fd") <= descriptorsBefore; }, patience));
  EXPECT_LE(entriesOf("/proc/self/task"), threadsBefore + 1)
      << "only the server's thread for the connection may still be there";
}

TEST_F(CurlHttpClientTest, DestroyedWhileRunningItDropsItsRequestsAtOnceAndOnThisThread) {
  SocketServer server([](const std::string& target) -> Answer {
    if (target == "/silent") return {"", Then::silence};
    return {reply(200, "")};
  });
  std::thread::id destroyedOn;
  const auto note = [&](void*) { destroyedOn = std::this_thread::get_id(); };
  bool called = false;
  client_->send(get(server.url("/silent"), 60),
                [&, witness = std::shared_ptr<void>(nullptr, note)](HttpResult) { called = true; });
  client_->send(get(server.url("/quick")), [&](HttpResult) { called = true; });
  while (server.requests().size() < 2) std::this_thread::yield();
  std::this_thread::sleep_for(std::chrono::milliseconds(50));  // the quick reply now waits in the main queue
  const double start = queue_.now();
  client_.reset();
  EXPECT_LT(queue_.now() - start, 5) << "waited for the silent server";
  EXPECT_EQ(destroyedOn, std::this_thread::get_id());
  pass(0.1);
  EXPECT_FALSE(called);
}

}  // namespace
}  // namespace orivex::gtk
