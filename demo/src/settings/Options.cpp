#include "Options.h"

#include <limits>

#include "../base/GObjects.h"
#include "../base/Texts.h"

namespace orivex::demo {
namespace {

using ContextPtr = std::unique_ptr<GOptionContext, FreeWith<g_option_context_free>>;

/// Where GLib leaves what it read; a length that was not given is not a number.
struct Raw {
  char* server = nullptr;
  char* entryId = nullptr;
  char* key = nullptr;
  gboolean push = FALSE;
  gboolean present = FALSE;
  double statusBarHeight = std::numeric_limits<double>::quiet_NaN();
  double topInset = std::numeric_limits<double>::quiet_NaN();
  double bottomInset = std::numeric_limits<double>::quiet_NaN();
  gboolean frameless = FALSE;
  gboolean reportPositions = FALSE;
};

std::optional<std::string> textOption(char* value) {
  const CharPtr owned(value);
  return owned ? std::optional<std::string>(owned.get()) : std::nullopt;
}

std::optional<double> lengthOption(const char* name, double value) {
  if (value != value) return std::nullopt;
  if (value < 0 || value > 200) throw UsageError(std::string(name) + " takes 0 to 200 points");
  return value;
}

void read(Raw& raw, int& argumentCount, char**& arguments) {
  const GOptionEntry entries[] = {
      {"server", 0, 0, G_OPTION_ARG_STRING, &raw.server,
       text("聊天服务器地址；不给则自行启动一个", "Address of a chat server; without it the demo starts one"), "URL"},
      {"entry", 0, 0, G_OPTION_ARG_STRING, &raw.entryId, text("入口标识", "Entry identifier"), "ID"},
      {"key", 0, 0, G_OPTION_ARG_STRING, &raw.key, text("应用密钥", "Application key"), "KEY"},
      {"push", 0, 0, G_OPTION_ARG_NONE, &raw.push, text("压入导航栈", "Push the chat"), nullptr},
      {"present", 0, 0, G_OPTION_ARG_NONE, &raw.present, text("弹出显示", "Present the chat"), nullptr},
      {"status-bar", 0, 0, G_OPTION_ARG_DOUBLE, &raw.statusBarHeight,
       text("状态栏高度", "Height of a status bar, in points"), "N"},
      {"inset-top", 0, 0, G_OPTION_ARG_DOUBLE, &raw.topInset,
       text("顶部安全距离", "Safe distance at the top, in points"), "N"},
      {"inset-bottom", 0, 0, G_OPTION_ARG_DOUBLE, &raw.bottomInset,
       text("底部安全距离", "Safe distance at the bottom, in points"), "N"},
      {"frameless", 0, 0, G_OPTION_ARG_NONE, &raw.frameless,
       text("无边框窗口", "Neither frame nor buttons of a window, as on a phone"), nullptr},
      {"report-positions", 0, 0, G_OPTION_ARG_NONE, &raw.reportPositions,
       text("输出各控件的位置", "Print where the controls are, for a scripted visit"), nullptr},
      {nullptr, 0, 0, G_OPTION_ARG_NONE, nullptr, nullptr, nullptr}};
  const ContextPtr context(g_option_context_new(nullptr));
  g_option_context_set_summary(context.get(), text("一家可以联系客服的小店", "A small shop that can contact support"));
  g_option_context_add_main_entries(context.get(), entries, nullptr);
  GError* raised = nullptr;
  g_option_context_parse(context.get(), &argumentCount, &arguments, &raised);
  if (const ErrorPtr error(raised); error) throw UsageError(error->message);
  if (argumentCount > 1) throw UsageError(std::string("unknown argument ") + arguments[1]);
}

}  // namespace

Options parseOptions(int argumentCount, char** arguments) {
  Raw raw;
  read(raw, argumentCount, arguments);
  Options options;
  options.server = textOption(raw.server);
  options.entryId = textOption(raw.entryId);
  options.key = textOption(raw.key);
  if (raw.push && raw.present) throw UsageError("--push and --present exclude each other");
  if (raw.push || raw.present) options.push = raw.push != FALSE;
  options.statusBarHeight = lengthOption("--status-bar", raw.statusBarHeight);
  options.topInset = lengthOption("--inset-top", raw.topInset);
  options.bottomInset = lengthOption("--inset-bottom", raw.bottomInset);
  options.frameless = raw.frameless != FALSE;
  options.reportPositions = raw.reportPositions != FALSE;
  return options;
}

void Options::applyTo(Settings& settings) const {
  settings.server = server.value_or(settings.server);
  settings.entryId = entryId.value_or(settings.entryId);
  settings.key = key.value_or(settings.key);
  settings.push = push.value_or(settings.push);
  settings.statusBarHeight = statusBarHeight.value_or(settings.statusBarHeight);
  settings.topInset = topInset.value_or(settings.topInset);
  settings.bottomInset = bottomInset.value_or(settings.bottomInset);
}

}  // namespace orivex::demo
