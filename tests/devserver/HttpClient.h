#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace orivex::testing {

/// How a connection ended.
enum class End { Closed, Reset, TimedOut };

struct Request {
  std::string method = "GET";
  std::string path = "/";
  /// As curl takes them, beside Host and Content-Length: "name: value", or "name;" without a value.
  std::vector<std::string> headers{};
  std::string body{};
};

struct Reply {
  /// 0 when no reply came.
  int status = 0;
  /// By lower-case name.
  std::map<std::string, std::string> headers{};
  std::string body{};
  End end = End::Closed;
};

/// Sends a request to the chat server on this machine, as it is, and follows nothing.
[[nodiscard]] Reply fetch(std::uint16_t port, const Request& request,
                          std::chrono::milliseconds patience = std::chrono::seconds(10));

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
    for (const auto& [name, value] : headers) {
      request.headers.push_back(value.empty() ? name + ";" : std::string(name).append(": ").append(value));
    }
    return request;
  }
};

}  // namespace orivex::testing
