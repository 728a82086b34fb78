#pragma once

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "contract/Fixture.h"

#include "orivex/platform/ports/HttpClient.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::contract {

template <ServerFixture Fixture>
class HttpClientContract : public ::testing::Test {
 protected:
  static constexpr std::size_t mebibyte = 1024 * 1024;

  HttpResult fetch(const std::string& address, double timeout = patience) {
    std::optional<HttpResult> result;
    const auto& platform = fixture_.platform();
    platform.httpClient.send({*Url::parse(address), timeout, {}}, [&](HttpResult got) {
      EXPECT_FALSE(result) << "completed twice";
      EXPECT_TRUE(platform.mainQueue.isMainThread());
      result = std::move(got);
    });
    EXPECT_FALSE(result) << "completed inside the call";
    EXPECT_TRUE(fixture_.wait([&] { return result.has_value(); }, 2 * patience)) << address;
    fixture_.wait([] { return false; }, 0.05);
    return result.value_or(TransportError{TransportError::other, "no completion"});
  }

  Fixture fixture_;
};
TYPED_TEST_SUITE_P(HttpClientContract);

TYPED_TEST_P(HttpClientContract, AReplyIsAResponseWhateverItsStatus) {
  const Site site{{"/fine", {.body = "hello"}},
                  {"/missing", {.status = 404, .body = "no"}},
                  {"/down", {.status = 503}},
                  {"/moved", {.status = 302, .location = "/moved/on"}},
                  {"/moved/on", {.status = 301, .location = "/fine"}},
                  {"/moved/away", {.status = 302, .location = "/missing"}},
                  {"/long", {.body = std::string(3 * TestFixture::mebibyte, 'x')}}};
  const auto origin = this->fixture_.serve(site);
  const struct {
    const char* target;
    int status;
    std::string body;
  } rows[] = {
      {"/fine", 200, "hello"},  {"/missing", 404, "no"},    {"/down", 503, ""},
      {"/moved", 200, "hello"}, {"/moved/away", 404, "no"}, {"/long", 200, std::string(TestFixture::mebibyte, 'x')},
  };
  for (const auto& row : rows) {
    const auto result = this->fetch(origin + row.target);
    const auto* response = std::get_if<HttpResponse>(&result);
    ASSERT_TRUE(response) << row.target << ": " << std::get<TransportError>(result).description;
    EXPECT_EQ(response->status, row.status) << row.target;
    EXPECT_TRUE(response->body == row.body) << row.target << ": " << response->body.size() << " bytes";
  }
}

TYPED_TEST_P(HttpClientContract, ARefusedConnectionIsAnErrorWithADescription) {
  const auto result = this->fetch(this->fixture_.refusingOrigin() + "/");
  const auto* error = std::get_if<TransportError>(&result);
  ASSERT_TRUE(error);
  EXPECT_NE(error->code, TransportError::timedOut);
  EXPECT_NE(error->description, "");
}

TYPED_TEST_P(HttpClientContract, SilenceEndsInATimeOutAfterTheRequestsOwnTime) {
  const auto origin = this->fixture_.serve({{"/silent", {.silent = true}}});
  const auto& queue = this->fixture_.platform().mainQueue;
  const double start = queue.now();
  const auto result = this->fetch(origin + "/silent", 0.5);
  const auto* error = std::get_if<TransportError>(&result);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code, TransportError::timedOut);
  EXPECT_GE(queue.now() - start, 0.45);
  EXPECT_LE(queue.now() - start, patience);
}

TYPED_TEST_P(HttpClientContract, ARequestThatWaitsDoesNotHoldUpAnother) {
  const auto origin = this->fixture_.serve({{"/silent", {.silent = true}}, {"/fine", {.body = "hello"}}});
  std::string order;
  auto& client = this->fixture_.platform().httpClient;
  client.send({*Url::parse(origin + "/silent"), 1.0, {}}, [&](HttpResult) { order += "slow"; });
  client.send({*Url::parse(origin + "/fine"), patience, {}}, [&](HttpResult) { order += "quick "; });
  EXPECT_TRUE(this->fixture_.wait([&] { return order.size() > 6; }, patience));
  EXPECT_EQ(order, "quick slow");
}

REGISTER_TYPED_TEST_SUITE_P(HttpClientContract, AReplyIsAResponseWhateverItsStatus,
                            ARefusedConnectionIsAnErrorWithADescription, SilenceEndsInATimeOutAfterTheRequestsOwnTime,
                            ARequestThatWaitsDoesNotHoldUpAnother);

}  // namespace orivex::contract
