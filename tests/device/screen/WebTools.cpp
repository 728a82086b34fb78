#include "WebTools.h"

#include <gtest/gtest.h>

#include "GtkFixture.h"
#include "glib/GMemory.h"
#include "glib/GRef.h"

namespace orivex::gtk {

GtkWidget* descendant(GtkWidget* parent, GType type) {
  for (GtkWidget* child = gtk_widget_get_first_child(parent); child; child = gtk_widget_get_next_sibling(child)) {
    if (G_TYPE_CHECK_INSTANCE_TYPE(child, type)) return child;
    if (GtkWidget* const found = descendant(child, type)) return found;
  }
  return nullptr;
}

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

AdwMessageDialog* openDialog() {
  const GListPtr windows(gtk_window_list_toplevels());
  for (const GList* window = windows.get(); window; window = window->next) {
    if (ADW_IS_MESSAGE_DIALOG(window->data) && gtk_widget_get_mapped(GTK_WIDGET(window->data))) {
      return ADW_MESSAGE_DIALOG(window->data);
    }
  }
  return nullptr;
}

// The main loop runs meanwhile: the input goes to this very process.
void visitor(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "xdotool");
  std::vector<const char*> words;
  for (const auto& argument : arguments) words.push_back(argument.c_str());
  words.push_back(nullptr);
  const auto tool =
      GRef<GSubprocess>::adopt(g_subprocess_newv(words.data(), G_SUBPROCESS_FLAGS_STDOUT_SILENCE, nullptr));
  ASSERT_TRUE(tool);
  EXPECT_TRUE(wait([&] { return g_subprocess_get_identifier(tool.get()) == nullptr; }, 10));
  pass(0.05);
}

}  // namespace orivex::gtk
