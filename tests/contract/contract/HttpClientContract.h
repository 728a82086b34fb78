#pragma once

#include <algorithm>
#include <tuple>

#include "contract/Fixture.h"

#include "orivex/platform/ports/HttpClient.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::contract {

template <ServerFixture Fixture>
class HttpClientContract : public Suite<Fixture> {
 protected:
  static constexpr std::size_t mebibyte = 1 << 20;

  StatusResult fetch(const std::string& address, double timeout = patience) {
    std::optional<StatusResult> result;
    const auto& platform = this->fixture_.platform();
    platform.httpClient.send({*Url::parse(address), timeout, {}}, [&](StatusResult got) {
      EXPECT_FALSE(result) << "completed twice";
      EXPECT_TRUE(platform.mainQueue.isMainThread());
      result = std::move(got);
    });
    EXPECT_FALSE(result) << "completed inside the call";
    EXPECT_TRUE(this->fixture_.wait([&] { return result.has_value(); }, 2 * patience)) << address;
    this->pass(0.05);
    return result.value_or(TransportError{TransportError::other, "no completion"});
  }

  struct Upload {
    UploadReply reply;
    std::vector<double> progress;
    double seconds = 0;
  };

  Upload upload(const std::string& address, double idleTimeout = patience) {
    const auto& platform = this->fixture_.platform();
    const double start = platform.mainQueue.now();
    std::optional<UploadReply> reply;
    Upload upload;
    platform.httpClient.upload(
        {.url = *Url::parse(address),
         .headers = {{"Content-Type", "multipart/form-data"}},
         .file = FilePart{"file", FilePart::Bytes{std::string(mebibyte, 'x')}, "clip.wav", "audio/wav"},
         .fields = {{"key", "value"}},
         .idleTimeout = idleTimeout},
        [&](double fraction) {
          EXPECT_FALSE(reply) << "progress after the end";
          EXPECT_TRUE(platform.mainQueue.isMainThread());
          EXPECT_GE(fraction, upload.progress.empty() ? 0 : upload.progress.back());
          upload.progress.push_back(fraction);
        },
        [&](UploadReply got) {
          EXPECT_FALSE(reply) << "completed twice";
          EXPECT_TRUE(platform.mainQueue.isMainThread());
          reply = std::move(got);
        });
    EXPECT_TRUE(!reply && upload.progress.empty()) << "told inside the call";
    EXPECT_TRUE(this->fixture_.wait([&] { return reply.has_value(); }, 2 * patience)) << address;
    upload.seconds = platform.mainQueue.now() - start;
    this->pass(0.05);
    upload.reply = reply.value_or(UploadReply{});
    return upload;
  }
};
TYPED_TEST_SUITE_P(HttpClientContract);

TYPED_TEST_P(HttpClientContract, AReplyIsAResponseWhateverItsStatus) {
  const Site site{{"/fine", {.body = "hello"}},
                  {"/missing", {.status = 404, .body = "no"}},
                  {"/down", {.status = 503}},
                  {"/moved", {.status = 302, .location = "/moved/on"}},
                  {"/moved/on", {.status = 301, .location = "/fine"}},
                  {"/moved/away", {.status = 302, .location = "/missing"}},
                  {"/endless", {.endless = true}}};
  const auto origin = this->fixture_.serve(site);
  for (const auto& [target, status] : {std::pair{"/fine", 200},
                                       {"/missing", 404},
                                       {"/down", 503},
                                       {"/moved", 200},
                                       {"/moved/away", 404},
                                       {"/endless", 200}}) {
    const auto result = this->fetch(origin + target);
    ASSERT_TRUE(std::holds_alternative<int>(result)) << target << ": " << std::get<TransportError>(result).detail;
    EXPECT_EQ(std::get<int>(result), status) << target;
  }
}

TYPED_TEST_P(HttpClientContract, ARequestThatIsRefusedOrForgottenEndsInAnErrorInItsOwnTime) {
  const auto origin = this->fixture_.serve({{"/silent", {.silent = true}}});
  const auto& queue = this->fixture_.platform().mainQueue;
  for (const auto& [address, timeout, timesOut] : {std::tuple{this->fixture_.refusingOrigin() + "/", patience, false},
                                                   std::tuple{origin + "/silent", 0.5, true}}) {
    const double start = queue.now();
    const auto result = this->fetch(address, timeout);
    const auto* error = std::get_if<TransportError>(&result);
    ASSERT_TRUE(error) << address;
    EXPECT_EQ(error->code == TransportError::timedOut, timesOut);
    EXPECT_NE(error->description, "");
    EXPECT_GE(queue.now() - start, timesOut ? 0.45 : 0);
    EXPECT_LE(queue.now() - start, patience);
  }
}

