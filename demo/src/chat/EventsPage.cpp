#include "EventsPage.h"

#include <adwaita.h>

#include "../base/GObjects.h"
#include "../base/Texts.h"

namespace orivex::demo {
namespace {

using DateTimePtr = std::unique_ptr<GDateTime, FreeWith<g_date_time_unref>>;

constexpr int pageWidth = 560;

std::string timeNow() {
  const DateTimePtr now(g_date_time_new_now_local());
  const CharPtr formatted(g_date_time_format(now.get(), "%H:%M:%S"));
  return formatted.get();
}

std::string describe(const std::map<std::string, std::string>& attributes) {
  std::string description;
  for (const auto& [key, value] : attributes) {
    if (!description.empty()) description += '\n';
    description.append(key).append(": ").append(value);
  }
  return description;
}

constexpr int mostEvents = 50;  // each row is some twenty widgets

GtkWidget* emptyPageNew() {
  auto* const page = adw_status_page_new();
  adw_status_page_set_icon_name(ADW_STATUS_PAGE(page), "view-list-symbolic");
  adw_status_page_set_title(ADW_STATUS_PAGE(page), text("还没有事件", "No events yet"));
  adw_status_page_set_description(
      ADW_STATUS_PAGE(page), text("会话中发生的事会列在这里。", "What happens in the conversation is listed here."));
  return page;
}

GtkWidget* rowOf(const ConversationEvent& event) {
  auto* const row = adw_action_row_new();
  // Names and attributes come from a page: they are text, never markup.
  adw_preferences_row_set_use_markup(ADW_PREFERENCES_ROW(row), FALSE);
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row), event.name.c_str());
  adw_action_row_set_subtitle(ADW_ACTION_ROW(row), describe(event.attributes).c_str());
  adw_action_row_set_subtitle_lines(ADW_ACTION_ROW(row), 6);
  auto* const time = gtk_label_new(timeNow().c_str());
  for (const char* styleClass : {"dim-label", "caption", "numeric"}) gtk_widget_add_css_class(time, styleClass);
  adw_action_row_add_suffix(ADW_ACTION_ROW(row), time);
  return row;
}

}  // namespace

EventsPage::EventsPage() : stack_(GTK_STACK(gtk_stack_new())), list_(GTK_LIST_BOX(gtk_list_box_new())) {
  gtk_list_box_set_selection_mode(list_, GTK_SELECTION_NONE);
  gtk_widget_add_css_class(GTK_WIDGET(list_), "boxed-list");
  gtk_widget_set_valign(GTK_WIDGET(list_), GTK_ALIGN_START);
  gtk_widget_set_name(GTK_WIDGET(list_), "event-list");
  auto* const clamp = adw_clamp_new();
  adw_clamp_set_maximum_size(ADW_CLAMP(clamp), pageWidth);
  adw_clamp_set_child(ADW_CLAMP(clamp), GTK_WIDGET(list_));
  gtk_widget_add_css_class(clamp, "shop-column");
  auto* const scroller = gtk_scrolled_window_new();
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), clamp);
  gtk_stack_add_named(stack_, emptyPageNew(), "empty");
  gtk_stack_add_named(stack_, scroller, "list");
}

void EventsPage::add(const ConversationEvent& event) {
  gtk_list_box_prepend(list_, rowOf(event));
  if (auto* const oldest = gtk_list_box_get_row_at_index(list_, mostEvents)) {
    gtk_list_box_remove(list_, GTK_WIDGET(oldest));
  }
  gtk_stack_set_visible_child_name(stack_, "list");
}

}  // namespace orivex::demo
