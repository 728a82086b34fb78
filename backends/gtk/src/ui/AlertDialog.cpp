#include "AlertDialog.h"

#include <utility>

#include "Announcement.h"
#include "Widgets.h"

namespace orivex::gtk {
namespace {

#if ADW_CHECK_VERSION(1, 5, 0)

AdwAlertDialog* cast(const GRef<GtkWidget>& dialog) {
  return ADW_ALERT_DIALOG(dialog.get());
}

GtkWidget* dialogNew(GtkWindow* /*parent*/, const char* heading, const char* body) {
  return GTK_WIDGET(adw_alert_dialog_new(heading, body));
}

// The dialog itself reaches over the whole window.
GtkWidget* surfaceOf(const GRef<GtkWidget>& dialog) {
  return adw_dialog_get_child(ADW_DIALOG(dialog.get()));
}

void show(const GRef<GtkWidget>& dialog, GtkWindow* parent, bool isModal) {
  adw_dialog_present(ADW_DIALOG(dialog.get()), GTK_WIDGET(parent));
  // Over a window without room for dialogs it is a window too.
  auto* const root = gtk_widget_get_root(dialog.get());
  if (!isModal && GTK_IS_WINDOW(root) && GTK_WINDOW(root) != parent) gtk_window_set_modal(GTK_WINDOW(root), FALSE);
}

void hide(const GRef<GtkWidget>& dialog) {
  adw_dialog_force_close(ADW_DIALOG(dialog.get()));
}

void takeFocus(const GRef<GtkWidget>& dialog) {
  adw_dialog_set_focus(ADW_DIALOG(dialog.get()), nullptr);
}

constexpr auto addResponse = adw_alert_dialog_add_response;
constexpr auto setAppearance = adw_alert_dialog_set_response_appearance;

#else

AdwMessageDialog* cast(const GRef<GtkWidget>& dialog) {
  return ADW_MESSAGE_DIALOG(dialog.get());
}

GtkWidget* dialogNew(GtkWindow* parent, const char* heading, const char* body) {
  return adw_message_dialog_new(parent, heading, body);
}

GtkWidget* surfaceOf(const GRef<GtkWidget>& dialog) {
  return dialog.get();
}

void show(const GRef<GtkWidget>& dialog, GtkWindow* /*parent*/, bool isModal) {
  gtk_window_set_modal(GTK_WINDOW(dialog.get()), isModal);
  gtk_window_present(GTK_WINDOW(dialog.get()));
}

void hide(const GRef<GtkWidget>& dialog) {
  gtk_window_destroy(GTK_WINDOW(dialog.get()));
}

void takeFocus(const GRef<GtkWidget>& dialog) {
  gtk_window_set_focus(GTK_WINDOW(dialog.get()), nullptr);
}

constexpr auto addResponse = adw_message_dialog_add_response;
constexpr auto setAppearance = adw_message_dialog_set_response_appearance;

#endif

}  // namespace

AlertDialog::AlertDialog(GtkWindow* parent, const std::string& heading, const char* body)
    : parent_(parent), spoken_(heading), dialog_(GRef<GtkWidget>::sink(dialogNew(parent, heading.c_str(), body))) {
  makeLight(surfaceOf(dialog_));
  if (body) describe(body);
}

AlertDialog::~AlertDialog() {
  close();
}

void AlertDialog::addAnswer(const char* id, const char* label, AdwResponseAppearance appearance) {
  addResponse(cast(dialog_), id, label);
  setAppearance(cast(dialog_), id, appearance);
}

void AlertDialog::setDefaults(const char* entered, const char* closed) {
  g_object_set(dialog_.get(), "default-response", entered, "close-response", closed, nullptr);
}

void AlertDialog::takeFreshKeysOnly(HeldKeys::Keys down) {
  keys_ = std::make_unique<HeldKeys>(surfaceOf(dialog_), std::move(down), HeldKeys::Repeats::stopAlways);
}

void AlertDialog::setContent(GtkWidget* content, const std::string& text) {
  g_object_set(dialog_.get(), "extra-child", content, nullptr);
  describe(text);
}

// Screen readers say by themselves only what a dialog is called.
void AlertDialog::describe(const std::string& text) {
  gtk_accessible_update_property(GTK_ACCESSIBLE(surfaceOf(dialog_)), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION, text.c_str(),
                                 -1);
  spoken_ += ", " + text;
}

void AlertDialog::present(bool isModal, Once<void(const char*)> answered) {
  answered_ = std::move(answered);
  connections_.add(dialog_.get(), "response", [this](const char* id) {
    connections_.disconnect();
    dialog_ = nullptr;  // it closes by itself
    std::move(answered_)(id);
  });
  connections_.add(parent_, "destroy", [this] {
    close();
    std::move(answered_)(nullptr);
  });
  show(dialog_, parent_, isModal);
  auto* const window = GTK_WINDOW(gtk_widget_get_root(dialog_.get()));
  if (window && window != parent_) ring_ = std::make_unique<FocusRing>(window, [] { return true; });
  if (!keys_) return;
  takeFocus(dialog_);
  announce(GTK_WIDGET(parent_), spoken_);  // screen readers follow the focus
}

void AlertDialog::close() {
  connections_.disconnect();
  if (const auto dialog = std::exchange(dialog_, nullptr)) hide(dialog);
}

}  // namespace orivex::gtk
