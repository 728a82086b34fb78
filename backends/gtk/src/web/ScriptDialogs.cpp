#include "ScriptDialogs.h"

#include <string_view>
#include <utility>

#include "../FreeWith.h"
#include "../glib/GMemory.h"
#include "../ui/Widgets.h"

#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/base/Url.h"

namespace orivex::gtk {
namespace {

// Dialogs that follow each other within these seconds are in a row; from this one of the row on the visitor can end it.
constexpr double rowSeconds = 5;
constexpr int silenceOfferedAt = 3;

// Characters of a page's text that are shown, and the height in points up to which they are shown without scrolling.
constexpr glong shownCharacters = 2000;
constexpr int messageHeight = 280;
constexpr int messageColumns = 34;

constexpr const char* accept = "accept";
constexpr const char* decline = "decline";

std::string shortened(const char* text) {
  const GCharPtr valid(g_utf8_make_valid(text ? text : "", -1));
  if (g_utf8_strlen(valid.get(), -1) <= shownCharacters) return valid.get();
  const GCharPtr start(g_utf8_substring(valid.get(), 0, shownCharacters));
  return std::string(start.get()) + "…";
}

// The page is named by its origin, without the scheme.
std::string headingFor(WebKitWebView* view) {
  const char* const address = webkit_web_view_get_uri(view);
  const auto url = Url::parse(address ? address : "");
  const auto origin = url ? url->origin() : "";
  const auto host = origin.find("://") == std::string::npos ? "" : origin.substr(origin.find("://") + 3);
  return host.empty() ? tr("此页面的消息") : tr("%1 的消息", {host});  // a local page has no host
}

GtkWidget* messageNew(const std::string& text) {
  GtkWidget* const label = gtk_label_new(text.c_str());
  gtk_label_set_wrap(GTK_LABEL(label), TRUE);
  gtk_label_set_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
  gtk_label_set_justify(GTK_LABEL(label), GTK_JUSTIFY_CENTER);
  // The width to which the dialog fits its height.
  gtk_label_set_width_chars(GTK_LABEL(label), messageColumns);
  gtk_label_set_max_width_chars(GTK_LABEL(label), messageColumns);
  GtkWidget* const scroller = gtk_scrolled_window_new();
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
  gtk_scrolled_window_set_propagate_natural_height(GTK_SCROLLED_WINDOW(scroller), TRUE);
  gtk_scrolled_window_set_max_content_height(GTK_SCROLLED_WINDOW(scroller), messageHeight);
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), label);
  return scroller;
}

}  // namespace

/// What the page waits for. It is answered at the latest when this object goes.
class ScriptDialogs::Question {
 public:
  explicit Question(WebKitScriptDialog* dialog) : dialog_(webkit_script_dialog_ref(dialog)) {}
  Question(const Question&) = delete;
  Question& operator=(const Question&) = delete;
  ~Question() {
    if (dialog_) answer(false);
  }

  WebKitScriptDialogType type() const { return webkit_script_dialog_get_dialog_type(dialog_.get()); }
  std::string message() const { return shortened(webkit_script_dialog_get_message(dialog_.get())); }
  GtkEditable* entry() const { return entry_ ? GTK_EDITABLE(entry_.get()) : nullptr; }

  /// The field for a prompt's answer; none for other questions.
  GtkWidget* makeEntry() {
    if (type() != WEBKIT_SCRIPT_DIALOG_PROMPT) return nullptr;
    entry_ = GRef<GtkWidget>::sink(gtk_entry_new());
    setAccessibleLabel(entry_.get(), message());
    const char* const text = webkit_script_dialog_prompt_get_default_text(dialog_.get());
    gtk_editable_set_text(GTK_EDITABLE(entry_.get()), text ? text : "");
    gtk_entry_set_activates_default(GTK_ENTRY(entry_.get()), TRUE);
    return entry_.get();
  }

  void answer(bool accepted) {
    const auto dialog = std::exchange(dialog_, nullptr);
    switch (webkit_script_dialog_get_dialog_type(dialog.get())) {
      case WEBKIT_SCRIPT_DIALOG_ALERT:
        break;
      case WEBKIT_SCRIPT_DIALOG_CONFIRM:
      case WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM:
        webkit_script_dialog_confirm_set_confirmed(dialog.get(), accepted);
        break;
      case WEBKIT_SCRIPT_DIALOG_PROMPT:
        if (accepted) webkit_script_dialog_prompt_set_text(dialog.get(), gtk_editable_get_text(entry()));
        break;
    }
    webkit_script_dialog_close(dialog.get());
  }

