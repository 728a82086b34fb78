#include "ShopPage.h"

#include <adwaita.h>

#include "../base/GObjects.h"
#include "../base/Texts.h"

namespace orivex::demo {
namespace {

constexpr int pageWidth = 560;
constexpr int pictureHeight = 214;
constexpr int thumbnailSize = 48;

GtkWidget* labelNew(const std::string& content, const char* styleClass) {
  auto* const label = gtk_label_new(content.c_str());
  gtk_label_set_wrap(GTK_LABEL(label), TRUE);
  gtk_label_set_xalign(GTK_LABEL(label), 0);
  gtk_widget_add_css_class(label, styleClass);
  return label;
}

// Fills its place; what is too much is cut off, as are its corners.
GtkWidget* pictureNew(const std::string& resource) {
  auto* const picture = gtk_picture_new_for_resource(resource.c_str());
  gtk_picture_set_content_fit(GTK_PICTURE(picture), GTK_CONTENT_FIT_COVER);
  gtk_widget_set_overflow(picture, GTK_OVERFLOW_HIDDEN);
  gtk_widget_add_css_class(picture, "shop-picture");
  return picture;
}

GtkWidget* rowOf(const OrderLine& line, const std::string& currency) {
  auto* const row = adw_action_row_new();
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row), line.name.c_str());
  adw_action_row_set_subtitle(ADW_ACTION_ROW(row), line.description.c_str());
  auto* const picture = pictureNew(line.picture);
  gtk_widget_set_size_request(picture, thumbnailSize, thumbnailSize);
  gtk_widget_set_valign(picture, GTK_ALIGN_CENTER);
  adw_action_row_add_prefix(ADW_ACTION_ROW(row), picture);
  const auto price = currency + line.amount + (line.quantity > 1 ? " × " + std::to_string(line.quantity) : "");
  auto* const amount = labelNew(price, "numeric");
  gtk_label_set_natural_wrap_mode(GTK_LABEL(amount), GTK_NATURAL_WRAP_NONE);
  gtk_label_set_xalign(GTK_LABEL(amount), 1);
  gtk_label_set_justify(GTK_LABEL(amount), GTK_JUSTIFY_RIGHT);
  adw_action_row_add_suffix(ADW_ACTION_ROW(row), amount);
  return row;
}

}  // namespace

ShopPage::ShopPage(std::function<void()> contact)
    : contact_(std::move(contact)),
      bring_(GTK_SWITCH(gtk_switch_new())),
      button_(gtk_button_new()),
      badge_(labelNew("", "shop-badge")),
      page_(gtk_box_new(GTK_ORIENTATION_VERTICAL, 0)) {
  auto* const column = gtk_box_new(GTK_ORIENTATION_VERTICAL, 20);
  gtk_widget_add_css_class(column, "shop-column");
  gtk_box_append(GTK_BOX(column), goods());
  gtk_box_append(GTK_BOX(column), orderList());
  auto* const clamp = adw_clamp_new();
  adw_clamp_set_maximum_size(ADW_CLAMP(clamp), pageWidth);
  adw_clamp_set_child(ADW_CLAMP(clamp), column);
  auto* const scroller = gtk_scrolled_window_new();
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), clamp);
  gtk_widget_set_vexpand(scroller, TRUE);
  gtk_box_append(GTK_BOX(page_), scroller);
  gtk_box_append(GTK_BOX(page_), footer());
}

bool ShopPage::bringsOrder() const {
  return gtk_switch_get_active(bring_) != FALSE;
}

