#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "HttpClient.h"
#include "ServerProcess.h"
#include "support/TemporaryFolder.h"

namespace orivex::testing {
namespace {

using nlohmann::json;
namespace fs = std::filesystem;

std::string pathOf(const std::string& url) {
  return url.substr(url.find("/files/"));
}

std::string uploadedPath(const ServerProcess& server, const UploadForm& form) {
  const auto reply = fetch(server.port(), form.request());
  EXPECT_EQ(reply.status, 200) << reply.body;
  return pathOf(json::parse(reply.body).at("url"));
}

TEST(Upload, ChecksEachOfTheSixHeaders) {
  struct Case {
    const char* header;
    std::optional<std::string> value;
    int status;
    const char* complaint;
  };
  const Case cases[] = {
      {"Authorization", std::nullopt, 401, "Authorization: access token missing"},
      {"Authorization", "bearer K", 401, "Authorization: access token missing"},
      {"Authorization", "Bearer expired", 401, "Authorization: access token expired"},
      {"Authorization", "Bearer other", 401, "Authorization: access token unknown"},
      {"Accept", std::nullopt, 400, "Accept must be */*"},
      {"x-entry", std::nullopt, 400, "x-entry missing"},
      {"x-entry", "", 200, ""},
      {"x-device-id", std::nullopt, 400, "x-device-id missing"},
      {"User-Agent", "curl/8", 400, "User-Agent must begin with KepChatSDK/iOS/"},
      {"User-Agent", "KepChatSDK/iOS/", 200, ""},
      {"Content-Type", "multipart/mixed; boundary=----b0undary", 400, "Content-Type must be multipart/form-data"},
      {"Content-Type", "multipart/form-data", 400, "Content-Type: boundary missing or too long"},
      {"Content-Type", "multipart/form-data; boundary=" + std::string(71, 'b'), 400, "Content-Type: boundary"},
      {"Content-Type", "Multipart/Form-Data; charset=utf-8; boundary=\"----b0undary\"", 200, ""},
  };
  const ServerProcess server({"--token=K"});
  for (const auto& testCase : cases) {
    UploadForm form;
    form.headers.erase(testCase.header);
    if (testCase.value) form.headers[testCase.header] = *testCase.value;
    const auto reply = fetch(server.port(), form.request());
    const auto label = std::string(testCase.header) + ": " + testCase.value.value_or("(none)");
    EXPECT_EQ(reply.status, testCase.status) << label;
    if (testCase.status == 200) continue;
    EXPECT_TRUE(json::parse(reply.body).at("msg").get<std::string>().starts_with(testCase.complaint))
        << label << reply.body;
  }
  UploadForm ofPage;
  ofPage.headers["Origin"] = server.address();
  ofPage.headers["User-Agent"] = "a browser";
  EXPECT_EQ(fetch(server.port(), ofPage.request()).status, 200) << "a page in a plain browser uploads, too";
}

TEST(Upload, KeepsTheFileToTheByteUnderItsName) {
  std::string everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte += static_cast<char>(byte);
  struct Case {
    const char* sentName;
    const char* sentType;
    std::string data;
    const char* disposition;
    const char* actualType;
  };
  const Case cases[] = {
      {"photo.jpg", "image/jpeg", everyByte, "inline; filename*=UTF-8''photo.jpg", "image/jpeg"},
      {"voice.flac", "audio/x-flac", "fLaC", "inline; filename*=UTF-8''voice.flac", "audio/flac"},
      {"page.html", "image/png", "<script>", "attachment; filename*=UTF-8''page.html", "text/html"},
      {"合同 “终”.pdf", "application/pdf", "%PDF-",
       "attachment; filename*=UTF-8''%E5%90%88%E5%90%8C%20%E2%80%9C%E7%BB%88%E2%80%9D.pdf", "application/pdf"},
      {"say \\\"hi\\\".txt", "text/plain", "x", "attachment; filename*=UTF-8''say%20%22hi%22.txt", "text/plain"},
      {"noextension", "x-own/type", everyByte, "attachment; filename*=UTF-8''noextension", "x-own/type"},
      {"../../etc/passwd", "text/plain", "x", "attachment; filename*=UTF-8''passwd", "text/plain"},
      {"C:\\\\dir\\\\a.txt", "text/plain", "x", "attachment; filename*=UTF-8''a.txt", "text/plain"},
      {".hidden.txt", "text/plain", "x", "attachment; filename*=UTF-8''hidden.txt", "text/plain"},
      {"", "text/plain", "words", "attachment; filename*=UTF-8''file", "text/plain"},
      {"\xFF\xFE.txt", "text/plain", "x", "attachment; filename*=UTF-8''%EF%BF%BD%EF%BF%BD.txt", "text/plain"},
  };
  const ServerProcess server;
  for (const auto& testCase : cases) {
    const UploadForm form{.fileName = testCase.sentName, .contentType = testCase.sentType, .data = testCase.data};
    const auto reply = fetch(server.port(), form.request());
    ASSERT_EQ(reply.status, 200) << testCase.sentName << reply.body;
    const auto record = json::parse(reply.body);
    EXPECT_EQ(record.size(), 3U);
    EXPECT_EQ(record.at("inputContentType"), testCase.sentType) << testCase.sentName;
    EXPECT_EQ(record.at("actualContentType"), testCase.actualType) << testCase.sentName;
    const std::string url = record.at("url");
    EXPECT_TRUE(url.starts_with("http://chat.test:8700/files/")) << url << ": not the host that the client asked";

    const auto file = fetch(server.port(), {.path = pathOf(url)});
    EXPECT_EQ(file.status, 200) << url;
    EXPECT_EQ(file.body, testCase.data) << testCase.sentName;
    EXPECT_EQ(file.headers.at("content-type"), testCase.actualType) << testCase.sentName;
    EXPECT_EQ(file.headers.at("content-disposition"), testCase.disposition) << testCase.sentName;
  }
}

TEST(Upload, SaysWhatIsWrongWithABody) {
  const auto whole = UploadForm().body();
  const std::string field =
      "------b0undary\r\nContent-Disposition: form-data; name=\"k\"\r\n\r\nv\r\n------b0undary--\r\n";
  const std::string headersAlone =
      "------b0undary\r\nContent-Disposition: form-data; name=\"file\"\r\n\r\n------b0undary--\r\n";
  struct Case {
    const char* name;
    std::string body;
    const char* complaint;
  };
  const Case cases[] = {
      {"no body", "", "malformed multipart body"},
      {"no closing delimiter", whole.substr(0, whole.size() - 4), "malformed multipart body"},
      {"nothing after a part's headers", headersAlone, "malformed multipart body"},
      {"no part", "------b0undary--\r\n", "no part named file"},
      {"no file part", field, "no part named file"},
  };
  const TemporaryFolder folder;
  {
    const ServerProcess server({"--files", folder.path().string()});
    for (const auto& testCase : cases) {
      const auto reply = fetch(server.port(), UploadForm().request(testCase.body));
      EXPECT_EQ(reply.status, 400) << testCase.name;
      EXPECT_EQ(json::parse(reply.body), json({{"msg", testCase.complaint}})) << testCase.name;
    }
  }
  EXPECT_TRUE(fs::is_empty(folder.path())) << "a refused upload left its file behind";
}

TEST(Upload, RefusesAFileBeyondTheLimitAndOnlyThat) {
  const ServerProcess server({"--max-upload=1000"});
  EXPECT_EQ(fetch(server.port(), UploadForm{.data = std::string(1000, 'x')}.request()).status, 200);
  const auto reply = fetch(server.port(), UploadForm{.data = std::string(1001, 'x')}.request());
  EXPECT_EQ(reply.status, 413);
  EXPECT_EQ(json::parse(reply.body), json({{"msg", "file too large"}}));
}

TEST(Upload, LogsWhatArrived) {
  const ServerProcess server;
  UploadForm form;
  const std::string field = "------b0undary\r\nContent-Disposition: form-data; name=\"k\"\r\n\r\n值\r\n";
  ASSERT_EQ(fetch(server.port(), form.request(field + form.body())).status, 200);
  const auto log = json::parse(fetch(server.port(), {.path = "/_dev/log"}).body);
  ASSERT_EQ(log.size(), 1U);
  EXPECT_EQ(log[0].at("method"), "POST");
  EXPECT_EQ(log[0].at("status"), 200);
  EXPECT_EQ(log[0].at("headers").at("authorization"), "Bearer K");
  EXPECT_EQ(log[0].at("headers").at("x-device-id"), "D");
  EXPECT_EQ(log[0].at("parts"), json::parse(R"([{"name": "k", "value": "值", "size": 3},
      {"name": "file", "fileName": "a.txt", "contentType": "text/plain", "size": 5}])"));
  EXPECT_EQ(fetch(server.port(), {.method = "DELETE", .path = "/_dev/log"}).body, "[]");
}

TEST(Files, AreServedInRanges) {
  struct Case {
    const char* range;
    int status;
    const char* body;
    const char* contentRange;
  };
  const Case cases[] = {
      {"bytes=0-0", 206, "0", "bytes 0-0/10"},   {"bytes=2-4", 206, "234", "bytes 2-4/10"},
      {"bytes=7-", 206, "789", "bytes 7-9/10"},  {"bytes=-3", 206, "789", "bytes 7-9/10"},
      {"bytes=8-99", 206, "89", "bytes 8-9/10"}, {"bytes=-99", 206, "0123456789", "bytes 0-9/10"},
      {"bytes=10-", 416, "", "bytes */10"},      {"bytes=0-1,4-5", 200, "0123456789", ""},
      {"nonsense=1-2", 200, "0123456789", ""},
  };
  const ServerProcess server;
  const auto path = uploadedPath(server, {.data = "0123456789"});
  for (const auto& testCase : cases) {
    auto reply = fetch(server.port(), {.path = path, .headers = {"Range: " + std::string(testCase.range)}});
    EXPECT_EQ(reply.status, testCase.status) << testCase.range;
    EXPECT_EQ(reply.body, testCase.body) << testCase.range;
    EXPECT_EQ(reply.headers["content-range"], testCase.contentRange) << testCase.range;
  }
  const auto empty = uploadedPath(server, {.data = ""});
  EXPECT_EQ(fetch(server.port(), {.path = empty, .headers = {"Range: bytes=0-"}}).body, "");
}

TEST(Files, NeverLeadOutOfTheFolder) {
  const TemporaryFolder folder;
  const auto secret = folder.write("secret", "secret");
  folder.write("kept/0123456789abcdef-plain.txt", "plain");
  folder.write("kept/other.txt", "secret");
  fs::create_symlink(secret, folder.path() / "kept/0123456789abcdef-link");
  const ServerProcess server({"--files", (folder.path() / "kept").string()});
  EXPECT_EQ(fetch(server.port(), {.path = "/files/0123456789abcdef-plain.txt"}).body, "plain");
  for (const char* path : {"/files/../secret", "/files/%2e%2e/secret", "/files/..%2fsecret", "/files/other.txt",
                           "/files/0123456789abcdef-/../../secret", "/files/0123456789abcdef-%2e%2e%2f%2e%2e%2fsecret",
                           "/files/0123456789abcdef-link", "/files/0123456789abcdef-", "/files/", "/files",
                           "/files/0123456789ABCDEF-plain.txt", "/files//etc/passwd", "/files/0123456789abcdef-%00"}) {
    const auto reply = fetch(server.port(), {.path = path});
    EXPECT_TRUE(reply.status == 404 || reply.status == 400) << path << " gave " << reply.status;
    EXPECT_EQ(reply.body.find("secret"), std::string::npos) << path;
  }
}

TEST(Files, StayInAGivenFolderAndGoWithATemporaryOne) {
  const TemporaryFolder temporary;
  const auto& folder = temporary.path();
  setenv("TMPDIR", folder.c_str(), 1);
  {
    const ServerProcess server;
    uploadedPath(server, {});
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
  }
  EXPECT_TRUE(fs::is_empty(folder)) << "the temporary folder is left behind";
  unsetenv("TMPDIR");

  std::string path;
  {
    const ServerProcess server({"--files", folder.string()});
    path = uploadedPath(server, {});
  }
  const ServerProcess next({"--files", folder.string()});
  EXPECT_EQ(fetch(next.port(), {.path = path}).body, "hello") << "an earlier run's file is lost";
}

}  // namespace
}  // namespace orivex::testing
