#pragma once

#include <string>

#include "orivex/platform/ui/View.h"

namespace orivex {

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
  bool announced_ = false;
};

}  // namespace orivex
