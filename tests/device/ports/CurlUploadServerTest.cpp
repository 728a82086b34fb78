#include <fstream>
#include <sstream>

#include "CurlUploadFixture.h"
#include "HttpClient.h"
#include "ServerProcess.h"

namespace orivex::gtk {
namespace {

using nlohmann::json;

/// Uploads to the chat server, which stores them and gives them back.
class CurlUploadServerTest : public CurlUploadFixture {
 protected:
  UploadRequest form(FilePart file) {
    auto request = CurlUploadFixture::form(server_.address() + "/api/chat/outside/guest/file/upload", std::move(file));
    request.headers = {{"Accept", "*/*"},
                       {"Content-Type", "multipart/form-data"},
                       {"x-entry", ""},
                       {"x-device-id", "D"},
                       {"Authorization", "Bearer K"},
                       {"User-Agent", "KepChatSDK/iOS/1.2.0.7(x86_64)"}};
    return request;
  }

  std::string storedBytes(const Upload& upload) {
    const std::string url = json::parse(upload.body()).at("url");
    return testing::fetch(server_.port(), {.path = url.substr(url.find("/files/"))}).body;
  }

  const testing::ServerProcess server_{{"--max-upload=5000000"}};
};

TEST_F(CurlUploadServerTest, ReadsBackEveryByteAndName) {
  std::string noise;
  for (std::uint32_t state = 1; noise.size() < 3'000'000; state = state * 1664525 + 1013904223) {
    noise += static_cast<char>(state >> 24U);
  }
  const std::string misleading = "\r\n--\r\n----\r\nContent-Disposition: form-data; name=\"file\"\r\n\r\n--";
  struct Case {
    const char* fileName;
    std::string content;
  };
  const Case cases[] = {
      {"photo.jpg", noise},     {"empty.txt", ""},         {"合同 “终”.pdf", misleading},
      {"say \"hi\".txt", "x"},  {"two\r\nlines.txt", "x"}, {"semi;colon=1.txt", "x"},
      {"back\\slash.txt", "x"}, {"", "nameless"},          {"nul.bin", std::string(70'000, '\0')},
  };
  for (const auto& [fileName, content] : cases) {
    for (const bool fromDisk : {true, false}) {
      SCOPED_TRACE(std::string(fileName) + (fromDisk ? " from disk" : " from memory"));
      auto file = fromDisk ? path(folder_.write("content", content).string()) : bytes(content);
      file.fileName = fileName;
      auto request = form(file);
      request.fields = {{"note", "值 \"1\"\r\n"}, {"empty", ""}};
      const auto upload = send(request);
      ASSERT_EQ(upload.status(), 200) << upload.body() << upload.error();
      EXPECT_EQ(upload.progress.back(), 1);
      EXPECT_EQ(
          server_.requestLog().back().at("parts"),
          json({{{"name", "file"}, {"fileName", fileName}, {"contentType", "text/plain"}, {"size", content.size()}},
                {{"name", "note"}, {"value", "值 \"1\"\r\n"}, {"size", 9}},
                {{"name", "empty"}, {"value", ""}, {"size", 0}}}));
      EXPECT_TRUE(storedBytes(upload) == content);
    }
  }
}

TEST_F(CurlUploadServerTest, IsRefusedAFileBeyondTheLimitBeforeItIsSent) {
  const auto upload = send(form(bytes(std::string(6'000'000, 'x'))));
  EXPECT_EQ(upload.status(), 413) << upload.error();
  EXPECT_EQ(json::parse(upload.body()), json({{"msg", "file too large"}}));
  EXPECT_TRUE(upload.progress.empty());
}

TEST_F(CurlUploadServerTest, EndsOnceWhateverTheServerBreaks) {
  constexpr std::size_t size = 400'000;
  std::vector<std::pair<json, std::optional<int>>> rows = {
      {{{"kind", "cut"}}, 200}, {{{"kind", "brokenJson"}}, 200}, {{{"kind", "status"}, {"status", 503}}, 503}};
  for (std::size_t quarter = 0; quarter <= 4; ++quarter) {
    rows.push_back({{{"kind", "reset"}, {"afterBytes", quarter * size / 4}}, std::nullopt});
  }
  for (auto& [fault, status] : rows) {
    fault["target"] = "upload";
    fault["times"] = 1;
    server_.addFaults(json::array({fault}));
    const auto upload = send(form(bytes(std::string(size, 'x'))));
    EXPECT_EQ(upload.status(), status) << fault << upload.error();
    EXPECT_TRUE(status || !upload.error().empty()) << fault;
    EXPECT_EQ(send(form(bytes("x"))).status(), 200) << "after " << fault;
  }
}

}  // namespace
}  // namespace orivex::gtk
