#include "GtkRecordPermission.h"

#include <utility>

#include <gio/gdesktopappinfo.h>
#include <unistd.h>

#include "../glib/GMemory.h"

#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ui/View.h"

namespace orivex::gtk {
namespace {

constexpr char key[] = "microphone";
constexpr int ownerOnlyFolder = 0700;
constexpr int ownerOnlyFile = 0600;

constexpr char allowId[] = "allow";
constexpr char refuseId[] = "refuse";
constexpr char settingsId[] = "settings";
constexpr char closeId[] = "close";

// The desktop's settings nearest to the microphone's own switch first: GNOME, KDE Plasma, and what any desktop may
// have.
constexpr const char* settingsPrograms[] = {"gnome-microphone-panel.desktop", "gnome-sound-panel.desktop",
                                            "kcm_pulseaudio.desktop", "org.pulseaudio.pavucontrol.desktop",
                                            "pavucontrol.desktop"};

// The name of a group holds neither brackets nor control characters.
std::string groupOf(const std::string& applicationId) {
  const GCharPtr escaped(g_uri_escape_string(applicationId.c_str(), nullptr, TRUE));
  return escaped.get();
}

GKeyFilePtr load(const std::string& path) {
  GKeyFilePtr file(g_key_file_new());
  const bool whole = g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
  return whole ? std::move(file) : GKeyFilePtr(g_key_file_new());
}

GRef<GAppInfo> soundSettings() {
  for (const auto* id : settingsPrograms) {
    if (auto* const program = g_desktop_app_info_new(id)) return GRef<GAppInfo>::adopt(G_APP_INFO(program));
  }
  return nullptr;
}

void openSoundSettings() {
  const auto program = soundSettings();
  if (!program) return;
  const auto context = GRef<GdkAppLaunchContext>::adopt(gdk_display_get_app_launch_context(gdk_display_get_default()));
  GError* raised = nullptr;
  g_app_info_launch(program.get(), nullptr, G_APP_LAUNCH_CONTEXT(context.get()), &raised);
  const GErrorPtr error(raised);
  if (error) log::warning("Cannot open the sound settings: " + std::string(error->message));
}

}  // namespace

ConsentFile::ConsentFile(std::string path, const std::string& applicationId)
    : path_(std::move(path)), group_(groupOf(applicationId)) {}

std::string ConsentFile::defaultPath() {
  const GCharPtr path(g_build_filename(g_get_user_state_dir(), "orivex-sdk", "permissions.ini", nullptr));
  return path.get();
}

std::optional<bool> ConsentFile::answer() const {
  GError* raised = nullptr;
  const bool allowed = g_key_file_get_boolean(load(path_).get(), group_.c_str(), key, &raised);
  return GErrorPtr(raised) ? std::nullopt : std::optional(allowed);
}

void ConsentFile::remember(bool allowed) const {
  const auto file = load(path_);
  g_key_file_set_boolean(file.get(), group_.c_str(), key, allowed);
  const GCharPtr text(g_key_file_to_data(file.get(), nullptr, nullptr));
  const GCharPtr folder(g_path_get_dirname(path_.c_str()));
  g_mkdir_with_parents(folder.get(), ownerOnlyFolder);
  // A new file, written without waiting for the disk: an answer that a power failure takes is asked for again.
  ::unlink(path_.c_str());
  GError* raised = nullptr;
  g_file_set_contents_full(path_.c_str(), text.get(), -1, G_FILE_SET_CONTENTS_NONE, ownerOnlyFile, &raised);
  const GErrorPtr error(raised);
  if (error) log::warning("Cannot remember the answer: " + std::string(error->message));
}

void GtkRecordPermission::request(const std::string& applicationName, View& view, Once<void(bool granted)> answer) {
  const auto known = consent_.answer();
  if (known) {
    queue_.async([answer = std::move(answer), granted = *known]() mutable { std::move(answer)(granted); });
  } else {
    waiting_.push_back(std::move(answer));
  }
  if (known != true && !dialog_) showDialog(applicationName, view, known == false);
}

void GtkRecordPermission::showDialog(const std::string& applicationName, View& view, bool wasRefused) {
  const auto* const window = application_.find(view);
  if (!window) return answerAll(false);
  dialog_ = std::make_unique<AlertDialog>(
      window->gtkWindow(),
      tr(wasRefused ? trLater("“%1”不能使用麦克风") : trLater("“%1”想使用麦克风"), {applicationName}),
      wasRefused ? tr("您之前没有允许。允许后，就可以发送语音消息和有声音的视频。")
                 : tr("用来录制您的语音消息和视频的声音。"));
  if (wasRefused) {
    dialog_->addAnswer(closeId, tr("关闭"));
    if (soundSettings()) dialog_->addAnswer(settingsId, tr("声音设置"));
  } else {
    dialog_->addAnswer(refuseId, tr("不允许"));
  }
  dialog_->addAnswer(allowId, tr("允许"), ADW_RESPONSE_SUGGESTED);
  dialog_->setDefaults(nullptr, closeId);
  dialog_->takeFreshKeysOnly(window->heldKeys());
  // Not modal: the visitor still holds the button down, and the page must see it released.
  dialog_->present(false, [this](const char* id) { dialogAnswered(id ? id : closeId); });
  leaves_ = view.observeLeaving([this] {
    dialog_.reset();
    waiting_.clear();
  });
}

// A dialog that was closed, or has gone with its window, is a refusal that is not remembered.
void GtkRecordPermission::dialogAnswered(std::string_view id) {
  const auto ended = std::move(dialog_);
  if (id == settingsId) openSoundSettings();
  if (id == allowId || id == refuseId) consent_.remember(id == allowId);
  answerAll(id == allowId);
}

void GtkRecordPermission::answerAll(bool granted) {
  queue_.async([answers = std::exchange(waiting_, {}), granted]() mutable {
    for (auto& answer : answers) std::move(answer)(granted);
  });
}

}  // namespace orivex::gtk
