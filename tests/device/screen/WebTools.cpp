#include "WebTools.h"

#include <gtest/gtest.h>

#include "GtkFixture.h"
#include "glib/GMemory.h"
#include "glib/GRef.h"

namespace orivex::gtk {

std::string evaluateIn(WebKitWebView* view, const std::string& script) {
  struct Answer {
    bool done = false;
    std::string text;
  } answer;
  webkit_web_view_evaluate_javascript(
      view, script.c_str(), -1, nullptr, nullptr, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        auto& into = *static_cast<Answer*>(data);
        GError* raised = nullptr;
        const auto value =
            GRef<JSCValue>::adopt(webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(source), result, &raised));
        const GErrorPtr error(raised);
        into.text = value ? GCharPtr(jsc_value_to_string(value.get())).get() : error->message;
        into.done = true;
      },
      &answer);
  EXPECT_TRUE(wait([&] { return answer.done; }, 10)) << script;
  return answer.text;
}

}  // namespace orivex::gtk
