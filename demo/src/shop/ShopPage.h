#pragma once

#include <cstdint>
#include <functional>

#include <gtk/gtk.h>

#include "Order.h"

namespace orivex::demo {

/// The shop: what it offers, the customer's latest order, and the button that contacts support.
class ShopPage {
 public:
  /// `contact` is called at each press of the button.
  explicit ShopPage(std::function<void()> contact);
  ShopPage(const ShopPage&) = delete;
  ShopPage& operator=(const ShopPage&) = delete;

  GtkWidget* widget() const { return page_; }

  /// The order that the customer looks at.
  const Order& order() const { return order_; }

  /// Whether the customer wants to bring the order into the chat.
  bool bringsOrder() const;

  /// Shows on the button how many answers wait in the chat; nothing for 0.
  void showUnread(std::int64_t count);

 private:
  GtkWidget* goods() const;
  GtkWidget* orderList();
  GtkWidget* footer();
  void pressed(GtkButton* button);

  std::function<void()> contact_;
  const Order order_ = latestOrder();
  GtkSwitch* bring_;
  GtkWidget* button_;
  GtkWidget* badge_;
  GtkWidget* page_;
};

}  // namespace orivex::demo
