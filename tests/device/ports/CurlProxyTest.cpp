#include <functional>

#include "CurlUploadFixture.h"
#include "net/ProxyLookup.h"

namespace orivex::gtk {
namespace {

using Answer = SocketServer::Answer;
using Asked = std::function<std::vector<std::string>(const std::string& address)>;

/// A desktop's resolver that a test answers, on whichever thread it is asked; a lookup without proxies fails.
struct Resolver {
  GObject parent;
  Asked* asked;
};
struct ResolverClass {
  GObjectClass parent;
};

char** lookUp(GProxyResolver* resolver, const char* address, GCancellable*, GError** error) {
  const auto proxies = (*reinterpret_cast<Resolver*>(resolver)->asked)(address);
  if (proxies.empty()) g_set_error_literal(error, G_IO_ERROR, G_IO_ERROR_FAILED, "no answer");
  GStrvBuilder* const builder = g_strv_builder_new();
  for (const auto& proxy : proxies) g_strv_builder_add(builder, proxy.c_str());
  char** const list = proxies.empty() ? nullptr : g_strv_builder_end(builder);
  g_strv_builder_unref(builder);
  return list;
}

void implementResolver(GProxyResolverInterface* interface) {
  interface->lookup = lookUp;
}
static void resolver_class_init(ResolverClass*) {}
static void resolver_init(Resolver*) {}
G_DEFINE_TYPE_WITH_CODE(Resolver, resolver, G_TYPE_OBJECT,
                        G_IMPLEMENT_INTERFACE(G_TYPE_PROXY_RESOLVER, implementResolver))

class CurlProxyTest : public CurlUploadFixture {
 protected:
  CurlProxyTest() {
    auto resolver = GRef<GProxyResolver>::adopt(G_PROXY_RESOLVER(g_object_new(resolver_get_type(), nullptr)));
    reinterpret_cast<Resolver*>(resolver.get())->asked = &asked_;
    client_ = std::make_unique<CurlHttpClient>(queue_, ProxyLookup(std::move(resolver)));
  }

  /// What became of a request, in words.
  std::string fetch(const std::string& address, double timeout = patience) {
    const auto result = CurlUploadFixture::fetch({*Url::parse(address), timeout, {}});
    const auto* error = std::get_if<TransportError>(&result);
    return error ? error->description : std::to_string(std::get<int>(result));
  }

