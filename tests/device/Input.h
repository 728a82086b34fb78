#pragma once

#include <string>
#include <utility>
#include <vector>

#include <gio/gio.h>
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "GtkFixture.h"
#include "glib/GRef.h"

namespace orivex::gtk {

/// Whether the tests run on the device with a touch screen.
inline bool hasTouch() {
  return g_getenv("ORIVEX_HANDS") != nullptr;
}

/// Real input through the display server: a verb of script/hands and its arguments. The main loop runs meanwhile: the
/// input goes to this very process.
inline void hands(std::vector<std::string> words) {
  words.insert(words.begin(), ORIVEX_HANDS_PROGRAM);
  std::vector<const char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const auto& word : words) arguments.push_back(word.c_str());
  arguments.push_back(nullptr);
  const auto program =
      GRef<GSubprocess>::adopt(g_subprocess_newv(arguments.data(), G_SUBPROCESS_FLAGS_STDOUT_SILENCE, nullptr));
  ASSERT_TRUE(program);
  ASSERT_TRUE(wait([&] { return g_subprocess_get_identifier(program.get()) == nullptr; }, 30));
  EXPECT_TRUE(g_subprocess_get_successful(program.get())) << words[1];
  pass(0.05);
}

template <class... Numbers>
void hands(const char* verb, Numbers... numbers) {
  hands(std::vector<std::string>{verb, std::to_string(numbers)...});
}

/// Waits until the window, which shows by that title, has the keyboard.
inline void focusWindow(GtkWindow* window, const char* title) {
  hands({"focus", title});
  EXPECT_TRUE(wait([&] { return gtk_window_is_active(window) != FALSE; }, 10));
}

}  // namespace orivex::gtk
