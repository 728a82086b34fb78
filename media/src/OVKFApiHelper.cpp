#include "orivex/media/OVKFApiHelper.h"

#include <algorithm>
#include <charconv>
#include <filesystem>

#include <sys/utsname.h>

#include "VisitorOverlay.h"

#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/ProcessState.h"
#include "orivex/platform/base/Text.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ports/Application.h"
#include "orivex/platform/ports/Bundle.h"
#include "orivex/platform/ports/Device.h"
#include "orivex/platform/ports/HttpClient.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/ProgressOverlay.h"
#include "orivex/platform/ui/View.h"

namespace orivex {
namespace {

std::optional<std::string> stringValue(const InfoDictionary& dictionary, std::string_view key) {
  const auto found = dictionary.find(key);
  if (found == dictionary.end()) return std::nullopt;
  const auto* text = std::get_if<std::string>(&found->second);
  return text ? std::optional(*text) : std::nullopt;
}

std::string requiredString(const InfoDictionary& dictionary, std::string_view key) {
  auto value = stringValue(dictionary, key);
  if (!value) fatalError("OrivexSDK.bundle", "the information dictionary has no text for " + std::string(key));
  return *std::move(value);
}

bool isWithin(char32_t point, char32_t first, char32_t last) {
  return point >= first && point <= last;
}

std::string lowerCase(std::string text) {
  for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return text;
}

std::u32string trimmed(std::u32string text) {
  const auto isBlank = [](char32_t point) { return point == U' ' || point == U'\t'; };
  text.erase(std::find_if_not(text.rbegin(), text.rend(), isBlank).base(), text.end());
  text.erase(text.begin(), std::find_if_not(text.begin(), text.end(), isBlank));
  return text;
}

// Of this process, in lower case.
struct KnownIdentifier {
  std::string text;
};

constexpr double pageCheckSeconds = 5.0;

PageCheckOutcome judge(const TransportError& error) {
  if (error.code == TransportError::timedOut) {
    log::debugPrint("请求超时");
    return PageCheckFailure{.message = tr("服务请求超时"), .timedOut = true};
  }
  log::debugPrint("请求失败：" + error.description);
  if (!error.detail.empty()) log::debugPrint(error.detail);
  // Told like a failed load, so that the visitor is not left with the placeholder.
  return PageCheckFailure{.message = tr("请求失败,请稍后重试"), .detail = error.detail};
}

PageCheckOutcome judge(int status, UrlRequest request) {
  log::debugPrint("请求成功");
  log::debugPrint("Response Status Code: " + std::to_string(status));
  // The server answers the page address with any such status when it does not accept the token in it.
  if (status >= 400 && status <= 599) {
    return PageCheckFailure{.message = tr("令牌无效或者已过期"), .status = status};
  }
  return request;
}

}  // namespace

std::string OVKFApiHelper::sdkVersion(bool isShort) {
  const auto& dictionary = Platform::current().componentBundle.infoDictionary();
  if (!dictionary) return {};
  auto version = requiredString(*dictionary, "CFBundleShortVersionString");
  if (!isShort) version += "." + requiredString(*dictionary, "CFBundleVersion");
  return version;
}

std::string OVKFApiHelper::deviceModel() {
  utsname names{};
  return uname(&names) == 0 ? names.machine : "";
}

const std::string& OVKFApiHelper::deviceIdentifier() {
  auto& [known] = ProcessState::current().get<KnownIdentifier>();
  if (known.empty()) known = lowerCase(Platform::current().device.identifierForVendor().value_or(""));
  return known;
}

std::string OVKFApiHelper::userAgent() {
  return "KepChatSDK/iOS/" + sdkVersion(false) + "(" + deviceModel() + ")";
}

std::string OVKFApiHelper::appDisplayName() {
  if (const auto& dictionary = Platform::current().mainBundle.infoDictionary()) {
    for (const auto* key : {"CFBundleDisplayName", "CFBundleName"}) {
      if (auto name = stringValue(*dictionary, key)) return *std::move(name);
    }
  }
  return "Unknown App Name";
}

void OVKFApiHelper::showMessage(const std::string& message, double delay, Once<void()> completion) {
  auto& queue = Platform::current().mainQueue;
  queue.async([message] { VisitorOverlay::shared().showMessage(message); });
  queue.asyncAfter(delay, [completion = std::move(completion)]() mutable {
    VisitorOverlay::shared().endMessage();
    std::move(completion)();
  });
}

void OVKFApiHelper::showMessage(const std::weak_ptr<View>& view, const std::string& message, double delay,
                                Once<void()> completion) {
  const auto shown = view.lock();
  if (!shown || !shown->isShowing()) {
    log::print("A screen that does not show has nothing to tell: " + message);
    return;
  }
  Platform::current().progressOverlay.bringTo(*shown);
  showMessage(message, delay, std::move(completion));
}

void OVKFApiHelper::showNotice(const std::string& message, double delay) {
  auto& queue = Platform::current().mainQueue;
  queue.async([message] { VisitorOverlay::shared().showNotice(message); });
  queue.asyncAfter(delay, [] { VisitorOverlay::shared().endMessage(); });
}

void OVKFApiHelper::checkPage(const Url& url, Once<void(PageCheckOutcome)> completion) {
  UrlRequest request{url, pageCheckSeconds, {{"User-Agent", userAgent()}}};
  Platform::current().httpClient.send(
      request, [request, completion = std::move(completion)](const StatusResult& result) mutable {
        const auto* error = std::get_if<TransportError>(&result);
        std::move(completion)(error ? judge(*error) : judge(std::get<int>(result), std::move(request)));
      });
}

void OVKFApiHelper::openExternalURL(const std::optional<std::string>& text) {
  if (!text || text->empty()) return;
  std::optional<Url> url;
  if (text->size() <= longestAddress) {
    url = Url::parse(needsPercentEncoding(*text) ? percentEncodeQuery(*text).value_or("") : *text);
  }
  if (!url) {
    log::debugPrint("无效的URL");
    return;
  }
  log::debugPrint(url->absoluteString());
  auto& application = Platform::current().application;
  if (application.canOpen(*url)) {
    application.open(*url);
  } else {
    log::debugPrint("地址无法打开");
  }
}

bool OVKFApiHelper::needsPercentEncoding(std::string_view text) {
  const auto points = codePoints(text);
  const auto whole = trimmed(points);
  const bool allCommonHan = !whole.empty() && std::all_of(whole.begin(), whole.end(), [](char32_t point) {
    return isWithin(point, 0x4E00, 0x9FA5);
  });
  const bool oneEastAsian = whole.size() == 1 && isWithin(whole.front(), 0x2E80, 0xFE4F);
  const bool hasBlank = text.find(' ') != std::string_view::npos;
  const bool hasThreeByteCharacter =
      std::any_of(points.begin(), points.end(), [](char32_t point) { return isWithin(point, 0x800, 0xFFFF); });
  return allCommonHan || oneEastAsian || hasBlank || hasThreeByteCharacter;
}

std::int64_t OVKFApiHelper::fileSize(const Url& url) {
  std::error_code error;
  const auto size = std::filesystem::file_size(url.filePath().value_or(""), error);
  if (!error) return static_cast<std::int64_t>(size);
  log::debugPrint("Error getting file size: " + error.message());
  return 0;
}

Color OVKFApiHelper::color(std::string_view hex) {
  unsigned value = 0;
  const char* const end = hex.data() + hex.size();
  if (hex.size() != 7 || hex.front() != '#') return Color::black();
  const auto scanned = std::from_chars(hex.data() + 1, end, value, 16);
  if (scanned.ec != std::errc() || scanned.ptr != end) return Color::black();
  const auto channel = [value](unsigned shift) { return ((value >> shift) & 0xFFU) / 255.0; };
  return {channel(16), channel(8), channel(0), 1};
}

}  // namespace orivex
