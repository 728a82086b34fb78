#include "MicrophoneDialog.h"

#include <string_view>
#include <utility>

#include "../ui/StyleSheet.h"
#include "SoundSettings.h"

namespace orivex::gtk {
namespace {

constexpr char allowId[] = "allow";
constexpr char refuseId[] = "refuse";
constexpr char settingsId[] = "settings";
constexpr char closeId[] = "close";

MicrophoneDialog::Answer answerOf(std::string_view response) {
  if (response == allowId) return MicrophoneDialog::Answer::allow;
  if (response == refuseId) return MicrophoneDialog::Answer::refuse;
  if (response == settingsId) return MicrophoneDialog::Answer::settings;
  return MicrophoneDialog::Answer::none;
}

void addResponses(AdwMessageDialog* dialog, bool isRefused) {
  if (isRefused) {
    adw_message_dialog_add_response(dialog, closeId, "关闭");
    if (SoundSettings::areAvailable()) adw_message_dialog_add_response(dialog, settingsId, "声音设置");
  } else {
    adw_message_dialog_add_response(dialog, refuseId, "不允许");
  }
  adw_message_dialog_add_response(dialog, allowId, "允许");
  adw_message_dialog_set_response_appearance(dialog, allowId, ADW_RESPONSE_SUGGESTED);
  adw_message_dialog_set_default_response(dialog, allowId);
  adw_message_dialog_set_close_response(dialog, closeId);
}

}  // namespace

MicrophoneDialog::MicrophoneDialog(GtkWindow* parent, const std::string& applicationName, bool isRefused,
                                   Once<void(Answer)> answered)
    : answered_(std::move(answered)) {
  const auto heading = "“" + applicationName + "”" + (isRefused ? "不能使用麦克风" : "想使用麦克风");
  const auto* const body =
      isRefused ? "您之前没有允许。允许后，就可以按住说话发送语音消息。" : "用来录制您按住说话时的语音消息。";
  dialog_ = GTK_WINDOW(adw_message_dialog_new(parent, heading.c_str(), body));
  makeLight(GTK_WIDGET(dialog_));
  auto* const dialog = ADW_MESSAGE_DIALOG(dialog_);
  addResponses(dialog, isRefused);
  response_ = SignalConnection::connect<&MicrophoneDialog::responded>(dialog_, "response", this);
  destroy_ = SignalConnection::connect<&MicrophoneDialog::destroyed>(dialog_, "destroy", this);
  // Not modal: the visitor still holds the button down, and the page must see it released.
  gtk_window_set_modal(dialog_, FALSE);
  gtk_window_present(dialog_);
}

MicrophoneDialog::~MicrophoneDialog() {
  response_.disconnect();
  destroy_.disconnect();
  if (dialog_) gtk_window_destroy(dialog_);
}

void MicrophoneDialog::responded(AdwMessageDialog* /*dialog*/, const char* response) {
  // The dialog closes by itself after a response.
  response_.disconnect();
  destroy_.disconnect();
  dialog_ = nullptr;
  std::move(answered_)(answerOf(response));
}

void MicrophoneDialog::destroyed(GtkWidget* /*dialog*/) {
  dialog_ = nullptr;
  std::move(answered_)(Answer::none);
}

}  // namespace orivex::gtk
