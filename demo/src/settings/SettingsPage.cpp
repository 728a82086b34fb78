#include "SettingsPage.h"

#include "../base/GObjects.h"
#include "../base/Texts.h"

namespace orivex::demo {
namespace {

constexpr double longestLength = 200;

}  // namespace

SettingsPage::SettingsPage(const Settings& settings, const std::string& version, Handlers handlers)
    : settings_(settings),
      handlers_(std::move(handlers)),
      page_(ADW_PREFERENCES_PAGE(adw_preferences_page_new())),
      push_(GTK_SWITCH(gtk_switch_new())) {
  addServerGroup();
  addDisplayGroup();
  addComponentGroup(version);
}

void SettingsPage::addServerGroup() {
  auto* const group = addGroup(text("会话", "Session"), text("服务器地址留空，则使用演示自带的服务器。",
                                                             "Without an address the demo’s own server answers."));
  addText(group, text("服务器地址", "Server address"), &Settings::server);
  addText(group, text("入口标识", "Entry identifier"), &Settings::entryId);
  addText(group, text("应用密钥", "Application key"), &Settings::key);
  addText(group, text("访客标识", "Visitor identifier"), &Settings::visitorId);
  addText(group, text("访客姓名", "Visitor name"), &Settings::visitorName);
}

void SettingsPage::addDisplayGroup() {
  auto* const group = addGroup(text("显示", "Display"),
                               text("刘海屏手机通常为 47、47、34。", "A phone with a notch has 47, 47 and 34."));
  auto* const row = adw_action_row_new();
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row), text("压入导航栈", "Push instead of present"));
  gtk_widget_set_valign(GTK_WIDGET(push_), GTK_ALIGN_CENTER);
  gtk_switch_set_active(push_, settings_.push);
  adw_action_row_add_suffix(ADW_ACTION_ROW(row), GTK_WIDGET(push_));
  adw_action_row_set_activatable_widget(ADW_ACTION_ROW(row), GTK_WIDGET(push_));
  adw_preferences_group_add(group, row);
  connectTo<&SettingsPage::pushChanged>(push_, "notify::active", this);
  addLength(group, text("状态栏高度", "Status bar"), &Settings::statusBarHeight);
  addLength(group, text("顶部安全距离", "Inset at the top"), &Settings::topInset);
  addLength(group, text("底部安全距离", "Inset at the bottom"), &Settings::bottomInset);
}

void SettingsPage::addComponentGroup(const std::string& version) {
  auto* const group = addGroup(text("组件", "Component"), nullptr);
  auto* const clear = adw_action_row_new();
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(clear), text("清理缓存", "Clear the cache"));
  gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(clear), TRUE);
  gtk_widget_set_name(clear, "clear-cache");
  adw_action_row_add_suffix(ADW_ACTION_ROW(clear), gtk_image_new_from_icon_name("user-trash-symbolic"));
  connectTo<&SettingsPage::clearPressed>(clear, "activated", this);
  adw_preferences_group_add(group, clear);

  auto* const about = adw_action_row_new();
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(about), text("SDK 版本", "SDK version"));
  auto* const number = gtk_label_new(version.c_str());
  gtk_widget_add_css_class(number, "dim-label");
  adw_action_row_add_suffix(ADW_ACTION_ROW(about), number);
  adw_preferences_group_add(group, about);
}

AdwPreferencesGroup* SettingsPage::addGroup(const char* title, const char* description) {
  auto* const group = ADW_PREFERENCES_GROUP(adw_preferences_group_new());
  adw_preferences_group_set_title(group, title);
  adw_preferences_group_set_description(group, description);
  adw_preferences_page_add(page_, group);
  return group;
}

void SettingsPage::addText(AdwPreferencesGroup* group, const char* title, std::string Settings::*field) {
  auto* const row = adw_entry_row_new();
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row), title);
  gtk_editable_set_text(GTK_EDITABLE(row), (settings_.*field).c_str());
  texts_.push_back({field, GTK_EDITABLE(row)});
  connectTo<&SettingsPage::edited>(row, "changed", this);
  adw_preferences_group_add(group, row);
}

void SettingsPage::addLength(AdwPreferencesGroup* group, const char* title, double Settings::*field) {
  auto* const row = adw_action_row_new();
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row), title);
  auto* const button = gtk_spin_button_new_with_range(0, longestLength, 1);
  gtk_spin_button_set_value(GTK_SPIN_BUTTON(button), settings_.*field);
  gtk_widget_set_valign(button, GTK_ALIGN_CENTER);
  lengths_.push_back({field, GTK_SPIN_BUTTON(button)});
  connectTo<&SettingsPage::lengthChanged>(button, "value-changed", this);
  adw_action_row_add_suffix(ADW_ACTION_ROW(row), button);
  adw_preferences_group_add(group, row);
}

void SettingsPage::edited(GtkEditable* row) {
  for (const auto& [field, shown] : texts_)
    if (shown == row) settings_.*field = gtk_editable_get_text(row);
  handlers_.changed(settings_);
}

void SettingsPage::lengthChanged(GtkSpinButton* button) {
  for (const auto& [field, shown] : lengths_)
    if (shown == button) settings_.*field = gtk_spin_button_get_value(button);
  handlers_.changed(settings_);
}

void SettingsPage::pushChanged(GObject* /*button*/, GParamSpec* /*property*/) {
  settings_.push = gtk_switch_get_active(push_) != FALSE;
  handlers_.changed(settings_);
}

void SettingsPage::clearPressed(AdwActionRow* /*row*/) {
  handlers_.clearCache();
}

}  // namespace orivex::demo
