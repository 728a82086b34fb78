#pragma once

#include <gtk/gtk.h>

#include "EventRecorder.h"

namespace orivex::demo {

/// The events that came from the conversation, the latest on top.
class EventsPage {
 public:
  EventsPage();
  EventsPage(const EventsPage&) = delete;
  EventsPage& operator=(const EventsPage&) = delete;

  GtkWidget* widget() const { return GTK_WIDGET(stack_); }
  void add(const ConversationEvent& event);

 private:
  GtkStack* stack_;
  GtkListBox* list_;
};

}  // namespace orivex::demo
