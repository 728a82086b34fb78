#pragma once

#include <memory>

#include <curl/curl.h>

#include "../FreeWith.h"

namespace orivex::gtk {

using CurlEasy = std::unique_ptr<CURL, FreeWith<curl_easy_cleanup>>;
using CurlMulti = std::unique_ptr<CURLM, FreeWith<curl_multi_cleanup>>;
using CurlList = std::unique_ptr<curl_slist, FreeWith<curl_slist_free_all>>;
using CurlUrl = std::unique_ptr<CURLU, FreeWith<curl_url_cleanup>>;
using CurlForm = std::unique_ptr<curl_mime, FreeWith<curl_mime_free>>;

}  // namespace orivex::gtk
