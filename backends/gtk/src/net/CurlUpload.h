#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "CurlTransfer.h"
#include "FormFile.h"
#include "UploadReporter.h"

namespace orivex::gtk {

/// A POST of a form. Its file is read while it is sent, and no more of it is in memory than libcurl's buffer holds.
class CurlUpload final : public CurlTransfer {
 public:
  CurlUpload(UploadRequest request, UploadReporter reporter);

  CURLcode prepare() override;
  void finish(CURLcode code) override;

 private:
  static std::size_t read(char* buffer, std::size_t one, std::size_t length, void* upload) noexcept;
  static int seek(void* upload, curl_off_t offset, int origin) noexcept;

  void setRules();
  bool addFile(FilePart file);
  void addFields();
  std::int64_t position() override;
  bool follows(const Redirect& redirect) override;

  UploadRequest request_;
  UploadReporter reporter_;
  std::unique_ptr<FormFile> file_;  // null for bytes
  std::int64_t read_ = 0;           // of the file
  bool isFilled_ = false;
  bool maySendAgain_ = false;
  CurlForm form_;
};

}  // namespace orivex::gtk
