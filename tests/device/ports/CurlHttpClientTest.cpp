#include "CurlUploadFixture.h"
#include "support/TlsServer.h"

namespace orivex::gtk {
namespace {

using Answer = SocketServer::Answer;
using Then = SocketServer::Then;

class CurlHttpClientTest : public CurlUploadFixture {
 protected:
  static UrlRequest get(const std::string& url, double timeout = patience) { return {*Url::parse(url), timeout, {}}; }

  int status(const UrlRequest& request) {
    const auto result = fetch(request);
    if (const auto* status = std::get_if<int>(&result)) return *status;
    ADD_FAILURE() << request.url.absoluteString() << ": " << std::get<TransportError>(result).detail;
    return 0;
  }
};

TEST_F(CurlHttpClientTest, TransportFailuresAreToldInTheVisitorsWordsAndTimeOutsByTheirCode) {
  SocketServer server([](const std::string& target) -> Answer {
    if (target == "/silent") return {"", Then::silence};
    if (target == "/stalls") return {"HTTP/1.1 200 OK\r\nContent-", Then::silence};
    if (target == "/reset") return {"", Then::reset};
    if (target == "/cut") return {"HTTP/1.1 200 OK\r\nContent-", Then::close};
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
      {server.url("/silent"), TransportError::timedOut, "请求超时"},
      {server.url("/stalls"), TransportError::timedOut, "请求超时"},
      {server.url("/reset"), TransportError::other, "连接已断开"},
      {server.url("/cut"), TransportError::other, ""},
      {server.url("/loop"), TransportError::other, "重定向次数过多"},
      {server.url("/file"), TransportError::other, "不支持的地址"},
      {server.url("/nonsense"), TransportError::other, ""},
      {selfSigned.url(), TransportError::other, "无法建立安全连接"},
      {"http://127.0.0.1:1/", TransportError::other, "无法连接到服务器"},
      {"http://chat.invalid/", TransportError::other, "找不到服务器"},
      {"ftp://127.0.0.1/", TransportError::other, "不支持的地址"},
      {"file:///etc/hostname", TransportError::other, "不支持的地址"},
      {"127.0.0.1/path", TransportError::other, ""},
      {"/path", TransportError::other, ""},
  };
  for (const auto& [url, code, words] : cases) {
    SCOPED_TRACE(url);
    const auto result = fetch(get(url, code == TransportError::timedOut ? 0.3 : patience));
    ASSERT_TRUE(std::holds_alternative<TransportError>(result));
    const auto& error = std::get<TransportError>(result);
    EXPECT_EQ(error.code, code) << error.detail;
    EXPECT_TRUE(*words ? error.description == words : error.description.find(' ') == std::string::npos)
        << error.description;
    EXPECT_NE(error.detail, "");
  }
}

TEST_F(CurlHttpClientTest, FollowsAsManyRedirectsAsABrowserWithTheirCookies) {
  SocketServer server([](const std::string& target) -> Answer {
    const int left = std::stoi(target.substr(1));
    if (left == 0) return {reply(204, "")};
    return {reply(left % 2 ? 302 : 308, "",
                  "Set-Cookie: step=" + std::to_string(left) + "\r\nLocation: /" + std::to_string(left - 1) + "\r\n")};
  });
  EXPECT_EQ(status(get(server.url("/20"))), 204);
  ASSERT_EQ(server.requests().size(), 21U);
  EXPECT_NE(server.requests().back().find("\r\nCookie: step=1\r\n"), std::string::npos) << server.requests().back();
  status(get(server.url("/0")));
  EXPECT_EQ(server.requests().back().find("Cookie"), std::string::npos) << "a cookie outlived its exchange";
}

TEST_F(CurlHttpClientTest, ASlowServerThatMovesIsNotCancelled) {
  SocketServer server(SocketServer::Session([](SocketConnection& connection) {
    const auto head = connection.readHead();
    const int left = head.empty() ? 0 : head[5] - '0';
    const auto lines = {std::string("HTTP/1.1 ") + (left ? "302 Found" : "404 No") + "\r\n", std::string("a: b\r\n"),
                        "Location: /" + std::to_string(left - 1) + "\r\n", std::string("\r\n")};
    for (const auto& line : lines) {
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
      connection.send(line);
    }
  }));
  const double start = queue_.now();
  EXPECT_EQ(status(get(server.url("/2"), 0.6)), 404);
  EXPECT_GT(queue_.now() - start, 0.6);
}

}  // namespace
}  // namespace orivex::gtk