  Asked asked_ = [](const std::string&) { return std::vector<std::string>{}; };
};

SocketServer::Handler answering(int status, const std::string& headers = "") {
  return [=](const std::string&) { return Answer{reply(status, "x", headers)}; };
}

/// A SOCKS 5 proxy that lets everybody pass to the same server, which it is itself.
void serveSocks(SocketConnection& connection, std::string& host) {
  const auto methods = connection.read(2);
  connection.read(static_cast<std::size_t>(methods.back()));
  connection.send(std::string_view("\5\0", 2));
  const auto request = connection.read(5);  // version, command, reserved, kind of address, its length
  host = std::to_string(request[3]) + " " + connection.read(static_cast<std::size_t>(request[4]));
  connection.read(2);
  connection.send(std::string_view("\5\0\0\1\0\0\0\0\0\0", 10));
  connection.readHead();
  connection.send(reply(206, ""));
}

TEST_F(CurlProxyTest, TakesTheWayThatTheDesktopTells) {
  const SocketServer server(answering(201));
  const SocketServer proxy(answering(202));
  std::string socksHost;
  const SocketServer socks(
      SocketServer::Session([&](SocketConnection& connection) { serveSocks(connection, socksHost); }));
  const auto socksPort = socks.url("").substr(socks.url("").rfind(':'));
  const std::string dead = "http://127.0.0.1:1";
  std::string askedFor;
  const struct {
    std::vector<std::string> proxies;
    std::string address;
    const char* expected;
  } rows[] = {
      {{proxy.url("")}, "http://chat.invalid/page?token=secret#x", "202"},
      {{proxy.url(""), "direct://"}, server.url("/"), "202"},
      {{"direct://"}, server.url("/"), "201"},
      {{dead, "http://proxy.invalid:3128", proxy.url("")}, "http://chat.invalid/", "202"},
      {{dead, "direct://"}, server.url("/"), "201"},
      {{dead}, server.url("/"), "无法连接到服务器"},
      {{"socks5://127.0.0.1" + socksPort}, "http://chat.invalid/", "206"},
      {{"socks://127.0.0.1" + socksPort}, "http://other.invalid/", "206"},
  };
  for (const auto& [proxies, address, expected] : rows) {
    asked_ = [&, proxies = proxies](const std::string& asked) { return askedFor = asked, proxies; };
    EXPECT_EQ(fetch(address), expected) << address << " by " << proxies.front();
    EXPECT_EQ(askedFor, address.substr(0, address.find('?'))) << "a script reads the token";
  }
  EXPECT_TRUE(proxy.requests().front().starts_with("GET http://chat.invalid/page?token=secret HTTP/1.1\r\n"));
  EXPECT_EQ(socksHost, "3 other.invalid") << "the name is looked up on this side";
}

TEST_F(CurlProxyTest, AsksAgainWhereARedirectLeads) {
  const SocketServer server(answering(201));
  const SocketServer proxy(answering(302, "Location: " + server.url("/") + "\r\n"));
  asked_ = [&](const std::string& address) {
    return std::vector<std::string>{address.starts_with("http://chat.invalid") ? proxy.url("") : "direct://"};
  };
  EXPECT_EQ(fetch("http://chat.invalid/"), "201");
}

TEST_F(CurlProxyTest, AProxyThatWantsAPasswordIsNoReplyOfTheServer) {
  const SocketServer proxy(answering(407, "Proxy-Authenticate: Basic realm=\"x\"\r\n"));
  const SocketServer server(answering(407));
  std::string proxyUrl = proxy.url("");
  asked_ = [&](const std::string&) { return std::vector<std::string>{proxyUrl}; };
  const std::string refused = "代理服务器需要身份验证";
  EXPECT_EQ(fetch("http://chat.invalid/"), refused);
  EXPECT_EQ(fetch("https://chat.invalid/"), refused);
  EXPECT_EQ(send(form("http://chat.invalid/", bytes("x"))).reply->error.value_or(TransportError{}).description,
            refused);
  EXPECT_EQ(send(form("https://chat.invalid/", bytes("x"))).reply->error.value_or(TransportError{}).description,
            refused);
  proxyUrl = "http://name:word@" + proxyUrl.substr(7);
  EXPECT_EQ(fetch("http://chat.invalid/"), refused);
  EXPECT_NE(proxy.requests().back().find("Proxy-Authorization: Basic bmFtZTp3b3Jk\r\n"), std::string::npos);
  proxyUrl = "direct://";
  EXPECT_EQ(fetch(server.url("/")), "407");
}

TEST_F(CurlProxyTest, AQuestionWithoutAnAnswerEndsInTime) {
  const SocketServer server(answering(302, "Location: http://chat.invalid/\r\n"));
  std::atomic<bool> isOver = false;
  asked_ = [&, direct = server.url("")](const std::string& address) {
    while (!address.starts_with(direct) && !isOver) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return std::vector<std::string>{"direct://"};
  };
  EXPECT_EQ(fetch("http://127.0.0.1:1/", 0.2), "请求超时");
  EXPECT_EQ(fetch(server.url("/"), 0.2), "请求超时") << "where a redirect leads";
  client_->send({*Url::parse("http://127.0.0.1:1/"), patience, {}},
                [](const StatusResult&) { ADD_FAILURE() << "told after the end of the client"; });
  client_.reset();
  isOver = true;
  pass(0.1);
}

TEST_F(CurlProxyTest, AnUploadCanBeCancelledBeforeItsProxyIsKnown) {
  std::atomic<bool> isOver = false;
  asked_ = [&](const std::string&) {
    while (!isOver) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return std::vector<std::string>{"direct://"};
  };
  const auto upload = begin(form("http://127.0.0.1:1/", bytes("x")));
  upload->cancel();
  EXPECT_TRUE(wait([&] { return upload->reply.has_value(); }, 5));
  EXPECT_EQ(upload->error(), "已取消");
  isOver = true;
  pass(0.2);  // a second end would be told
}

}  // namespace
}  // namespace orivex::gtk
