#include <filesystem>
#include <fstream>
#include <mutex>
#include <thread>

#include <sys/stat.h>

#include "CurlUploadFixture.h"

namespace orivex::gtk {
namespace {

namespace fs = std::filesystem;

/// Takes the next form of a connection, the go-ahead included.
struct TakenForm {
  explicit TakenForm(SocketConnection& connection) : head(connection.readHead()) {
    if (head.find("\r\nExpect: 100-continue\r\n") != std::string::npos)
      connection.send("HTTP/1.1 100 Continue\r\n\r\n");
    body = connection.read(contentLength(head));
  }

  std::string boundary() const {
    constexpr std::string_view name = "\r\nContent-Type: multipart/form-data; boundary=";
    const auto found = head.find(name);
    if (found == std::string::npos) return "";
    return head.substr(found + name.size(), head.find("\r\n", found + 2) - found - name.size());
  }

  std::string head;
  std::string body;
};

/// A server that answers every form with status 200 and keeps the last one.
class FormServer {
 public:
  std::string url() const { return server_.url("/upload?x=1"); }
  int connections() const { return server_.connections(); }
  /// Once the reply is there.
  const TakenForm& last() const { return *last_; }

 private:
  std::optional<TakenForm> last_;
  SocketServer server_{[this](SocketConnection& connection) {
    for (;;) {
      TakenForm form(connection);
      if (form.head.empty()) return;
      last_.emplace(std::move(form));
      connection.send(reply(200, "taken"));
    }
  }};
};

class CurlUploadTest : public CurlUploadFixture {};

TEST_F(CurlUploadTest, SendsTheGivenHeadersToTheByteAndTheBoundaryWithTheType) {
  FormServer server;
  auto request = form(server.url(), bytes("x"));
  request.headers = {{"Accept", "*/*"},
                     {"Content-Type", "multipart/form-data"},
                     {"x-entry", ""},
                     {"x-device-id", "D 1"},
                     {"Authorization", "Bearer "},
                     {"User-Agent", "KepChatSDK/iOS/1.2.0.7(x86_64)"},
                     {"x-broken", "a\r\nx-injected: b"}};
  EXPECT_EQ(send(request).body(), "taken");
  const auto& head = server.last().head;
  EXPECT_TRUE(head.starts_with("POST /upload?x=1 HTTP/1.1\r\n")) << head;
  for (const char* line :
       {"\r\nAccept: */*\r\n", "\r\nx-entry:\r\n", "\r\nx-device-id: D 1\r\n", "\r\nAuthorization: Bearer \r\n",
        "\r\nUser-Agent: KepChatSDK/iOS/1.2.0.7(x86_64)\r\n", "\r\nAccept-Encoding: gzip, deflate\r\n"}) {
    EXPECT_NE(head.find(line), std::string::npos) << "no" << line << "in\n" << head;
  }
  EXPECT_EQ(head.find("\r\nContent-Type:"), head.rfind("\r\nContent-Type:")) << head;
  EXPECT_EQ(head.find("\r\nx-injected"), std::string::npos) << head;
  EXPECT_EQ(head.find("\r\nExpect:"), std::string::npos) << "a small form waits for a go-ahead";
}

TEST_F(CurlUploadTest, SendsTheFormToTheByte) {
  std::string everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte += static_cast<char>(byte);
  std::string large;
  while (large.size() < 3'000'000) large += everyByte + "\r\n--";
  const std::vector<FormField> fields = {{"k\"", "值\r\n\"x\""}, {"empty", ""}, {"binary", everyByte}};
  struct Case {
    std::optional<FilePart> file;
    std::string content;
    std::string sentName;  // as the disposition holds it
    std::vector<FormField> fields;
  };
  const auto disk = [&](const std::string& name, const std::string& content) {
    return FilePart::Path{folder_.write(name, content).string()};
  };
  auto cleaned = disk("cleaned", large);
  cleaned.overwrites = {{0, 3, "abcdef"}, {500'000, 1'000'000, "xyz"}, {2'999'000, 500, ""}};
  auto cleanedContent = large;
  cleanedContent.replace(0, 3, "abc").replace(500'000, 1'000'000, "xyz" + std::string(999'997, '\0'));
  cleanedContent.replace(2'999'000, 500, 500, '\0');
  const Case cases[] = {
      {FilePart{"file", cleaned, "cleaned.jpg", "image/jpeg"}, cleanedContent, "cleaned.jpg", {}},
      {FilePart{"file", disk("a", everyByte), "photo.jpg", "image/jpeg"}, everyByte, "photo.jpg", {}},
      {FilePart{"file", disk("b", large), "合同 “终”.pdf", "application/pdf"}, large, "合同 “终”.pdf", fields},
      {FilePart{"file", disk("c", ""), "empty.txt", "text/plain"}, "", "empty.txt", fields},
      {FilePart{"file", disk("合同 \"d\"\n.x", "d"), "a \"q\"\r\n\\.txt", "text/plain"},
       "d",
       "a %22q%22%0D%0A\\.txt",
       {}},
      {FilePart{"file", FilePart::Bytes{everyByte}, "b.bin", "x-own/type"}, everyByte, "b.bin", {}},
      {FilePart{"file", FilePart::Bytes{large}, "", "x-own/type"}, large, "", fields},
      {FilePart{"file", FilePart::Bytes{""}, "..", "text/plain"}, "", "..", fields},
      {std::nullopt, "", "", fields},
      {std::nullopt, "", "", {}},
  };
  FormServer server;
  for (const auto& [file, content, sentName, itsFields] : cases) {
    SCOPED_TRACE(sentName);
    auto request = form(server.url(), bytes(""));
    request.file = file;
    request.fields = itsFields;
    const auto upload = send(request);
    ASSERT_EQ(upload.body(), "taken") << upload.detail();
    EXPECT_EQ(upload.error(), "");
    ASSERT_FALSE(upload.progress.empty());
    EXPECT_EQ(upload.progress.back(), 1);

    const auto delimiter = "--" + server.last().boundary();
    ASSERT_GT(delimiter.size(), 10U) << server.last().head;
    std::string expected;
    if (file) {
      expected.append(delimiter).append("\r\nContent-Disposition: form-data; name=\"file\"; filename=\"");
      expected.append(sentName).append("\"\r\nContent-Type: ").append(file->mimeType);
      expected.append("\r\n\r\n").append(content).append("\r\n");
    }
    for (const auto& field : itsFields) {
      const auto name = field.name == "k\"" ? "k%22" : field.name;
      expected.append(delimiter).append("\r\nContent-Disposition: form-data; name=\"").append(name);
      expected.append("\"\r\n\r\n").append(field.value).append("\r\n");
    }
    expected += delimiter + "--\r\n";
    EXPECT_TRUE(server.last().body == expected) << server.last().body.substr(0, 500) << "\ninstead of\n"
                                                << expected.substr(0, 500);
  }
  EXPECT_EQ(server.connections(), static_cast<int>(std::size(cases)))
      << "a kept connection may be closed by its server";
}

TEST_F(CurlUploadTest, RefusesWhatIsNoReadableFileBeforeItAsksTheServer) {
  const auto loop = folder_.path() / "loop";
  fs::create_symlink(loop, loop);
  const auto pipe = folder_.path() / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  struct Case {
    std::string path;
    const char* words;
  };
  const Case cases[] = {
      {(folder_.path() / "missing").string(), "No such file"},
      {folder_.path().string(), "not a regular file"},
      {pipe.string(), "not a regular file"},
      {"/dev/zero", "not a regular file"},
      {loop.string(), "symbolic links"},
      {std::string(5000, 'x'), "name too long"},
      {"", "No such file"},
  };
  FormServer server;
  for (const auto& [file, words] : cases) {
    const auto upload = send(form(server.url(), path(file)));
    EXPECT_EQ(upload.status(), std::nullopt) << file;
    EXPECT_EQ(upload.error(), "文件无法读取") << file;
    EXPECT_NE(upload.detail().find(words), std::string::npos) << file << ": " << upload.detail();
    EXPECT_TRUE(upload.progress.empty()) << file;
  }
  EXPECT_EQ(server.connections(), 0);
}

TEST_F(CurlUploadTest, SendsTheFileAsItWasWhenTheUploadBegan) {
  // More than the sockets between client and server hold, so that most is still to be read when the file changes.
  constexpr std::size_t size = 40'000'000;
  struct Case {
    const char* name;
    std::function<void(const fs::path&)> change;
    const char* error;
  };
  const Case cases[] = {
      {"grows", [](const fs::path& file) { std::ofstream(file, std::ios::app) << "more"; }, ""},
      {"vanishes", [](const fs::path& file) { fs::remove(file); }, ""},
      {"is replaced", [](const fs::path& file) { fs::remove(file), std::ofstream(file) << "another"; }, ""},
      {"shrinks", [](const fs::path& file) { fs::resize_file(file, size / 2); }, "shorter"},
      {"is emptied", [](const fs::path& file) { fs::resize_file(file, 0); }, "shorter"},
  };
  for (const auto& [name, change, error] : cases) {
    SCOPED_TRACE(name);
    const auto file = folder_.write(name, std::string(size, 'x'));
    std::size_t wanted = 0;
    std::size_t taken = 0;
    SocketServer server([&, change = change](SocketConnection& connection) {
      wanted = contentLength(connection.readHead());
      connection.send("HTTP/1.1 100 Continue\r\n\r\n");
      taken = connection.read(1000).size();
      change(file);
      taken += connection.skip(wanted - taken);
      if (taken == wanted) connection.send(reply(200, "taken"));
    });
    const auto upload = send(form(server.url("/"), path(file)));
    if (*error == '\0') {
      EXPECT_EQ(upload.body(), "taken") << upload.error();
      EXPECT_EQ(taken, wanted);
    } else {
      EXPECT_EQ(upload.status(), std::nullopt);
      EXPECT_NE(upload.detail().find(error), std::string::npos) << upload.detail();
      EXPECT_LT(upload.progress.empty() ? 0 : upload.progress.back(), 1);
    }
  }
}

TEST_F(CurlUploadTest, DestroyedWhileRunningTheClientDropsAllAtOnceAndOnThisThread) {
  std::atomic<int> begun = 0;
  SocketServer server([&](SocketConnection& connection) {
    connection.readHead();
    ++begun;
    connection.skip(1'000'000);
    connection.readHead();
  });
  std::vector<std::thread::id> ends;
  const auto note = [&](void*) { ends.push_back(std::this_thread::get_id()); };
  const auto unheard = [&] {
    return [witness = std::shared_ptr<void>(nullptr, note)](const auto&) {
      ADD_FAILURE() << "called after the end of the client";
    };
  };
  client_->upload(form(server.url("/"), bytes(std::string(30'000'000, 'x'))), unheard(), unheard());
  client_->send({*Url::parse(server.url("/")), 60, {}}, unheard());
  ASSERT_TRUE(wait([&] { return begun == 2; }, patience));
  std::this_thread::sleep_for(std::chrono::milliseconds(50));  // progress now waits in the main queue
  const double start = queue_.now();
  client_.reset();
  EXPECT_LT(queue_.now() - start, 5) << "waited for the silent server";
  pass(0.1);
  EXPECT_EQ(ends, std::vector(3, std::this_thread::get_id()));
}

}  // namespace
}  // namespace orivex::gtk