GtkWidget* ShopPage::goods() const {
  const auto& line = order_.lines.front();
  auto* const picture = pictureNew(line.picture);
  gtk_widget_set_size_request(picture, -1, pictureHeight);
  auto* const name = labelNew(line.name, "title-2");
  gtk_label_set_wrap_mode(GTK_LABEL(name), PANGO_WRAP_WORD_CHAR);
  gtk_widget_set_hexpand(name, TRUE);
  auto* const price = labelNew(order_.currency + line.amount, "shop-price");
  auto* const heading = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 12);
  gtk_box_append(GTK_BOX(heading), name);
  gtk_box_append(GTK_BOX(heading), price);
  auto* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 6);
  gtk_box_append(GTK_BOX(box), picture);
  gtk_box_append(GTK_BOX(box), heading);
  gtk_box_append(GTK_BOX(box), labelNew(text("四麦降噪，四十小时续航，轻如一朵云。",
                                             "Four microphones against noise, forty hours, light as a cloud."),
                                        "dim-label"));
  gtk_widget_set_margin_top(heading, 8);
  return box;
}

GtkWidget* ShopPage::orderList() {
  auto* const group = adw_preferences_group_new();
  adw_preferences_group_set_title(ADW_PREFERENCES_GROUP(group), text("最近的订单", "Your latest order"));
  adw_preferences_group_set_description(ADW_PREFERENCES_GROUP(group), (order_.number + " · " + order_.status).c_str());
  for (const auto& line : order_.lines) {
    adw_preferences_group_add(ADW_PREFERENCES_GROUP(group), rowOf(line, order_.currency));
  }
  auto* const bring = adw_action_row_new();
  adw_preferences_row_set_title(ADW_PREFERENCES_ROW(bring), text("咨询时带上订单", "Bring it into the chat"));
  gtk_widget_set_valign(GTK_WIDGET(bring_), GTK_ALIGN_CENTER);
  gtk_widget_set_name(GTK_WIDGET(bring_), "bring-order");
  adw_action_row_add_suffix(ADW_ACTION_ROW(bring), GTK_WIDGET(bring_));
  adw_action_row_set_activatable_widget(ADW_ACTION_ROW(bring), GTK_WIDGET(bring_));
  adw_preferences_group_add(ADW_PREFERENCES_GROUP(group), bring);
  return group;
}

GtkWidget* ShopPage::footer() {
  auto* const content = adw_button_content_new();
  adw_button_content_set_icon_name(ADW_BUTTON_CONTENT(content), "audio-headset-symbolic");
  adw_button_content_set_label(ADW_BUTTON_CONTENT(content), text("联系客服", "Contact us"));
  gtk_widget_set_name(badge_, "unread");
  gtk_widget_set_visible(badge_, FALSE);
  gtk_widget_set_valign(badge_, GTK_ALIGN_CENTER);
  gtk_label_set_xalign(GTK_LABEL(badge_), 0.5F);
  gtk_widget_add_css_class(badge_, "numeric");
  auto* const line = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 8);
  gtk_widget_set_halign(line, GTK_ALIGN_CENTER);
  gtk_box_append(GTK_BOX(line), content);
  gtk_box_append(GTK_BOX(line), badge_);
  gtk_button_set_child(GTK_BUTTON(button_), line);
  gtk_widget_set_name(button_, "contact");
  for (const char* styleClass : {"pill", "suggested-action", "shop-contact"})
    gtk_widget_add_css_class(button_, styleClass);
  gtk_widget_set_hexpand(button_, TRUE);
  connectTo<&ShopPage::pressed>(button_, "clicked", this);
  auto* const clamp = adw_clamp_new();
  adw_clamp_set_maximum_size(ADW_CLAMP(clamp), pageWidth);
  adw_clamp_set_child(ADW_CLAMP(clamp), button_);
  return clamp;
}

void ShopPage::showUnread(std::int64_t count) {
  gtk_widget_set_visible(badge_, count > 0);
  gtk_label_set_text(GTK_LABEL(badge_), count > 99 ? "99+" : std::to_string(count).c_str());
  auto spoken = std::string(text("联系客服", "Contact us"));
  if (count > 0) spoken += ", " + std::to_string(count) + text(" 条未读", " unread");
  gtk_accessible_update_property(GTK_ACCESSIBLE(button_), GTK_ACCESSIBLE_PROPERTY_LABEL, spoken.c_str(), -1);
}

void ShopPage::pressed(GtkButton* /*button*/) {
  contact_();
}

}  // namespace orivex::demo
