#include "Placeholder.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ports/Application.h"
#include "orivex/platform/ports/Bundle.h"
#include "orivex/platform/ui/ContentViews.h"

namespace orivex {
namespace {

constexpr double buttonSide = 44;

// Colours and lengths as skeleton.html has them, which draws over these shapes.
constexpr const char* block = "#e8eaee";
constexpr const char* faint = "#f3f4f6";
constexpr const char* line = "#f0f1f3";
constexpr double topHeight = 60;
constexpr double footHeight = 64;
constexpr double margin = 16;
constexpr double widest = 760;

// As seen in the mirror, where the visitor reads from right to left.
Rect mirrored(Rect frame, double width) {
  if (Platform::current().application.isRightToLeft()) frame.x = width - frame.x - frame.width;
  return frame;
}

// The bars, the time and the first question and answer.
std::vector<Shape> shapesFor(const Size& size) {
  std::vector<Shape> shapes;
  const auto add = [&](const Rect& frame, const char* color, double radius = 0) {
    shapes.push_back({mirrored(frame, size.width), OVKFApiHelper::color(color), radius});
  };
  const double width = std::min(widest, size.width - 2 * margin);
  const double left = (size.width - width) / 2;
  const double right = left + width;
  const double gap = std::clamp(0.026 * size.height, 14.0, 22.0);
  add({left + 22, 12, 36, 36}, block, 18);
  const double name = width - 106;  // beside the face and the menu
  add({left + 70, 16, std::min(108.0, name), 12}, block, 6);
  add({left + 70, 36, std::min(64.0, name), 8}, faint, 4);
  add({right - 24, 18, 24, 24}, block, 8);
  add({0, topHeight, size.width, 1}, line);
  double y = topHeight + 1 + gap;
  add({(size.width - 76) / 2, y, 76, 10}, faint, 5);
  y += 10 + gap;
  add({left, y, 36, 36}, block, 18);
  const double room = width - 46;  // beside a face
  const double lines = room - 32;
  add({left + 46, y, std::min(242.0, room), 60}, faint, 18);
  add({left + 62, y + 15, std::min(210.0, lines), 10}, block, 5);
  add({left + 62, y + 35, std::min(168.0, lines), 10}, block, 5);
  y += 60 + gap;
  add({right - 36, y, 36, 36}, block, 18);
  const double answer = std::min(164.0, room);
  add({right - 46 - answer, y, answer, 40}, block, 18);
  add({right - 30 - answer, y + 15, answer - 32, 10}, "#d9dce2", 5);
  y = size.height - footHeight;
  add({0, y - 1, size.width, 1}, line);
  add({left, y + 16, 32, 32}, block, 16);
  add({left + 44, y + 12, width - 132, 40}, faint, 20);
  add({right - 76, y + 16, 32, 32}, block, 16);
  add({right - 32, y + 16, 32, 32}, block, 16);
  return shapes;
}

}  // namespace

std::shared_ptr<WebView> makePlaceholder(const Rect& frame, std::function<void()> goBack) {
  WebEngineConfiguration configuration;
  configuration.javaScriptCanOpenWindowsAutomatically = false;
  // Nothing of it can be seen: a screen reader says it.
  configuration.userScripts.push_back(
      "addEventListener('DOMContentLoaded', () => document.querySelector('[role=status]')?.append(`" +
      std::string(tr("正在加载…")) + "`));");
  if (Platform::current().application.isRightToLeft()) {
    configuration.userScripts.emplace_back("document.documentElement.dir = 'rtl';");
  }
  auto placeholder = std::make_shared<WebView>(frame, configuration);
  placeholder->setBackgroundColor(OVKFApiHelper::color("#FFFFFF"));
  // The page draws over the shapes, where they are: its process takes longer to start than the screen to slide in.
  placeholder->setScrollSettings({.scrollEnabled = false, .backgroundColor = Color{0, 0, 0, 0}});
  const Rect corner{0, (topHeight - buttonSide) / 2, buttonSide, buttonSide};
  // From right to left, text shows this character as its mirror image.
  const auto button = std::make_shared<Button>(corner, "‹", tr("返回"), std::move(goBack));
  placeholder->addSubview(button);
  const auto path = Platform::current().componentBundle.pathForResource("skeleton", "html");
  placeholder->setLayoutHandler(
      [button, corner, view = placeholder.get()] { button->setFrame(mirrored(corner, view->frame().width)); });
  placeholder->layOut();
  if (path) {
    placeholder->setBackgroundShapes(shapesFor);
    placeholder->loadFile(*path, *path);
  }
  return placeholder;
}

}  // namespace orivex
