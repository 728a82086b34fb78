#include "MicrophoneDialog.h"

#include <string_view>
#include <utility>

#include "SoundSettings.h"

namespace orivex::gtk {
namespace {

constexpr char allowId[] = "allow";
constexpr char refuseId[] = "refuse";
constexpr char settingsId[] = "settings";
constexpr char closeId[] = "close";

MicrophoneDialog::Answer answerOf(const char* response) {
  const std::string_view id = response ? response : closeId;
  if (id == allowId) return MicrophoneDialog::Answer::allow;
  if (id == refuseId) return MicrophoneDialog::Answer::refuse;
  if (id == settingsId) return MicrophoneDialog::Answer::settings;
  return MicrophoneDialog::Answer::none;
}

}  // namespace

MicrophoneDialog::MicrophoneDialog(const HostWindow& parent, const std::string& applicationName, bool isRefused,
                                   Once<void(Answer)> answered)
    : dialog_(parent.gtkWindow(), "“" + applicationName + "”" + (isRefused ? "不能使用麦克风" : "想使用麦克风"),
              isRefused ? "您之前没有允许。允许后，就可以发送语音消息和有声音的视频。"
                        : "用来录制您的语音消息和视频的声音。") {
  if (isRefused) {
    dialog_.addAnswer(closeId, "关闭");
    if (SoundSettings::areAvailable()) dialog_.addAnswer(settingsId, "声音设置");
  } else {
    dialog_.addAnswer(refuseId, "不允许");
  }
  dialog_.addAnswer(allowId, "允许", ADW_RESPONSE_SUGGESTED);
  dialog_.setDefaults(nullptr, closeId);
  dialog_.takeFreshKeysOnly(parent.heldKeys());
  // Not modal: the visitor still holds the button down, and the page must see it released.
  dialog_.present(false, [answered = std::move(answered)](const char* response) mutable {
    std::move(answered)(answerOf(response));
  });
}

}  // namespace orivex::gtk
