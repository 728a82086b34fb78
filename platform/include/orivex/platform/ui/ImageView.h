#pragma once

#include <string>

#include "orivex/platform/ui/View.h"

namespace orivex {

/// Where an image stands in a frame of another shape.
enum class ContentMode { scaleToFill, bottom };

/// A picture of the component's bundle.
class ImageView : public View {
 public:
  using View::View;

  /// Name of the picture without its type; the backend finds the file in the component's bundle. A missing picture
  /// leaves the view empty.
  const std::string& imageName() const { return imageName_; }
  void setImageName(std::string name) {
    imageName_ = std::move(name);
    changed(ViewChange::content);
  }

  ContentMode contentMode() const { return contentMode_; }
  void setContentMode(ContentMode mode) {
    contentMode_ = mode;
    changed(ViewChange::content);
  }

 private:
  std::string imageName_;
  ContentMode contentMode_ = ContentMode::scaleToFill;
};

}  // namespace orivex