 private:
  std::unique_ptr<WebKitScriptDialog, FreeWith<webkit_script_dialog_unref>> dialog_;
  GRef<GtkWidget> entry_;
};

ScriptDialogs::ScriptDialogs(WebKitWebView* view, MainQueue& mainQueue, std::function<bool()> isCovered)
    : view_(view),
      mainQueue_(mainQueue),
      isCovered_(std::move(isCovered)),
      asked_(SignalConnection::connect(view, "script-dialog", [this](WebKitScriptDialog* dialog) {
        asked(dialog);
        return true;
      })) {}

ScriptDialogs::~ScriptDialogs() {
  dismiss();
}

bool ScriptDialogs::isInARow() const {
  return lastClosed_ && mainQueue_.now() - *lastClosed_ <= rowSeconds;
}

void ScriptDialogs::asked(WebKitScriptDialog* dialog) {
  if (question_) answerLater(std::move(question_), false);  // of a page that this one has replaced
  dismiss();
  auto question = std::make_unique<Question>(dialog);
  auto* const root = gtk_widget_get_root(GTK_WIDGET(view_));
  if (silenced_) {
    const bool leaving = question->type() == WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM;
    answerLater(std::move(question), leaving);
  } else if (GTK_IS_WINDOW(root) && !isCovered_()) {
    show(std::move(question), GTK_WINDOW(root));
  } else {
    log::print("A page that does not show has asked something; it is declined");
    answerLater(std::move(question), false);
  }
}

// WebKit does not survive an answer inside its own signal.
void ScriptDialogs::answerLater(std::unique_ptr<Question> question, bool accepted) {
  mainQueue_.async([question = std::move(question), accepted] { question->answer(accepted); });
}

void ScriptDialogs::show(std::unique_ptr<Question> question, GtkWindow* window) {
  countInARow_ = isInARow() ? countInARow_ + 1 : 1;
  question_ = std::move(question);
  const auto type = question_->type();
  const bool leaving = type == WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM;
  // The page's words for leaving are not shown anywhere else either: they are a way to frighten.
  const auto heading = leaving ? tr("要离开此页面吗？") : headingFor(view_);
  const auto body = leaving ? tr("尚未保存的内容可能会丢失。") : question_->message();
  const bool isAlert = type == WEBKIT_SCRIPT_DIALOG_ALERT;
  dialog_ = std::make_unique<AlertDialog>(window, heading, nullptr);
  dialog_->setContent(makeContent(body), body);
  if (!isAlert) dialog_->addAnswer(decline, leaving ? tr("留下") : tr("取消"));
  dialog_->addAnswer(accept, leaving ? tr("离开") : tr("确定"),
                     leaving ? ADW_RESPONSE_DESTRUCTIVE : ADW_RESPONSE_SUGGESTED);
  dialog_->setDefaults(leaving ? decline : accept, isAlert ? accept : decline);
  dialog_->present(true, [this](const char* response) { answered(response); });
  if (GtkEditable* const entry = question_->entry()) gtk_widget_grab_focus(GTK_WIDGET(entry));
}

GtkWidget* ScriptDialogs::makeContent(const std::string& body) {
  GtkWidget* const content = gtk_box_new(GTK_ORIENTATION_VERTICAL, 12);
  gtk_box_append(GTK_BOX(content), messageNew(body));
  if (GtkWidget* const entry = question_->makeEntry()) gtk_box_append(GTK_BOX(content), entry);
  if (countInARow_ >= silenceOfferedAt) {
    silence_ = GRef<GtkCheckButton>::sink(GTK_CHECK_BUTTON(checkButtonNew(tr("不再显示此页面的对话框"))));
    gtk_box_append(GTK_BOX(content), GTK_WIDGET(silence_.get()));
  }
  return content;
}

void ScriptDialogs::answered(const char* response) {
  if (!response) {  // it goes with its window, and WebKit may be at work there
    answerLater(std::move(question_), false);
    return dismiss();
  }
  const bool accepted = std::string_view(response) == accept;
  const auto question = std::move(question_);
  silenced_ = silence_ && gtk_check_button_get_active(silence_.get());
  if (silenced_) log::print("The visitor has silenced the page's dialogs");
  question->answer(accepted);
  dismiss();
}

void ScriptDialogs::dismiss() {
  question_.reset();
  silence_ = nullptr;
  if (std::exchange(dialog_, nullptr)) lastClosed_ = mainQueue_.now();
}

}  // namespace orivex::gtk
