#include <atomic>
#include <thread>

#include <malloc.h>

#include "CurlUploadFixture.h"
#include "support/Processes.h"

namespace orivex::gtk {
namespace {

/// What a server does with a form of which it has read the head. `length` is that of the body.
using Behaviour = std::function<void(SocketConnection& connection, std::size_t length)>;

// Larger than what waits for a go-ahead, smaller than what the sockets hold.
constexpr std::size_t fileSize = 2'000'000;

SocketServer::Session once(Behaviour behaviour) {
  return [behaviour = std::move(behaviour)](SocketConnection& connection) {
    const auto length = contentLength(connection.readHead());
    behaviour(connection, length);
  };
}

void goAhead(SocketConnection& connection) {
  connection.send("HTTP/1.1 100 Continue\r\n\r\n");
}

Behaviour answer(std::string bytes) {
  return [bytes = std::move(bytes)](SocketConnection& connection, std::size_t length) {
    goAhead(connection);
    connection.skip(length);
    connection.send(bytes);
  };
}

/// Reads this many quarters of the body and goes, with or without a word.
Behaviour breakAfter(std::size_t quarters, bool resets) {
  return [=](SocketConnection& connection, std::size_t length) {
    goAhead(connection);
    connection.skip(length * quarters / 4);
    if (resets) connection.resetAtEnd();
  };
}

class CurlUploadFaultTest : public CurlUploadFixture {
 protected:
  const std::string file_ = folder_.write("file", std::string(fileSize, 'x')).string();
};

TEST_F(CurlUploadFaultTest, AServerThatMovedGetsTheFormWhereItSays) {
  for (const bool takesFirst : {false, true}) {
    for (const std::size_t size : {std::size_t{1000}, fileSize}) {
      SCOPED_TRACE(std::to_string(size) + (takesFirst ? " taken first" : ""));
      std::string taken;
      SocketServer server(SocketServer::Session([&](SocketConnection& connection) {
        const auto head = connection.readHead();
        const int step = head.starts_with("POST /0 ") ? 307 : head.starts_with("POST /1 ") ? 308 : 200;
        if (takesFirst || step == 200) goAhead(connection);
        if (takesFirst || step == 200 || size < fileSize) taken = connection.read(contentLength(head));
        connection.send(reply(step, "moved", "Location: /" + std::to_string(step == 307 ? 1 : 2) + "\r\n"));
      }));
      const auto upload = send(form(server.url("/0"), bytes(std::string(size, 'x'))));
      EXPECT_EQ(upload.status(), 200) << upload.detail();
      EXPECT_NE(taken.find("\r\n\r\n" + std::string(size, 'x') + "\r\n--"), std::string::npos);
    }
  }
  SocketServer circle([](const std::string&) { return SocketServer::Answer{reply(307, "x", "Location: /\r\n")}; });
  EXPECT_EQ(send(form(circle.url("/"), bytes("x"))).error(), "重定向次数过多");
  EXPECT_EQ(circle.connections(), 21);
  for (const char* location : {"http://localhost:1/", "ftp://127.0.0.1/"}) {
    const auto moved = reply(307, "", std::string("Location: ") + location + "\r\n");
    const SocketServer server([&](const std::string&) { return SocketServer::Answer{moved}; });
    EXPECT_EQ(send(form(server.url("/"), bytes("x"))).status(), 307) << "the form goes to another server";
  }
}

TEST_F(CurlUploadFaultTest, ABrokenConnectionIsAnErrorWithWhatCameOfTheReply) {
  struct Case {
    const char* name;
    Behaviour behaviour;
    std::optional<int> status;
    const char* body;
    const char* words;
  };
  const std::string half = "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf";
  std::vector<Case> cases = {
      {"closed in the reply", answer(half), 200, "half", "连接已断开"},
      {"closed in a chunk", answer("HTTP/1.1 500 X\r\nTransfer-Encoding: chunked\r\n\r\n9\r\nhalf"), 500, "half", ""},
      {"no HTTP", answer("this is no HTTP"), std::nullopt, "", ""},
      {"broken gzip", answer(reply(200, "this is no gzip", "Content-Encoding: gzip\r\n")), 200, "",
       "服务器的回复无法读取"},
  };
  for (std::size_t quarters = 0; quarters <= 4; ++quarters) {
    cases.push_back({"reset", breakAfter(quarters, true), std::nullopt, "", ""});
    cases.push_back({"closed", breakAfter(quarters, false), std::nullopt, "", ""});
  }
  for (const auto& [name, behaviour, status, body, words] : cases) {
    SCOPED_TRACE(name);
    SocketServer server(once(behaviour));
    const auto upload = send(form(server.url("/"), path(file_)));
    EXPECT_EQ(upload.status(), status);
    EXPECT_EQ(upload.body(), body);
    EXPECT_TRUE(*words ? upload.error() == words : !upload.error().empty()) << upload.error();
    EXPECT_EQ(upload.error().find_first_of(" abcdefghijklmnopqrstuvwxyz"), std::string::npos) << upload.error();
    EXPECT_EQ(server.connections(), 1) << "sent again";
  }
  const auto refused = send(form("http://127.0.0.1:1/", path(file_)));
  EXPECT_EQ(refused.error(), "无法连接到服务器");
}

TEST_F(CurlUploadFaultTest, ARefusalBeforeTheEndOfTheBodyIsTold) {
  const auto refusal = reply(413, "too large", "Connection: close\r\n");
  const auto large = folder_.write("large", std::string(20'000'000, 'x')).string();
  std::size_t sentAfterRefusal = 0;
  for (const bool closes : {false, true}) {
    for (int quarters = -1; quarters < 4; ++quarters) {
      SCOPED_TRACE(quarters);
      auto server = std::make_unique<SocketServer>(once([&](SocketConnection& connection, std::size_t length) {
        if (quarters >= 0) {
          goAhead(connection);
          connection.skip(length * static_cast<std::size_t>(quarters) / 4);
        }
        connection.send(refusal);
        if (closes) connection.endSending();
        sentAfterRefusal = connection.skip(length);
      }));
      const auto upload = send(form(server->url("/"), path(large)));
      server.reset();
      EXPECT_EQ(upload.status(), 413) << upload.detail();
      EXPECT_EQ(upload.body(), "too large");
      EXPECT_EQ(upload.error(), "");
      EXPECT_LT(upload.progress.empty() ? 0 : upload.progress.back(), 1);
      EXPECT_TRUE(quarters >= 0 || sentAfterRefusal == 0) << "sent the body without a go-ahead";
    }
  }
}

TEST_F(CurlUploadFaultTest, TimesOutWhenNothingIsSentOrTheReplyIsNeverWhole) {
  struct Case {
    const char* name;
    Behaviour behaviour;
    std::optional<int> status;
    bool timesOut;
  };
  const auto slowly = [](const std::function<bool()>& step) {
    while (step()) std::this_thread::sleep_for(std::chrono::milliseconds(40));
  };
  const Case cases[] = {
      {"takes nothing",
       [](SocketConnection& connection, std::size_t) {
         goAhead(connection);
         connection.waitForEnd();
       },
       std::nullopt, true},
      {"takes the body slowly",
       [&](SocketConnection& connection, std::size_t length) {
         goAhead(connection);
         connection.holdLittle();
         slowly([&] {
           const auto taken = connection.skip(std::min<std::size_t>(length, 40'000));
           length -= taken;
           return taken > 0 && length > 0;
         });
         connection.send(reply(200, ""));
       },
       200, false},
      {"answers in pieces",
       [&](SocketConnection& connection, std::size_t length) {
         answer("")(connection, length);
         const auto bytes = reply(200, "taken");
         std::size_t sent = 0;
         slowly([&] { return connection.send(bytes.substr(sent++ * 10, 10)) && sent * 10 < bytes.size(); });
       },
       200, false},
      {"answers for ever",
       [&](SocketConnection& connection, std::size_t length) {
         answer("HTTP/1.1 200 OK\r\n\r\n")(connection, length);
         slowly([&] { return connection.send("x"); });
       },
       200, true},
  };
  for (const auto& [name, behaviour, status, timesOut] : cases) {
    SCOPED_TRACE(name);
    SocketServer server(once(behaviour));
    auto request = form(server.url("/"), path(file_));
    request.idleTimeout = 2;
    const auto upload = send(request);
    EXPECT_EQ(upload.status(), status);
    EXPECT_EQ(upload.reply->error.has_value(), timesOut) << upload.detail();
    EXPECT_EQ(upload.reply->error.value_or(TransportError{}).code,
              timesOut ? TransportError::timedOut : TransportError::other);
  }
}

TEST_F(CurlUploadFaultTest, OneThatIsCancelledHangsUpInTheMiddleOfItsBody) {
  std::atomic<bool> hasBegun = false;
  std::atomic<bool> isOver = false;
  std::atomic<std::size_t> missing = 0;
  SocketServer server(once([&](SocketConnection& connection, std::size_t length) {
    goAhead(connection);
    connection.holdLittle();
    const auto first = connection.skip(length / 4);
    hasBegun = true;
    while (!isOver) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    missing = length - first - connection.skip(length - first);  // the rest of what was under way still comes
  }));
  const auto upload = begin(form(server.url("/"), path(file_)));
  ASSERT_TRUE(wait([&] { return hasBegun.load(); }, patience));
  upload->cancel();
  EXPECT_TRUE(wait([&] { return upload->reply.has_value(); }, 2));
  isOver = true;
  EXPECT_EQ(upload->status(), std::nullopt);
  EXPECT_EQ(upload->error(), "已取消");
  EXPECT_TRUE(wait([&] { return missing > 0; }, 5)) << "all of it was sent";
}

TEST_F(CurlUploadFaultTest, FiveHundredUploadsLeaveNothingBehindHoweverTheyEnd) {
  const auto small = folder_.write("small", std::string(100'000, 'x')).string();
  const auto round = [&](int uploads) {
    const SocketServer::Answer answers[] = {
        {reply(200, "taken")},
        {reply(503, std::string(10'000, 'e'))},
        {"", SocketServer::Then::reset},
        {"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf", SocketServer::Then::close},
    };
    std::atomic<std::size_t> turn = 0;
    SocketServer server([&](const std::string&) { return answers[turn++ % std::size(answers)]; });
    client_ = std::make_unique<CurlHttpClient>(queue_);
    for (int upload = 0; upload < uploads; ++upload) {
      ASSERT_TRUE(send(form(server.url("/"), path(upload % 5 == 0 ? "/missing" : small))).reply);
    }
    client_.reset();
    pass(0.05);
  };
  round(50);
  const auto descriptors = entriesOf("/proc/self/fd");
  const auto threads = entriesOf("/proc/self/task");
  const auto heap = mallinfo2().uordblks;
  round(500);
  EXPECT_TRUE(wait([&] { return entriesOf("/proc/self/fd") <= descriptors; }, patience)) << entriesOf("/proc/self/fd");
  const auto haveEnded = [&] {
    g_thread_pool_stop_unused_threads();  // GLib would keep those that have looked for a proxy
    return entriesOf("/proc/self/task") <= threads;
  };
  EXPECT_TRUE(wait(haveEnded, patience));
  EXPECT_LE(mallinfo2().uordblks, heap + std::size_t{64} * 1024);
}

}  // namespace
}  // namespace orivex::gtk
