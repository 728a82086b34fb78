#pragma once

#include <memory>

#include <curl/curl.h>

namespace orivex::gtk {

/// Deleter that calls the clean-up function which libcurl names for the handle.
template <auto cleanUp>
struct CleanUpWith {
  template <class Handle>
  void operator()(Handle* handle) const {
    cleanUp(handle);
  }
};

using CurlEasy = std::unique_ptr<CURL, CleanUpWith<curl_easy_cleanup>>;
using CurlMulti = std::unique_ptr<CURLM, CleanUpWith<curl_multi_cleanup>>;
using CurlList = std::unique_ptr<curl_slist, CleanUpWith<curl_slist_free_all>>;
using CurlForm = std::unique_ptr<curl_mime, CleanUpWith<curl_mime_free>>;

}  // namespace orivex::gtk
