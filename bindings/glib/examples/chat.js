// A window with a button that opens the chat. Usage: gjs chat.js SERVER
imports.gi.versions.Gtk = '4.0';
const {Gtk, Orivex} = imports.gi;
const System = imports.system;

const application = new Gtk.Application({application_id: 'com.example.Shop'});
application.connect('activate', () => {
  const window = new Gtk.ApplicationWindow({application, default_width: 360, default_height: 720});
  const visitor = new Orivex.Visitor({display_name: '小明'});
  const chat = new Orivex.Chat({host: ARGV[0], entry_id: 'entry', app_key: 'key', visitor});
  chat.connect('opened', () => print('opened'));
  chat.connect('revealed', () => print('revealed'));
  chat.connect('failed', (_, reason) => print(`failed: ${reason.message}`));
  chat.connect('track-event', (_, name, attributes) => print(name, JSON.stringify(attributes.deepUnpack())));
  const button = new Gtk.Button({label: '联系客服', valign: Gtk.Align.CENTER, halign: Gtk.Align.CENTER});
  button.connect('clicked', () => chat.present(window));
  window.set_child(button);
  window.present();
  if (ARGV.includes('--open')) chat.present(window);
});
System.exit(application.run([]));
