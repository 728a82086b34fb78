/* A window with a button that opens the chat. Usage: chat SERVER [--open] */
#include <orivex-glib.h>

static void say(OrivexChat* chat, gpointer words) {
  (void)chat;
  g_print("%s\n", (const char*)words);
}

static void failed(OrivexChat* chat, GError* reason) {
  (void)chat;
  g_print("failed: %s\n", reason->message);
}

static void clicked(GtkButton* button, OrivexChat* chat) {
  orivex_chat_present(chat, GTK_WINDOW(gtk_widget_get_root(GTK_WIDGET(button))));
}

static void activate(GtkApplication* application, char** arguments) {
  GtkWidget* const window = gtk_application_window_new(application);
  OrivexChat* const chat = orivex_chat_new(arguments[1], "entry", "key", NULL);
  g_signal_connect(chat, "opened", G_CALLBACK(say), (gpointer) "opened");
  g_signal_connect(chat, "revealed", G_CALLBACK(say), (gpointer) "revealed");
  g_signal_connect(chat, "failed", G_CALLBACK(failed), NULL);
  GtkWidget* const button = gtk_button_new_with_label("联系客服");
  g_signal_connect_object(button, "clicked", G_CALLBACK(clicked), chat, 0);
  gtk_window_set_child(GTK_WINDOW(window), button);
  g_object_set_data_full(G_OBJECT(window), "chat", chat, g_object_unref);
  gtk_window_present(GTK_WINDOW(window));
  if (arguments[2]) orivex_chat_present(chat, GTK_WINDOW(window));
}

int main(int argc, char** argv) {
  GtkApplication* const application = gtk_application_new("com.example.Shop", 0);
  g_signal_connect(application, "activate", G_CALLBACK(activate), argv);
  (void)argc;
  const int status = g_application_run(G_APPLICATION(application), 0, NULL);
  g_object_unref(application);
  return status;
}