TYPED_TEST_P(HttpClientContract, AnUploadsReplyIsAResponseWhateverItsStatusAndOnlyAMoveIsFollowed) {
  const Site site{{"/taken", {.body = "stored"}},
                  {"/refused", {.status = 400, .body = "no"}},
                  {"/down", {.status = 503}},
                  {"/moved", {.status = 307, .body = "there", .location = "/taken"}},
                  {"/seen", {.status = 302, .body = "there", .location = "/taken"}},
                  {"/long", {.status = 500, .body = std::string(3 * TestFixture::mebibyte, 'x')}}};
  const auto origin = this->fixture_.serve(site);
  const struct {
    const char* target;
    int status;
    std::string body;
  } rows[] = {
      {"/taken", 200, "stored"},
      {"/refused", 400, "no"},
      {"/down", 503, ""},
      {"/moved", 200, "stored"},
      {"/seen", 302, "there"},
      {"/gone", 404, "not found"},
      {"/long", 500, std::string(TestFixture::mebibyte, 'x')},
  };
  for (const auto& row : rows) {
    const auto upload = this->upload(origin + row.target);
    EXPECT_FALSE(upload.reply.error) << row.target;
    ASSERT_TRUE(upload.reply.response) << row.target;
    EXPECT_EQ(upload.reply.response->status, row.status) << row.target;
    EXPECT_TRUE(upload.reply.response->body == row.body) << row.target;
    EXPECT_EQ(std::count(upload.progress.begin(), upload.progress.end(), 1.0), 1) << row.target;
    EXPECT_LE(static_cast<double>(upload.progress.size()), 30 * upload.seconds + 2) << row.target;
  }
}

TYPED_TEST_P(HttpClientContract, AnUploadThatIsRefusedOrForgottenEndsInAnError) {
  const auto origin = this->fixture_.serve({{"/silent", {.silent = true}}, {"/endless", {.endless = true}}});
  const struct {
    std::string address;
    double idleTimeout;
    bool timesOut;
    bool answers;
  } rows[] = {{this->fixture_.refusingOrigin() + "/", patience, false, false},
              {origin + "/silent", 0.5, true, false},
              {origin + "/endless", 0.5, true, true}};
  for (const auto& row : rows) {
    const auto upload = this->upload(row.address, row.idleTimeout);
    EXPECT_EQ(upload.reply.response.has_value(), row.answers) << row.address;
    ASSERT_TRUE(upload.reply.error) << row.address;
    EXPECT_EQ(upload.reply.error->code == TransportError::timedOut, row.timesOut) << upload.reply.error->description;
    EXPECT_NE(upload.reply.error->description, "") << row.address;
    EXPECT_GE(upload.seconds, row.timesOut ? row.idleTimeout : 0) << row.address;
  }
}

TYPED_TEST_P(HttpClientContract, WhatWaitsDoesNotHoldUpAnother) {
  const auto origin = this->fixture_.serve({{"/silent", {.silent = true}}, {"/fine", {.body = "hello"}}});
  auto& client = this->fixture_.platform().httpClient;
  std::string requests;
  std::string uploads;
  for (const auto& [target, timeout, name] :
       {std::tuple{"/silent", 1.0, "slow"}, std::tuple{"/fine", patience, "quick "}}) {
    const auto url = *Url::parse(origin + target);
    client.send({url, timeout, {}}, [&, name = name](const StatusResult&) { requests += name; });
    client.upload(
        {.url = url, .headers = {}, .file = {}, .fields = {}, .idleTimeout = timeout}, [](double) {},
        [&, name = name](const UploadReply&) { uploads += name; });
  }
  EXPECT_TRUE(this->wait([&] { return requests.size() > 6 && uploads.size() > 6; }));
  EXPECT_EQ(requests, "quick slow");
  EXPECT_EQ(uploads, "quick slow");
}

TYPED_TEST_P(HttpClientContract, AnUploadThatIsCancelledEndsOnceAndSoon) {
  const auto origin = this->fixture_.serve({{"/silent", {.silent = true}}, {"/endless", {.endless = true}}});
  for (const auto& [target, seconds] : {std::pair{"/silent", 0.0}, {"/silent", 0.3}, {"/endless", 0.3}}) {
    std::vector<UploadReply> replies;
    const auto cancel = this->fixture_.platform().httpClient.upload(
        {.url = *Url::parse(origin + target),
         .headers = {},
         .file = FilePart{"file", FilePart::Bytes{std::string(this->mebibyte, 'x')}, "a", "b"},
         .fields = {},
         .idleTimeout = 5 * patience},
        [&](double) { EXPECT_TRUE(replies.empty()) << "progress after the end"; },
        [&](UploadReply reply) { replies.push_back(std::move(reply)); });
    if (seconds > 0) this->pass(seconds);
    cancel();
    cancel();
    EXPECT_TRUE(replies.empty()) << "completed inside the call";
    ASSERT_TRUE(this->wait([&] { return !replies.empty(); })) << target;
    cancel();
    this->pass(0.3);
    ASSERT_EQ(replies.size(), 1U) << target;
    ASSERT_TRUE(replies[0].error) << target;
    EXPECT_EQ(replies[0].error->code, TransportError::other);
    EXPECT_EQ(replies[0].error->description, "已取消");
  }
}

REGISTER_TYPED_TEST_SUITE_P(HttpClientContract, AReplyIsAResponseWhateverItsStatus,
                            ARequestThatIsRefusedOrForgottenEndsInAnErrorInItsOwnTime,
                            AnUploadsReplyIsAResponseWhateverItsStatusAndOnlyAMoveIsFollowed,
                            AnUploadThatIsRefusedOrForgottenEndsInAnError, AnUploadThatIsCancelledEndsOnceAndSoon,
                            WhatWaitsDoesNotHoldUpAnother);

}  // namespace orivex::contract
