#!/usr/bin/env python3
"""A window with a button that opens the chat. Usage: chat.py SERVER"""
import sys

import gi

gi.require_version("Gtk", "4.0")
gi.require_version("Orivex", "0")
from gi.repository import Gtk, Orivex


def activate(app, server):
    window = Gtk.ApplicationWindow(application=app, default_width=360, default_height=720)
    chat = Orivex.Chat.new(server, "entry", "key", Orivex.Visitor(display_name="小明"))
    chat.connect("opened", lambda _: print("opened", flush=True))
    chat.connect("revealed", lambda _: print("revealed", flush=True))
    chat.connect("failed", lambda _, reason: print("failed:", reason.message, flush=True))
    chat.connect("track-event", lambda _, name, attributes: print(name, attributes.unpack(), flush=True))
    button = Gtk.Button(label="联系客服", valign=Gtk.Align.CENTER, halign=Gtk.Align.CENTER)
    button.connect("clicked", lambda _: chat.present(window))
    window.set_child(button)
    window.present()
    if "--open" in sys.argv:
        chat.present(window)


application = Gtk.Application(application_id="com.example.Shop")
application.connect("activate", activate, sys.argv[1])
application.run()
