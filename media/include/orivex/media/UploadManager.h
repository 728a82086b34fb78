#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "orivex/models/UploadModels.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/base/Url.h"
#include "orivex/platform/ports/HttpClient.h"

namespace orivex {

class Window;

/// Why a file was not stored, for the visitor to read.
struct UploadFailure {
  std::string message;
  std::string cause = {};  ///< what has ended the connection, in words, if it has not lasted
  bool operator==(const UploadFailure&) const = default;
};
using UploadResult = std::variant<UploadResposeModel, UploadFailure>;

/// Sends files to the chat server, each upload on its own, and shows the visitor how far it is. Keeps no state. Main
/// thread unless said otherwise.
class UploadManager {
 public:
  /// Posts one file as a form.
  ///
  /// @param address where to; absent: the chat server of the session.
  /// @param file a local file, streamed from disk; it wins over `bytes`. Without either, the form has no file.
  /// @param bytes a file in memory.
  /// @param fileName the name that the form gives the file.
  /// @param mimeType the content type that the form gives the file.
  /// @param extraFields plain fields of the form, after the file.
  /// @param completion called exactly once, on the main thread and not inside this call; also when the visitor gives
  /// the upload up.
  void uploadFile(const std::optional<std::string>& address, const std::optional<Url>& file,
                  std::optional<std::string> bytes, const std::string& fileName, const std::string& mimeType,
                  const std::optional<std::map<std::string, std::string>>& extraFields,
                  Once<void(UploadResult)> completion) const;

  /// Where uploads go and in whose name, as the session is now.
  struct Target {
    std::string address;
    std::vector<HttpHeader> headers;
  };
  static Target currentTarget();

  /// Name of the form field of the file.
  static constexpr const char* fileField = "file";

  /// Posts a form to `target`, in the same way; `detail` tells the visitor what is on its way.
  static void upload(const Target& target, std::optional<FilePart> file, std::vector<FormField> fields,
                     std::string detail, Once<void(UploadResult)> completion);

  /// Takes the progress of what is being uploaded off `window`; the uploads go on unseen.
  static void hideProgress(const Window& window);

  /// The usual MIME type of files with this extension; "application/octet-stream" when there is none. Any thread.
  static std::string mimeType(std::string_view forExtension);

  /// The headers of every upload, in their order.
  static std::vector<HttpHeader> makeUploadHeaders();
};

}  // namespace orivex
