#include "Redirect.h"

#include "CurlHandles.h"

namespace orivex::gtk {
namespace {

using CurlText = std::unique_ptr<char, FreeWith<curl_free>>;

std::string part(CURLU* url, CURLUPart which) {
  char* text = nullptr;
  if (curl_url_get(url, which, &text, CURLU_DEFAULT_PORT) != CURLUE_OK) return {};
  return CurlText(text).get();
}

}  // namespace

std::optional<Redirect> Redirect::of(const std::string& address, const std::string& location) {
  const CurlUrl url(curl_url());
  if (curl_url_set(url.get(), CURLUPART_URL, address.c_str(), 0) != CURLUE_OK) return std::nullopt;
  const auto scheme = part(url.get(), CURLUPART_SCHEME);
  const auto host = part(url.get(), CURLUPART_HOST);
  const auto port = part(url.get(), CURLUPART_PORT);
  constexpr unsigned flags = CURLU_NON_SUPPORT_SCHEME | CURLU_URLENCODE;
  if (curl_url_set(url.get(), CURLUPART_URL, location.c_str(), flags) != CURLUE_OK) return std::nullopt;

  Redirect redirect;
  char* whole = nullptr;
  if (curl_url_get(url.get(), CURLUPART_URL, &whole, 0) != CURLUE_OK) return std::nullopt;
  redirect.address = CurlText(whole).get();
  const auto newScheme = part(url.get(), CURLUPART_SCHEME);
  const bool isUpgrade = scheme == "http" && newScheme == "https";
  redirect.isWeb = newScheme == "http" || newScheme == "https";
  redirect.isDowngrade = scheme == "https" && newScheme != "https";
  redirect.isSameHost = curl_strequal(host.c_str(), part(url.get(), CURLUPART_HOST).c_str()) != 0 &&
                        (isUpgrade || port == part(url.get(), CURLUPART_PORT));
  return redirect;
}

}  // namespace orivex::gtk
