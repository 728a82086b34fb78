#pragma once

#include <string>

#include <libsoup/soup.h>

#include "Tokens.h"

namespace orivex::devserver {

/// What an upload's headers amount to.
struct UploadHeaders {
  /// 0 when they are all right.
  unsigned status = 0;
  /// What is wrong, naming the header.
  std::string complaint;
  /// The multipart boundary, when they are all right.
  std::string boundary;
};

/// Checks the six headers that the component sends with every upload.
[[nodiscard]] UploadHeaders checkUploadHeaders(SoupMessageHeaders* headers, const Tokens& tokens);

}  // namespace orivex::devserver
