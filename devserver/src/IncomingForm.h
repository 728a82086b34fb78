#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "FileStore.h"
#include "MultipartParser.h"

namespace orivex::devserver {

/// The form of one upload while it arrives. Its first part named "file" goes to the store; of the other parts only the
/// sizes and the beginnings are noted.
class IncomingForm {
 public:
  /// `files` must outlive the form.
  IncomingForm(const std::string& boundary, FileStore& files, std::int64_t maxBytes);
  IncomingForm(const IncomingForm&) = delete;
  IncomingForm& operator=(const IncomingForm&) = delete;

  void feed(std::string_view bytes);

  /// The answer, after the last byte: a status and its JSON. A status of 200 means that the file is kept; its address
  /// is `base` and a path.
  struct Outcome {
    unsigned status;
    nlohmann::json body;
  };
  [[nodiscard]] Outcome finish(const std::string& base);

  /// The parts seen so far: `name`, `fileName`, `contentType`, `size` and for a field without file name its `value`.
  [[nodiscard]] const nlohmann::json& parts() const { return parts_; }

 private:
  void beginPart(const PartHeaders& headers);
  void takeData(std::string_view bytes);

  FileStore& files_;
  const std::int64_t maxBytes_;
  MultipartParser parser_;
  nlohmann::json parts_ = nlohmann::json::array();
  std::unique_ptr<FileStore::Incoming> file_;
  std::string givenType_;
  std::int64_t partBytes_ = 0;
  bool inFile_ = false;
  bool malformed_ = false;
  bool tooLarge_ = false;
};

}  // namespace orivex::devserver
