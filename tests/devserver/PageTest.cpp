#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <map>
#include <queue>
#include <regex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "HttpClient.h"
#include "ServerProcess.h"
#include "support/TemporaryFolder.h"

namespace orivex::testing {
namespace {

const std::string pagePath = "/api/oauth2/ciphertext/app/client_chat";

TEST(ChatPage, OpensOnlyForATokenThatPasses) {
  struct Case {
    std::vector<std::string> arguments;
    std::string query;
    int status;
    std::string complaint;
  };
  const Case cases[] = {
      {{}, "?access_token=K&x-entry=E", 200, ""},
      {{}, "?access_token=unexpired-1", 200, ""},
      {{}, "", 401, "access token missing"},
      {{}, "?access_token=&x-entry=E", 401, "access token missing"},
      {{}, "?my_access_token=K", 401, "access token missing"},
      {{}, "?access_token=expired-2024", 401, "access token expired"},
      {{}, "?access_token=%65xpired", 401, "access token expired"},
      {{"--token", "A", "--token=a+b"}, "?access_token=a+b", 200, ""},
      {{"--token", "A", "--token=a+b"}, "?access_token=K", 401, "access token unknown"},
      {{"--token", "expired"}, "?access_token=expired", 401, "access token expired"},
  };
  for (const auto& testCase : cases) {
    const ServerProcess server(testCase.arguments);
    const auto reply = fetch(server.port(), {.path = pagePath + testCase.query});
    EXPECT_EQ(reply.status, testCase.status) << testCase.query;
    if (testCase.status == 200) continue;
    EXPECT_EQ(nlohmann::json::parse(reply.body), nlohmann::json({{"msg", testCase.complaint}})) << testCase.query;
  }
}

TEST(ChatPage, SurvivesAnyQuery) {
  const ServerProcess server;
  const std::string queries[] = {
      "?access_token=K&app_name=\xE5\xAE\xA2\xE6\x9C\x8D",  // raw UTF-8, as an application's name comes
      "?access_token=K&app_name=%E5%AE%A2%E6%9C%8D&object_value=%7B%22content%22:%22a&b=c%22%7D",
      "?access_token=K&app_name=\xFF\xFE",
      "?access_token=%",
      "?access_token=%FF%00K",
      "?&&&=&==&access_token=K",
      "?access_token=K&x=" + std::string(20'000, 'y'),
      "?access_token=K#fragment",
      "?access_token=K&a=b c"};
  for (const auto& query : queries) {
    EXPECT_NE(fetch(server.port(), {.path = pagePath + query}).status, 0) << query.substr(0, 60);
    EXPECT_EQ(fetch(server.port(), {.path = pagePath + "?access_token=K"}).status, 200) << query.substr(0, 60);
  }
}

/// Every file that the page names is there, down to the modules that modules import, and may run under the policy.
TEST(ChatPage, BringsEveryFileThatItNames) {
  const ServerProcess server;
  const auto page = fetch(server.port(), {.path = pagePath + "?access_token=K"});
  const auto policy = page.headers.at("content-security-policy");
  EXPECT_NE(policy.find("script-src 'self';"), std::string::npos) << policy;
  EXPECT_EQ(policy.find("unsafe-eval"), std::string::npos) << policy;
  EXPECT_EQ(page.body.find("<script>"), std::string::npos) << "an inline script would not run";

  const std::regex reference(R"re(["'](?:/chat-page/|\./)([\w.-]+)["'])re");
  std::set<std::string> seen;
  std::queue<std::string> texts({page.body});
  for (; !texts.empty(); texts.pop()) {
    const std::string text = texts.front();
    for (std::sregex_iterator match(text.begin(), text.end(), reference), end; match != end; ++match) {
      const auto name = (*match)[1].str();
      if (!seen.insert(name).second) continue;
      const auto file = fetch(server.port(), {.path = "/chat-page/" + name});
      EXPECT_EQ(file.status, 200) << name;
      EXPECT_EQ(file.headers.at("content-type"),
                name.ends_with(".js") ? "text/javascript; charset=utf-8" : "text/css; charset=utf-8")
          << name;
      texts.push(file.body);
    }
  }
  EXPECT_GE(seen.size(), 10U);
}

using Colors = std::map<std::string, std::string>;

Colors colorsIn(const std::string& style) {
  static const std::regex color("--([a-z-]+): #([0-9a-f]{6});");
  Colors colors;
  for (std::sregex_iterator match(style.begin(), style.end(), color), end; match != end; ++match)
    colors[(*match)[1]] = (*match)[2];
  return colors;
}

double luminance(const std::string& color) {
  const auto channel = [&](std::size_t at) {
    const double value = std::stoi(color.substr(at, 2), nullptr, 16) / 255.0;
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * channel(0) + 0.7152 * channel(2) + 0.0722 * channel(4);
}

TEST(ChatPage, SetsTextInColorsThatCanBeRead) {
  const ServerProcess server;
  const auto style = fetch(server.port(), {.path = "/chat-page/chat.css"}).body;
  const Colors light = colorsIn(style.substr(0, style.find("@media (prefers-color-scheme: dark)")));
  Colors dark = colorsIn(style.substr(style.find("@media (prefers-color-scheme: dark)")));
  dark.insert(light.begin(), light.end());
  const std::vector<std::string> papers{"paper", "surface", "surface-sunk"};
  const std::pair<std::string, std::vector<std::string>> pairs[] = {{"ink", papers},
                                                                    {"ink-soft", papers},
                                                                    {"ink-faint", papers},
                                                                    {"accent", papers},
                                                                    {"accent", {"accent-soft"}},
                                                                    {"accent-deep", {"accent-soft"}},
                                                                    {"on-accent", {"accent"}},
                                                                    {"on-mine", {"mine-from", "mine-to"}},
                                                                    {"on-danger", {"danger"}},
                                                                    {"warn-ink", {"warn"}}};
  for (const Colors* const colors : std::initializer_list<const Colors*>{&light, &dark}) {
    for (const auto& [ink, papersOfInk] : pairs) {
      for (const auto& paper : papersOfInk) {
        const auto [dim, bright] = std::minmax({luminance(colors->at(ink)), luminance(colors->at(paper))});
        EXPECT_GE((bright + 0.05) / (dim + 0.05), 4.5) << ink << " on " << paper << (colors == &dark ? ", dark" : "");
      }
    }
  }
}

TEST(ChatPage, RefusesOtherMethodsAndOtherFiles) {
  const ServerProcess server;
  EXPECT_EQ(fetch(server.port(), {.method = "POST", .path = pagePath}).status, 405);
  EXPECT_EQ(fetch(server.port(), {.method = "T", .path = pagePath}).status, 405) << "a part of GET";
  for (const char* path :
       {"/chat-page/", "/chat-page", "/chat-page/none.js", "/chat-page/../src/main.cpp",
        "/chat-page/%2e%2e/%2e%2e/etc/passwd", "/none", "//", "/api/oauth2/ciphertext/app/client_chat/x"}) {
    const auto status = fetch(server.port(), {.path = path}).status;
    EXPECT_TRUE(status == 404 || status == 400) << path << " gave " << status;
  }
}

/// A folder with a page of the developer's own.
class OwnPage : public ::testing::Test {
 protected:
  OwnPage() {
    folder_.write("index.html", "<!-- ours --><!DOCTYPE html>\n<title>Ours</title>");
    folder_.write("parts/a b.css", "body {}");
    folder_.write("app.js", "1");
  }

  const TemporaryFolder folder_;
};

TEST_F(OwnPage, IsServedWithItsFilesInPlaceOfTheOther) {
  const ServerProcess server({"--page", folder_.path().string(), "--token", "A"});
  const auto get = [&](const std::string& path) { return fetch(server.port(), {.path = path}); };
  const auto page = get(pagePath + "?access_token=A");
  EXPECT_TRUE(page.body.starts_with("<!-- ours --><!DOCTYPE html><script>")) << "without its doctype: " << page.body;
  EXPECT_TRUE(page.body.ends_with("\n<title>Ours</title>"));
  EXPECT_TRUE(page.headers.at("content-type").starts_with("text/html"));
  EXPECT_EQ(page.headers.count("content-security-policy"), 0U) << "that is the page's own business";
  EXPECT_EQ(get(pagePath + "?access_token=B").status, 401);
  EXPECT_EQ(get("/app.js").body, "1");
  EXPECT_EQ(get("/api/oauth2/ciphertext/app/parts/a%20b.css").headers.at("content-type"), "text/css");
  for (const char* path : {"/none.js", "/parts", "/chat-page/chat.js", "/parts/%2e%2e/%2e%2e/etc/passwd"})
    EXPECT_NE(get(path).status, 200) << path;
  folder_.write("index.html", "new");
  EXPECT_TRUE(get(pagePath + "?access_token=A").body.ends_with("new")) << "a change needs no new start";
}

TEST_F(OwnPage, HasItsMessagesPrintedOneALine) {
  ServerProcess server({"--page", folder_.path().string()});
  const auto post = [&](const std::string& body) {
    return fetch(server.port(), {.method = "POST", .path = "/_dev/posts", .body = body}).status;
  };
  EXPECT_EQ(post(R"({"name":"trackEvent","body":{"name":"a\nb","attributes":{}}})"), 200);
  EXPECT_EQ(post(R"({"name":"a\nb"})"), 200);
  for (const char* body : {"", "[]", "{}", R"({"name":1})"}) EXPECT_EQ(post(body), 400) << body;
  constexpr std::size_t deep = 200'000;
  constexpr std::size_t kept = 63;
  EXPECT_EQ(post(R"({"name":"deep","body":)" + std::string(deep, '[') + std::string(deep, ']') + "}"), 200);
  server.closeInput();
  EXPECT_EQ(server.restOfOutput(), R"(trackEvent {"attributes":{},"name":"a\nb"})"
                                   "\n"
                                   R"(a\nb null)"
                                   "\ndeep " +
                                       std::string(kept, '[') + std::string(kept, ']') + '\n');
}

}  // namespace
}  // namespace orivex::testing
