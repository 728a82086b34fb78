// A window with a button that opens the chat. Usage: chat SERVER
public static int main(string[] args) {
    var application = new Gtk.Application("com.example.Shop", 0);
    application.activate.connect(() => {
        var window = new Gtk.ApplicationWindow(application) { default_width = 360, default_height = 720 };
        var visitor = new Orivex.Visitor() { display_name = "小明" };
        var chat = new Orivex.Chat(args[1], "entry", "key", visitor);
        chat.opened.connect(() => print("opened\n"));
        chat.revealed.connect(() => print("revealed\n"));
        chat.failed.connect((reason) => print("failed: %s\n", reason.message));
        chat.track_event.connect((name, attributes) => print("%s %s\n", name, attributes.print(false)));
        var button = new Gtk.Button.with_label("联系客服") { valign = CENTER, halign = CENTER };
        button.clicked.connect(() => chat.present(window));
        window.child = button;
        window.present();
        if ("--open" in args) chat.present(window);
        window.set_data("chat", chat);
    });
    return application.run(null);
}
