#include "NetworkWatch.h"

#include <utility>

namespace orivex::gtk {
namespace {

// WebKit names neither of the two in its headers.
constexpr const char* domain = "WebKitErrorDomain";
constexpr int internalError = 300;

}  // namespace

NetworkWatch::NetworkWatch(WebKitWebView* view, std::function<void()> lost) : lost_(std::move(lost)) {
  signals_.push_back(SignalConnection::connect<&NetworkWatch::loadChanged>(view, "load-changed", this));
  signals_.push_back(SignalConnection::connect<&NetworkWatch::resourceStarted>(view, "resource-load-started", this));
}

void NetworkWatch::loadChanged(WebKitWebView* /*view*/, WebKitLoadEvent event) {
  loading_ = event == WEBKIT_LOAD_COMMITTED;
  if (!loading_) resources_.clear();
}

void NetworkWatch::resourceStarted(WebKitWebView* /*view*/, WebKitWebResource* resource,
                                   WebKitURIRequest* /*request*/) {
  if (loading_)
    resources_.push_back(SignalConnection::connect<&NetworkWatch::resourceFailed>(resource, "failed", this));
}

void NetworkWatch::resourceFailed(WebKitWebResource* /*resource*/, GError* error) {
  if (!loading_ || !g_error_matches(error, g_quark_from_static_string(domain), internalError)) return;
  loading_ = false;
  lost_();
}

}  // namespace orivex::gtk
