#!/usr/bin/env python3
"""A shop with the chat beside it, which a button shows and hides. Usage: pane.py SERVER"""
import sys

import gi

gi.require_version("Gtk", "4.0")
gi.require_version("Orivex", "0")
from gi.repository import GObject, Gtk, Orivex


def activate(app, server):
    chat = Orivex.Chat.new(server, "entry", "key", None)
    chat.connect("revealed", lambda _: print("revealed", flush=True))
    view = Orivex.ChatView(chat=chat, visible="--open" in sys.argv)
    chat.connect("closed", lambda _: view.set_visible(False))
    button = Gtk.ToggleButton(label="联系客服", valign=Gtk.Align.CENTER, halign=Gtk.Align.CENTER)
    view.bind_property("visible", button, "active", GObject.BindingFlags.BIDIRECTIONAL | GObject.BindingFlags.SYNC_CREATE)
    paned = Gtk.Paned(start_child=button, end_child=view, shrink_end_child=False, position=360)
    Gtk.ApplicationWindow(application=app, default_width=720, default_height=640, child=paned).present()


application = Gtk.Application(application_id="com.example.Shop")
application.connect("activate", activate, sys.argv[1])
application.run()
