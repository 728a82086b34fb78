// Fails the test in which a library of this process complains: a warning of GTK's is a fault of ours or a host's.
#include <string>

#include <glib.h>
#include <gtest/gtest.h>

namespace {

GLogWriterOutput write(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer /*data*/) noexcept {
  if (level & (G_LOG_LEVEL_WARNING | G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_ERROR)) {
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
