#pragma once

#include <string>

namespace orivex {

/// The chat server's answer to an upload that it stored. Every key is required.
struct UploadResposeModel {
  std::string url;
  std::string inputContentType;   ///< MIME type as sent
  std::string actualContentType;  ///< MIME type as the server found it

  bool operator==(const UploadResposeModel&) const = default;
};

}  // namespace orivex
