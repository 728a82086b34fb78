#pragma once

#include <map>
#include <string>

#include "HttpClient.h"

namespace orivex::testing {

/// A correct upload as the component sends it, to be spoiled in one place by a test.
struct UploadForm {
  std::string fileName = "a.txt";
  std::string contentType = "text/plain";
  std::string data = "hello";
  std::map<std::string, std::string> headers{
      {"Accept", "*/*"},
      {"Content-Type", "multipart/form-data; boundary=----b0undary"},
      {"x-entry", "E"},
      {"x-device-id", "D"},
      {"Authorization", "Bearer K"},
      {"User-Agent", "KepChatSDK/iOS/1.2.0.7(x86_64)"},
  };

  [[nodiscard]] std::string body() const {
    return "------b0undary\r\nContent-Disposition: form-data; name=\"file\"; filename=\"" + fileName +
           "\"\r\nContent-Type: " + contentType + "\r\n\r\n" + data + "\r\n------b0undary--\r\n";
  }

  [[nodiscard]] Request request() const { return request(body()); }

  [[nodiscard]] Request request(std::string exactBody) const {
    Request request{.method = "POST", .path = "/api/chat/outside/guest/file/upload", .body = std::move(exactBody)};
    for (const auto& [name, value] : headers) request.headers.push_back(std::string(name).append(": ").append(value));
    return request;
  }
};

}  // namespace orivex::testing
