#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "HttpClient.h"
#include "ServerProcess.h"

namespace orivex::testing {
namespace {

using nlohmann::json;
using namespace std::chrono_literals;

const Request page{.path =
                       "/api/oauth2/ciphertext/app/client_chat?access_token=K&object_value=%7B%22a%22:%22b&c=d%22%7D"};

/// A patience for replies that never come: long against a reply, short against a test.
constexpr auto shortPatience = 300ms;

TEST(Faults, SpoilThePageAndTheUploadAlike) {
  struct Case {
    const char* fault;
    const char* body;
    int status;
    End end;
  };
  const Case cases[] = {
      {"status=401", R"({"msg":"Unauthorized"})", 401, End::Closed},
      {"status=400,body={}", "{}", 400, End::Closed},
      {"msg=文件太大", R"({"msg":"文件太大"})", 400, End::Closed},
      {"msg=X,status=500", R"({"msg":"X"})", 500, End::Closed},
      {"brokenJson", R"({"url": "http://127)", 200, End::Closed},
      {"cut", R"({"url":"ht)", 200, End::Closed},
      {"reset", "", 0, End::Reset},
      {"silence", "", 0, End::TimedOut},
  };
  for (const auto& testCase : cases) {
    for (const bool isPage : {true, false}) {
      const ServerProcess server({"--fault", (isPage ? "page:" : "upload:") + std::string(testCase.fault)});
      const auto request = isPage ? page : UploadForm().request();
      const auto reply = fetch(server.port(), request, testCase.end == End::TimedOut ? shortPatience : 10s);
      EXPECT_EQ(reply.status, testCase.status) << testCase.fault;
      EXPECT_EQ(reply.body, testCase.body) << testCase.fault;
      EXPECT_EQ(reply.end, testCase.end) << testCase.fault;
      const auto other = isPage ? UploadForm().request() : page;
      EXPECT_EQ(fetch(server.port(), other).status, 200) << testCase.fault << " hit the other address too";
    }
  }
}

TEST(Faults, RedirectToThePageThatThenWorks) {
  const ServerProcess server({"--fault=page:redirect"});
  const auto reply = fetch(server.port(), page);
  ASSERT_EQ(reply.status, 302);
  const auto target = reply.headers.at("location");
  EXPECT_TRUE(target.ends_with("access_token=K&object_value=%7B%22a%22:%22b&c=d%22%7D")) << target;
  EXPECT_EQ(fetch(server.port(), {.path = target.substr(target.find("/api/"))}).status, 200);
}

TEST(Faults, WaitBeforeTheAnswerAndBeforeAnotherFault) {
  const ServerProcess server({"--fault=page:latency=200", "--fault=page:status=503,times=1"});
  for (const int status : {503, 200}) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(fetch(server.port(), page).status, status);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 200ms);
  }
  // A client that leaves during the wait does no harm.
  EXPECT_EQ(fetch(server.port(), {.method = "DELETE", .path = "/_dev/faults"}).status, 200);
  server.addFaults({{"target", "page"}, {"kind", "latency"}, {"ms", 5000}, {"times", 1}});
  EXPECT_EQ(fetch(server.port(), page, 20ms).end, End::TimedOut);
  EXPECT_EQ(fetch(server.port(), page).status, 200);
}

TEST(Faults, AreAddedShownAndClearedAtRunTime) {
  const ServerProcess server;
  const json faults = json::parse(R"([
      {"target": "page", "kind": "status", "status": 404, "msg": "gone", "times": 2},
      {"target": "upload", "kind": "reset", "afterBytes": 10},
      {"target": "page", "kind": "status", "status": 500}])");
  server.addFaults(faults);
  EXPECT_EQ(json::parse(fetch(server.port(), {.path = "/_dev/faults"}).body), faults);
  for (const int status : {404, 404, 500, 500}) EXPECT_EQ(fetch(server.port(), page).status, status);
  EXPECT_EQ(fetch(server.port(), {.method = "DELETE", .path = "/_dev/faults"}).body, "[]");
  EXPECT_EQ(fetch(server.port(), page).status, 200);
  EXPECT_EQ(fetch(server.port(), UploadForm().request()).status, 200);
}

TEST(Faults, AreRefusedWholeWhenOneIsWrong) {
  const ServerProcess server;
  for (const char* body :
       {"", "nonsense", "7", "[7]", R"([{"target":"page","kind":"status"}, {"target":"page","kind":"melt"}])",
        R"({"target":1})", R"({"target":"page","kind":"latency","ms":"200"})",
        R"({"target":"page","kind":"latency","ms":1.5})", R"({"target":"page","kind":"status","times":-1})",
        R"({"target":"page","kind":"drop"})", R"({"kind":"msg"})"}) {
    const auto reply = fetch(server.port(), {.method = "POST", .path = "/_dev/faults", .body = body});
    EXPECT_EQ(reply.status, 400) << body;
    EXPECT_TRUE(json::parse(reply.body).at("msg").is_string()) << body;
  }
  EXPECT_EQ(fetch(server.port(), {.path = "/_dev/faults"}).body, "[]");
}

}  // namespace
}  // namespace orivex::testing
