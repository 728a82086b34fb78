// A window with a button that opens the chat, by the functions of C. Usage: chat SERVER [--open]
// rustc --edition=2021 -C link-args="$(pkg-config --libs orivex-glib)" chat.rs
use std::os::raw::{c_char, c_int, c_uint, c_ulong, c_void};
use std::{env, ffi::CStr, ffi::CString, ptr::null};
type Ptr = *const c_void;
type Text = *const c_char;

extern "C" {
    fn orivex_chat_new(host: Text, entry_id: Text, app_key: Text, visitor: Ptr) -> Ptr;
    fn orivex_chat_present(chat: Ptr, window: Ptr);
    fn g_signal_connect_data(on: Ptr, signal: Text, call: Ptr, data: Ptr, end: Ptr, flags: c_int) -> c_ulong;
    fn g_main_context_iteration(context: Ptr, may_block: c_int) -> c_int;
    fn g_list_model_get_n_items(list: Ptr) -> c_uint;
    fn gtk_init();
    fn gtk_window_new() -> Ptr;
    fn gtk_window_set_child(window: Ptr, child: Ptr);
    fn gtk_window_present(window: Ptr);
    fn gtk_window_get_toplevels() -> Ptr;
    fn gtk_button_new_with_label(label: Text) -> Ptr;
    fn gtk_widget_get_root(widget: Ptr) -> Ptr;
}

macro_rules! c { ($text:expr) => { concat!($text, "\0").as_ptr().cast() } }
extern "C" fn say(_: Ptr, words: Text) { println!("{}", unsafe { CStr::from_ptr(words) }.to_string_lossy()) }
extern "C" fn clicked(button: Ptr, chat: Ptr) { unsafe { orivex_chat_present(chat, gtk_widget_get_root(button)) } }

fn main() {
    let server = CString::new(env::args().nth(1).expect("the address of a server")).unwrap();
    unsafe {
        gtk_init();
        let (window, button) = (gtk_window_new(), gtk_button_new_with_label(c!("联系客服")));
        let chat = orivex_chat_new(server.as_ptr(), c!("entry"), c!("key"), null());
        g_signal_connect_data(chat, c!("revealed"), say as Ptr, c!("revealed"), null(), 0);
        g_signal_connect_data(button, c!("clicked"), clicked as Ptr, chat, null(), 0);
        gtk_window_set_child(window, button);
        gtk_window_present(window);
        if env::args().len() > 2 { orivex_chat_present(chat, window) }
        while g_list_model_get_n_items(gtk_window_get_toplevels()) > 0 { g_main_context_iteration(null(), 1); }
    }
}
