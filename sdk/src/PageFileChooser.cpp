#include "PageFileChooser.h"

#include <utility>

#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"

namespace orivex {

void PageFileChooser::choose(const FileChooserRequest& request, View& view, Completion completion) {
  Platform::current().documentPicker.present(
      {request.mimeTypes, request.multiple}, view,
      alive_.guard([this, multiple = request.multiple,
                    completion = std::move(completion)](const DocumentPickerOutcome& outcome) mutable {
        const auto* picked = std::get_if<PickedDocuments>(&outcome);
        std::move(completion)(picked ? accessible(picked->files, multiple) : std::vector<std::string>());
      }));
}

std::vector<std::string> PageFileChooser::accessible(const std::vector<Url>& files, bool multiple) {
  std::vector<std::string> paths;
  for (const auto& file : files) {
    if (!multiple && !paths.empty()) break;
    auto access = Platform::current().documentPicker.startAccess(file);
    if (const auto* failure = std::get_if<Failure>(&access)) {
      log::debugPrint("Access to the selected file was refused: " + failure->description);
    } else if (auto path = file.filePath()) {
      accesses_.push_back(std::get<std::unique_ptr<FileAccess>>(std::move(access)));
      paths.push_back(*std::move(path));
    }
  }
  return paths;
}

}  // namespace orivex
