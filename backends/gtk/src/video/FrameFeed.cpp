#include "video/FrameFeed.h"

#include <utility>

#include "glib/GMemory.h"
#include "video/MappedFrame.h"

namespace orivex::gtk {
namespace {

GRef<GdkTexture> textureOf(SharedSample sample) {
  auto frame = std::make_unique<MappedFrame>(std::move(sample));
  if (!*frame) return nullptr;
  const int width = frame->width();
  const int height = frame->height();
  const auto stride = static_cast<gsize>(frame->stride());
  const auto* const pixels = frame->pixels();
  const GBytesPtr bytes(g_bytes_new_with_free_func(
      pixels, stride * static_cast<gsize>(height), [](gpointer data) { delete static_cast<MappedFrame*>(data); },
      frame.release()));
  // A frame has no transparent pixels, so that its colours are multiplied already: what every renderer takes as it is.
  return GRef<GdkTexture>::adopt(
      gdk_memory_texture_new(width, height, GDK_MEMORY_B8G8R8A8_PREMULTIPLIED, bytes.get(), stride));
}

}  // namespace

void FrameFeed::push(SharedSample frame) {
  const std::lock_guard lock(mutex_);
  newest_ = std::move(frame);
  if (std::exchange(posted_, true)) return;
  main_.async([self = shared_from_this()] { self->deliver(); });
}

void FrameFeed::deliver() {
  SharedSample frame;
  {
    const std::lock_guard lock(mutex_);
    posted_ = false;
    frame = std::move(newest_);
  }
  if (!show_ || !frame) return;
  if (auto texture = textureOf(std::move(frame))) show_(std::move(texture));
}

void FrameFeed::close() {
  show_ = nullptr;
}

}  // namespace orivex::gtk
