#include "PageOrigins.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "orivex/platform/base/Url.h"

namespace orivex {
namespace {

void dropEnding(std::string& text, std::string_view ending) {
  if (text.ends_with(ending)) text.resize(text.size() - ending.size());
}

}  // namespace

std::string originOf(const std::optional<std::string>& url) {
  const auto parsed = url ? Url::parse(*url) : std::nullopt;
  if (!parsed) return {};
  auto origin = parsed->origin();
  if (const auto at = origin.rfind('@'); at != std::string::npos)
    origin = parsed->scheme() + "://" + origin.substr(at + 1);
  std::transform(origin.begin(), origin.end(), origin.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  if (origin.starts_with("https://")) dropEnding(origin, ":443");
  if (origin.starts_with("http://")) dropEnding(origin, ":80");
  return origin;
}

void PageOrigins::committed(const std::optional<std::string>& url) {
  if (!firstCommitted_) firstCommitted_ = originOf(url);
}

bool PageOrigins::finished(const std::optional<std::string>& url) {
  if (firstFinished_) return false;
  firstFinished_ = originOf(url);
  return true;
}

std::vector<std::string> PageOrigins::all(const std::vector<std::string>& listed) const {
  std::vector<std::string> origins{server_, firstCommitted_.value_or(""), firstFinished_.value_or("")};
  std::transform(listed.begin(), listed.end(), std::back_inserter(origins), originOf);
  std::erase(origins, "");
  return origins;
}

bool PageOrigins::trusts(const std::optional<std::string>& url, const std::vector<std::string>& listed) const {
  if (!url) return true;
  const auto origins = all(listed);
  return std::find(origins.begin(), origins.end(), originOf(url)) != origins.end();
}

}  // namespace orivex
