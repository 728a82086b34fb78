#include "orivex/media/PageCheck.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/ports/HttpClient.h"

namespace orivex {
namespace {

constexpr double timeoutSeconds = 5.0;

PageCheckOutcome judge(const TransportError& error) {
  if (error.code == TransportError::timedOut) {
    log::debugPrint("请求超时");
    return PageCheckFailure{.message = "服务请求超时", .timedOut = true};
  }
  log::debugPrint("请求失败：" + error.description);
  if (!error.detail.empty()) log::debugPrint(error.detail);
  // Told like a failed load, so that the visitor is not left with the placeholder.
  return PageCheckFailure{.message = "请求失败,请稍后重试", .detail = error.detail};
}

PageCheckOutcome judge(int status, UrlRequest request) {
  log::debugPrint("请求成功");
  log::debugPrint("Response Status Code: " + std::to_string(status));
  // The server answers the page address with any such status when it does not accept the token in it.
  if (status >= 400 && status <= 599) {
    return PageCheckFailure{.message = "令牌无效或者已过期", .status = status};
  }
  return request;
}

}  // namespace

void checkPage(const Url& url, Once<void(PageCheckOutcome)> completion) {
  UrlRequest request{url, timeoutSeconds, {{"User-Agent", OVKFApiHelper::userAgent()}}};
  Platform::current().httpClient.send(
      request, [request, completion = std::move(completion)](const StatusResult& result) mutable {
        const auto* error = std::get_if<TransportError>(&result);
        std::move(completion)(error ? judge(*error) : judge(std::get<int>(result), std::move(request)));
      });
}

}  // namespace orivex
