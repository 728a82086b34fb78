// Fails the test in which a library of this process complains: a warning of GTK's is a fault of ours or a host's. The
// component's own go to a test's LogLines where it has them, which is how a test says that it brings failures about.
#include <cstdio>
#include <cstring>
#include <string>

#include <glib-object.h>
#include <gtest/gtest.h>
#include <gtk/gtk.h>

namespace {

// GTK 4.8's own file chooser paints the buttons of its path now and then a frame before it has given them their place.
bool isOfThePathBar(const char* text) {
  void* address = nullptr;
  if (std::sscanf(text, "Trying to snapshot GtkButton %p without a current allocation", &address) != 1) return false;
  for (auto* widget = static_cast<GObject*>(address); widget;) {
    if (std::strcmp(G_OBJECT_TYPE_NAME(widget), "GtkPathBar") == 0) return true;
    GObject* parent = nullptr;
    g_object_get(widget, "parent", &parent, nullptr);
    if (parent) g_object_unref(parent);  // its own parent keeps it
    widget = parent;
  }
  return false;
}

// Nothing of ours takes a widget out of a box: GTK's chooser does, now and then, when it closes.
bool isOfTheClosingChooser(const char* text) {
  return std::strstr(text, "gtk_box_remove: assertion 'GTK_IS_BOX (box)' failed") != nullptr;
}

// The device that stands for a sandbox has portals, and not the service that a sandbox would be run by.
bool isOfTheSandbox(const char* text) {
  return std::strstr(text, "The name org.freedesktop.portal.Flatpak was not provided") != nullptr;
}

// Newer GTK ends its grab for the first five buttons of a mouse only, and miscounts after the one that leads back,
// which these tests press.
bool isOfTheBackButton([[maybe_unused]] const char* text) {
#if GTK_CHECK_VERSION(4, 10, 0)
  const auto* const test = ::testing::UnitTest::GetInstance()->current_test_info();
  const auto name = test ? std::string(test->test_suite_name()) + '.' + test->name() : "";
  return std::strstr(text, "Broken accounting of active state") != nullptr &&
         (name == "KeyboardTest.KeysAndTheMousesBackButtonLeaveTheChat" ||
          name == "PageLimit.ThePageStaysWhatAndWhereItIs");
#else
  return false;
#endif
}

bool isNoFaultOfOurs(const GLogField* fields, gsize count) {
  for (gsize index = 0; index < count; ++index) {
    if (std::strcmp(fields[index].key, "MESSAGE") != 0) continue;
    const auto* const text = static_cast<const char*>(fields[index].value);
    return isOfThePathBar(text) || isOfTheClosingChooser(text) || isOfTheSandbox(text) || isOfTheBackButton(text);
  }
  return false;
}

GLogWriterOutput write(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer /*data*/) noexcept {
  if ((level & (G_LOG_LEVEL_WARNING | G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_ERROR)) && !isNoFaultOfOurs(fields, count)) {
    char* const text = g_log_writer_format_fields(level, fields, count, FALSE);
    ADD_FAILURE() << text;
    g_free(text);
  }
  return g_log_writer_default(level, fields, count, nullptr);
}

[[maybe_unused]] const bool isListening = [] {
  g_log_set_writer_func(write, nullptr, nullptr);
  g_set_prgname("orivex-test");  // libraries expect a program to have a name
  return true;
}();

}  // namespace
