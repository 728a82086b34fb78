"""The GObject library as a host in another language meets it. Usage: binding_test.py SERVER"""
import gc
import pathlib
import re
import sys
import unittest
import weakref

import gi

gi.require_version("Gtk", "4.0")
gi.require_version("Orivex", "0")
from gi.repository import GLib, GObject, Gtk, Orivex

SERVER = sys.argv.pop()


def run_until(condition, seconds=30):
    late = []
    timer = GLib.timeout_add(int(seconds * 1000), lambda: late.append(True))
    while not condition() and not late:
        GLib.MainContext.default().iteration(True)
    if not late:
        GLib.source_remove(timer)
    return condition()


class ChatTest(unittest.TestCase):
    def setUp(self):
        self.story = []
        self.errors = []
        self.window = Gtk.Window(default_width=360, default_height=640, child=Gtk.Label(label="shop"))
        self.window.present()

    def tearDown(self):
        self.window.destroy()

    def chat(self, server=SERVER):
        chat = Orivex.Chat.new(server, "entry", "key", None)
        for signal in ("opened", "revealed", "closed"):
            chat.connect(signal, lambda _, name=signal: self.story.append(name))
        chat.connect("notify::is-open", lambda chat, _: self.story.append(chat.props.is_open))
        chat.connect("failed", lambda _, reason: self.errors.append(reason))
        return chat

    def test_opens_again_and_again_and_tells_so(self):
        chat = self.chat()
        for _ in range(2):
            chat.present(self.window)
            chat.present(self.window)  # shows already
            self.assertTrue(run_until(lambda: "revealed" in self.story))
            chat.close()
            self.assertTrue(run_until(lambda: "closed" in self.story))
            self.assertEqual(self.story, [True, "opened", "revealed", False, "closed"])
            self.story.clear()

    def test_lives_while_it_shows_and_no_longer(self):
        chat = self.chat()
        gone = weakref.ref(chat, lambda _: self.story.append("gone"))
        chat.present(self.window)
        self.assertTrue(run_until(lambda: "revealed" in self.story))
        del chat
        gc.collect()
        self.assertNotIn("closed", self.story)
        self.window.destroy()
        self.assertTrue(run_until(lambda: "closed" in self.story))
        self.assertIsNone(gone())

    def test_shows_in_a_view_and_leaves_that_to_the_host(self):
        chat = self.chat()
        view = Orivex.ChatView(chat=chat)
        paned = Gtk.Paned(start_child=Gtk.Label(label="shop"), end_child=view)
        self.window.set_child(paned)
        self.assertTrue(run_until(lambda: "revealed" in self.story))
        self.assertIs(view.props.chat, chat)
        chat.close()
        self.assertTrue(run_until(lambda: "closed" in self.story))
        self.assertEqual(self.story, [True, "opened", "revealed", False, "closed"])
        self.assertIs(view.get_parent(), paned)
        self.story.clear()
        view.props.chat = None
        view.props.chat = chat  # a new session
        self.assertTrue(run_until(lambda: "revealed" in self.story))
        other = Orivex.ChatView.new(chat)  # shows already, in the other view
        self.assertIsNone(other.get_first_child())
        gone = weakref.ref(view)
        paned.set_end_child(None)
        del view
        gc.collect()
        self.assertTrue(run_until(lambda: "closed" in self.story))
        self.assertEqual(self.story, [True, "opened", "revealed", False, "closed"])
        self.assertIsNone(gone())

    def test_is_pushed_on_a_stack_and_comes_off_again(self):
        shop = Gtk.Label(label="shop")
        stack = Gtk.Stack()
        stack.add_child(shop)
        self.window.set_child(stack)
        chat = self.chat()
        for _ in range(2):
            chat.push(stack)
            stack.set_visible_child(shop)
            chat.push(stack)
            self.assertTrue(run_until(lambda: "revealed" in self.story))
            self.assertEqual(stack.get_pages().get_n_items(), 2)
            self.assertIs(stack.get_visible_child().props.chat, chat)
            chat.close()
            self.assertTrue(run_until(lambda: stack.get_pages().get_n_items() == 1))
            self.assertIs(stack.get_visible_child(), shop)
            self.assertEqual(self.story, [True, "opened", "revealed", False, "closed"])
            self.story.clear()

    def test_says_why_no_page_came(self):
        for server, code in (
            ("http://127.0.0.1:9", Orivex.Error.UNREACHABLE),
            ("not an address", Orivex.Error.BAD_ADDRESS),
        ):
            self.errors.clear()
            self.chat(server).present(self.window)
            self.assertTrue(run_until(lambda: self.errors))
            self.assertTrue(self.errors[0].matches(Orivex.error_quark(), code), self.errors[0])
            self.assertTrue(run_until(lambda: "closed" in self.story))
            self.story.clear()

    def test_speaks_the_language_that_the_host_chooses(self):
        def labels(widget):
            if isinstance(widget, Gtk.Label):
                yield widget.get_text()
            child = widget.get_first_child()
            while child:
                yield from labels(child)
                child = child.get_next_sibling()

        self.addCleanup(Orivex.set_language, "zh")
        for tag, text in (("en-GB", "The request failed. Please try again later"), ("zh", "请求失败,请稍后重试")):
            Orivex.set_language(tag)
            self.chat("http://127.0.0.1:9").present(self.window)
            self.assertTrue(run_until(lambda: text in labels(self.window)), text)
            self.assertTrue(run_until(lambda: "closed" in self.story))
            self.story.clear()

    def test_takes_cards_before_and_while_it_shows(self):
        chat = self.chat()
        with self.assertRaises(GLib.Error) as caught:
            chat.queue_card(1, '{"title": 5}')
        self.assertTrue(caught.exception.matches(Orivex.error_quark(), Orivex.Error.BAD_CARD))
        self.assertIn("title", caught.exception.message)
        self.assertTrue(chat.queue_card(1, '{"title": "杯子"}'))
        chat.present(self.window)
        self.assertTrue(run_until(lambda: "revealed" in self.story))
        self.assertTrue(chat.queue_card(1, '{"title": "壶"}'))

    def test_the_readme_shows_a_chat(self):
        readme = (pathlib.Path(__file__).parents[2] / "README.md").read_text()
        (block,) = re.findall("```python\n(.*?)```", readme, re.DOTALL)
        names = {"window": self.window}
        exec(block.replace("https://chat.example", SERVER), names)
        names["chat"].connect("revealed", lambda _: self.story.append("revealed"))
        self.assertTrue(run_until(lambda: "revealed" in self.story))

    def test_signs_out_and_says_when(self):
        done = []
        self.chat().sign_out_async(None, lambda chat, result: done.append(chat.sign_out_finish(result)))
        self.assertEqual(done, [])
        self.assertTrue(run_until(lambda: done))
        self.assertEqual(done, [True])

    def test_properties_are_kept_and_told(self):
        told = []
        visitor = Orivex.Visitor(display_name="小明", email="")
        visitor.connect("notify", lambda _, spec: told.append(spec.name))
        self.assertEqual((visitor.props.display_name, visitor.props.email, visitor.props.phone), ("小明", "", None))
        visitor.props.phone = "10086"
        visitor.props.phone = "10086"
        visitor.props.display_name = None
        self.assertEqual(told, ["phone", "display-name"])
        chat = Orivex.Chat(host=SERVER, entry_id="e", app_key="k", visitor=visitor, conversation_events=True)
        self.assertEqual((chat.props.host, chat.props.entry_id, chat.props.app_key), (SERVER, "e", "k"))
        self.assertIs(chat.props.visitor, visitor)
        self.assertFalse(chat.props.is_open)
        self.assertFalse(chat.props.allowed_origins)
        chat.props.allowed_origins = ["https://pay.example", "https://shop.example"]
        self.assertEqual(chat.props.allowed_origins, ["https://pay.example", "https://shop.example"])


unittest.main(verbosity=2)
