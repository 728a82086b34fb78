#include "OfferedFiles.h"

#include <utility>

#include "../glib/AsyncCallback.h"
#include "../glib/GMemory.h"
#include "PageLimits.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

constexpr const char* handler = "offeredFiles";

GtkDropControllerMotion* addMotion(WebKitWebView* view) {
  GtkEventController* const motion = gtk_drop_controller_motion_new();
  gtk_widget_add_controller(GTK_WIDGET(view), motion);
  return GTK_DROP_CONTROLLER_MOTION(motion);
}

// Those that lie on a disk.
OfferedFiles::Paths pathsIn(const GValue* list) {
  OfferedFiles::Paths paths;
  for (auto* node = list ? static_cast<GSList*>(g_value_get_boxed(list)) : nullptr; node; node = node->next) {
    const GCharPtr path(g_file_get_path(G_FILE(node->data)));
    if (path) paths.emplace_back(path.get());
  }
  return paths;
}

void logFailure(GError* raised) {
  const GErrorPtr error(raised);
  if (error && !g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED)) {
    log::print(std::string("What was pasted cannot be read: ") + error->message, log::Level::info);
  }
}

}  // namespace

OfferedFiles::OfferedFiles(WebKitWebView* view, std::function<void(const Paths& paths)> offer)
    : view_(view),
      offer_(std::move(offer)),
      motion_(addMotion(view)),
      cancellable_(GRef<GCancellable>::adopt(g_cancellable_new())) {
  signals_.add(motion_, "notify::drop", [this] { readDrop(); });
  auto* const content = webkit_web_view_get_user_content_manager(view);
  signals_.add(content, (std::string("script-message-received::") + handler).c_str(),
               [this](JSCValue* wasDropped) { jsc_value_to_boolean(wasDropped) ? offerDropped() : readClipboard(); });
  webkit_user_content_manager_register_script_message_handler(content, handler, limitsWorld);
}

OfferedFiles::~OfferedFiles() {
  signals_.disconnect();
  g_cancellable_cancel(cancellable_.get());
  std::error_code ignored;
  for (const auto& folder : folders_) std::filesystem::remove_all(folder, ignored);
}

void OfferedFiles::readDrop() {
  GdkDrop* const drop = gtk_drop_controller_motion_get_drop(motion_);
  if (!drop) return;
  dragged_.reset();
  wasDropped_ = false;
  const auto read = asyncCallback(alive_.guard([this](GObject* source, GAsyncResult* result) {
    dragged_ = pathsIn(gdk_drop_read_value_finish(GDK_DROP(source), result, nullptr));  // words are dragged, too
    if (std::exchange(wasDropped_, false)) offer(*dragged_);
  }));
  gdk_drop_read_value_async(drop, GDK_TYPE_FILE_LIST, G_PRIORITY_DEFAULT, cancellable_.get(), read.function, read.data);
}

void OfferedFiles::offerDropped() {
  if (dragged_) return offer(*dragged_);
  wasDropped_ = true;
}

void OfferedFiles::readClipboard() {
  const auto read = asyncCallback(alive_.guard([this](GObject* source, GAsyncResult* result) {
    const auto paths = pathsIn(gdk_clipboard_read_value_finish(GDK_CLIPBOARD(source), result, nullptr));
    paths.empty() ? readPicture(GDK_CLIPBOARD(source)) : offer(paths);
  }));
  gdk_clipboard_read_value_async(gtk_widget_get_clipboard(GTK_WIDGET(view_)), GDK_TYPE_FILE_LIST, G_PRIORITY_DEFAULT,
                                 cancellable_.get(), read.function, read.data);
}

// As it is: the picture is neither decoded nor encoded here.
void OfferedFiles::readPicture(GdkClipboard* clipboard) {
  static const char* types[] = {"image/png", "image/jpeg", "image/webp", "image/gif", nullptr};
  const auto read = asyncCallback(alive_.guard([this](GObject* source, GAsyncResult* result) {
    GError* raised = nullptr;
    const char* type = nullptr;
    const auto picture =
        GRef<GInputStream>::adopt(gdk_clipboard_read_finish(GDK_CLIPBOARD(source), result, &type, &raised));
    picture ? savePicture(picture.get(), type) : logFailure(raised);
  }));
  gdk_clipboard_read_async(clipboard, types, G_PRIORITY_DEFAULT, cancellable_.get(), read.function, read.data);
}

void OfferedFiles::savePicture(GInputStream* picture, const std::string& type) {
  const GCharPtr folder(g_dir_make_tmp("orivex-XXXXXX", nullptr));
  if (!folder) return log::print("There is no folder for a pasted picture");
  const auto path = folders_.emplace_back(folder.get()) / ("image." + type.substr(type.find('/') + 1));
  const auto file = GRef<GFile>::adopt(g_file_new_for_path(path.c_str()));
  const auto stream =
      GRef<GFileOutputStream>::adopt(g_file_create(file.get(), G_FILE_CREATE_PRIVATE, cancellable_.get(), nullptr));
  if (!stream) return log::print("A pasted picture cannot be written");
  const auto saved = asyncCallback(alive_.guard([this, path](GObject* source, GAsyncResult* result) {
    GError* raised = nullptr;
    const auto size = g_output_stream_splice_finish(G_OUTPUT_STREAM(source), result, &raised);
    size > 0 ? offer({path}) : logFailure(raised);
  }));
  constexpr auto closes =
      static_cast<GOutputStreamSpliceFlags>(G_OUTPUT_STREAM_SPLICE_CLOSE_SOURCE | G_OUTPUT_STREAM_SPLICE_CLOSE_TARGET);
  g_output_stream_splice_async(G_OUTPUT_STREAM(stream.get()), picture, closes, G_PRIORITY_DEFAULT, cancellable_.get(),
                               saved.function, saved.data);
}

void OfferedFiles::offer(const Paths& paths) const {
  if (offer_ && !paths.empty()) offer_(paths);
}

}  // namespace orivex::gtk
