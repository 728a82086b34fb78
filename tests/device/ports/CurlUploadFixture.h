#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "GlibMainQueue.h"
#include "net/CurlHttpClient.h"
#include "support/MainLoop.h"
#include "support/SocketServer.h"
#include "support/TemporaryFolder.h"

namespace orivex::gtk {

/// Uploads of the real client. Whatever becomes of an upload, its callbacks are checked against the port's promises.
class CurlUploadFixture : public ::testing::Test {
 protected:
  struct Upload {
    std::optional<UploadReply> reply;
    std::vector<double> progress;
    std::function<void()> cancel;

    std::optional<int> status() const {
      return reply && reply->response ? std::optional(reply->response->status) : std::nullopt;
    }
    std::string body() const { return reply && reply->response ? reply->response->body : ""; }
    /// What a visitor may read, and the log's words; both empty without an error.
    std::string error() const { return reply && reply->error ? reply->error->description : ""; }
    std::string detail() const { return reply && reply->error ? reply->error->detail : ""; }
  };

  /// Seconds after which something that should have happened is taken not to happen.
  static constexpr double patience = 20;

  static void SetUpTestSuite() { g_setenv("no_proxy", "*", TRUE); }

  /// A form with one file, as the component sends it.
  static UploadRequest form(const std::string& url, FilePart file) {
    return {.url = *Url::parse(url),
            .headers = {{"Accept", "*/*"}, {"Content-Type", "multipart/form-data"}},
            .file = std::move(file),
            .fields = {},
            .idleTimeout = patience};
  }
  static FilePart path(const std::string& path) { return {"file", FilePart::Path{path}, "a.bin", "text/plain"}; }
  static FilePart bytes(std::string bytes) {
    return {"file", FilePart::Bytes{std::move(bytes)}, "a.bin", "text/plain"};
  }

  std::shared_ptr<Upload> begin(UploadRequest request) {
    auto upload = std::make_shared<Upload>();
    const auto before = std::make_shared<bool>(true);
    upload->cancel = client_->upload(
        std::move(request),
        [this, upload, before](double fraction) {
          EXPECT_FALSE(*before) << "told inside the call";
          EXPECT_TRUE(queue_.isMainThread());
          EXPECT_FALSE(upload->reply) << "progress after the end";
          EXPECT_GT(fraction, upload->progress.empty() ? 0 : upload->progress.back());
          EXPECT_LE(fraction, 1);
          upload->progress.push_back(fraction);
        },
        [this, upload, before](UploadReply reply) {
          EXPECT_FALSE(*before) << "ended inside the call";
          EXPECT_TRUE(queue_.isMainThread());
          upload->reply = std::move(reply);
        });
    *before = false;
    return upload;
  }

  /// What becomes of a request for the status of a page.
  StatusResult fetch(const UrlRequest& request) {
    std::optional<StatusResult> result;
    client_->send(request, [&](StatusResult got) { result = std::move(got); });
    EXPECT_FALSE(result) << "answered inside the call";
    EXPECT_TRUE(wait([&] { return result.has_value(); }, patience)) << request.url.absoluteString();
    return result.value_or(TransportError{TransportError::other, "nothing"});
  }

  Upload send(UploadRequest request) {
    const auto upload = begin(std::move(request));
    EXPECT_TRUE(wait([&] { return upload->reply.has_value(); }, 3 * patience));
    return *upload;
  }

  TemporaryFolder folder_;
  GlibMainQueue queue_;
  std::unique_ptr<CurlHttpClient> client_ = std::make_unique<CurlHttpClient>(queue_);
};

}  // namespace orivex::gtk
