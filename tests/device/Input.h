#pragma once

#include <string>
#include <vector>

#include <gio/gio.h>
#include <gtest/gtest.h>

#include "GtkFixture.h"
#include "glib/GRef.h"

namespace orivex::gtk {

/// Real input through the display server. The main loop runs meanwhile: the input goes to this very process.
inline void xdotool(std::vector<std::string> arguments) {
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
