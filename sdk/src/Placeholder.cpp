#include "Placeholder.h"

#include <algorithm>
#include <string>
#include <utility>

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ports/Animator.h"
#include "orivex/platform/ports/Bundle.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ui/ContentViews.h"

namespace orivex {
namespace {

constexpr double buttonSide = 44;
constexpr double paintInterval = 0.1;  // seconds between two questions whether the page has been painted
constexpr double fadeSeconds = 0.2;

// Colours and lengths as skeleton.html has them: the page appears where its shapes are.
constexpr const char* block = "#e8eaee";
constexpr const char* faint = "#f3f4f6";
constexpr const char* line = "#f0f1f3";
constexpr double topHeight = 60;
constexpr double footHeight = 64;
constexpr double margin = 16;
constexpr double widest = 760;

void addShape(View& to, const Rect& frame, const char* color, double radius = 0) {
  const auto shape = std::make_shared<View>(frame);
  shape->setBackgroundColor(OVKFApiHelper::color(color));
  shape->setCornerRadius(radius);
  to.addSubview(shape);
}

// The bars, the time and the first question and answer.
void layOutShapes(View& shapes, Size size) {
  shapes.removeAllSubviews();
  shapes.setFrame({0, 0, size.width, size.height});
  const double width = std::min(widest, size.width - 2 * margin);
  const double left = (size.width - width) / 2;
  const double right = left + width;
  const double gap = std::clamp(0.026 * size.height, 14.0, 22.0);
  addShape(shapes, {left + 22, 12, 36, 36}, block, 18);
  addShape(shapes, {left + 70, 16, 108, 12}, block, 6);
  addShape(shapes, {left + 70, 36, 64, 8}, faint, 4);
  addShape(shapes, {right - 24, 18, 24, 24}, block, 8);
  addShape(shapes, {0, topHeight, size.width, 1}, line);
  double y = topHeight + 1 + gap;
  addShape(shapes, {(size.width - 76) / 2, y, 76, 10}, faint, 5);
  y += 10 + gap;
  addShape(shapes, {left, y, 36, 36}, block, 18);
  addShape(shapes, {left + 46, y, 242, 60}, faint, 18);
  addShape(shapes, {left + 62, y + 15, 210, 10}, block, 5);
  addShape(shapes, {left + 62, y + 35, 168, 10}, block, 5);
  y += 60 + gap;
  addShape(shapes, {right - 36, y, 36, 36}, block, 18);
  addShape(shapes, {right - 210, y, 164, 40}, block, 18);
  addShape(shapes, {right - 194, y + 15, 132, 10}, "#d9dce2", 5);
  y = size.height - footHeight;
  addShape(shapes, {0, y - 1, size.width, 1}, line);
  addShape(shapes, {left, y + 16, 32, 32}, block, 16);
  addShape(shapes, {left + 44, y + 12, width - 132, 40}, faint, 20);
  addShape(shapes, {right - 76, y + 16, 32, 32}, block, 16);
  addShape(shapes, {right - 32, y + 16, 32, 32}, block, 16);
}

// The end of a load comes before the first picture, on a busy machine by a second. A page draws on only when its
// earlier pictures have been taken: after some frames the first one shows.
constexpr const char* notePainted =
    "let frames = 0; requestAnimationFrame(function next() { window.painted = ++frames > 10; "
    "if (!window.painted) requestAnimationFrame(next); });";
constexpr const char* askPainted = "if (!window.painted) throw 'not yet';";

void fadeOutWhenPainted(const std::weak_ptr<WebView>& page, const std::shared_ptr<View>& shapes) {
  const auto shown = page.lock();
  if (!shown || !shapes->superview()) return;
  shown->evaluate(askPainted, [page, shapes](const std::optional<std::string>& notYet) {
    if (notYet) {
      return Platform::current().mainQueue.asyncAfter(paintInterval,
                                                      [page, shapes] { fadeOutWhenPainted(page, shapes); });
    }
    Platform::current().animator.animate(
        fadeSeconds, [shapes](double done) { shapes->setAlpha(1 - done); },
        [shapes] { shapes->removeFromSuperview(); });
  });
}

}  // namespace

std::shared_ptr<WebView> makePlaceholder(const Rect& frame, std::function<void()> goBack) {
  WebEngineConfiguration configuration;
  configuration.javaScriptCanOpenWindowsAutomatically = false;
  // Nothing of it can be seen: a screen reader says it.
  configuration.userScripts.push_back(
      "addEventListener('DOMContentLoaded', () => document.querySelector('[role=status]')?.append(`" +
      std::string(tr("正在加载…")) + "`));");
  configuration.userScripts.emplace_back(notePainted);
  // A page's process takes longer to start than the screen to slide in.
  const auto shapes = std::make_shared<View>();
  shapes->setUserInteractionEnabled(false);
  const auto page = std::make_shared<std::weak_ptr<WebView>>();
  WebEngineHandlers handlers;
  handlers.didFinishNavigation = [page, shapes] { fadeOutWhenPainted(*page, shapes); };
  auto placeholder = std::make_shared<WebView>(frame, configuration, std::move(handlers));
  *page = placeholder;
  const auto white = OVKFApiHelper::color("#FFFFFF");
  placeholder->setBackgroundColor(white);
  placeholder->setScrollSettings({.scrollEnabled = false, .backgroundColor = white});
  if (const auto path = Platform::current().componentBundle.pathForResource("skeleton", "html")) {
    placeholder->setLayoutHandler([shapes, view = placeholder.get()] { layOutShapes(*shapes, view->frame().size()); });
    placeholder->addSubview(shapes);
    placeholder->layOut();
    placeholder->loadFile(*path, *path);
  }
  const Rect corner{0, (topHeight - buttonSide) / 2, buttonSide, buttonSide};
  placeholder->addSubview(std::make_shared<Button>(corner, "‹", tr("返回"), std::move(goBack)));
  return placeholder;
}

}  // namespace orivex
