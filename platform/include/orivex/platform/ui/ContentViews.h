#pragma once

#include <functional>
#include <string>
#include <utility>

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

enum class TextAlignment { left, center, right };

/// One line of text in the system's font.
class Label : public View {
 public:
  using View::View;

  const std::string& text() const { return text_; }
  void setText(std::string text) { assign(text_, std::move(text)); }

  const Color& textColor() const { return color_; }
  void setTextColor(Color color) { assign(color_, color); }

  /// In points.
  double fontSize() const { return fontSize_; }
  void setFontSize(double size) { assign(fontSize_, size); }

  TextAlignment alignment() const { return alignment_; }
  void setAlignment(TextAlignment alignment) { assign(alignment_, alignment); }

  /// Whether the line stands at the upper edge of its frame, not in the middle.
  bool isAtTop() const { return atTop_; }
  void setAtTop(bool atTop) { assign(atTop_, atTop); }

  /// A dark rim around the letters, where what shines through behind them may be as bright as they are.
  bool hasShadow() const { return shadow_; }
  void setShadow(bool shadow) { assign(shadow_, shadow); }

  /// Whether a screen reader says the text as soon as it appears. Set it before the label is shown.
  bool isAnnounced() const { return announced_; }
  void setAnnounced(bool announced) { announced_ = announced; }

 private:
  template <class Value>
  void assign(Value& field, Value value) {
    field = std::move(value);
    changed(ViewChange::content);
  }

  std::string text_;
  Color color_;
  double fontSize_ = 17;
  TextAlignment alignment_ = TextAlignment::left;
  bool atTop_ = false;
  bool shadow_ = false;
  bool announced_ = false;
};

/// A sign that the visitor presses.
class Button : public View {
 public:
  /// `sign` is what shows, in light colours, `name` what a screen reader calls it.
  Button(Rect frame, std::string sign, std::string name, std::function<void()> pressed)
      : View(frame), sign_(std::move(sign)), name_(std::move(name)), pressed_(std::move(pressed)) {}

  const std::string& sign() const { return sign_; }
  const std::string& name() const { return name_; }

  /// The visitor has pressed it.
  void press() const { pressed_(); }

 private:
  const std::string sign_;
  const std::string name_;
  const std::function<void()> pressed_;
};

}  // namespace orivex
