#include "video/FrameMemory.h"

#include <atomic>
#include <memory>

#include <sys/mman.h>

#include "glib/GMemory.h"
#include "glib/GRef.h"

namespace orivex::gtk {
namespace {

// Below it, as sound and compressed pictures are, the C library's own memory serves well.
constexpr gsize smallestFrame = 64 * gsize{1024};

// All frames at once, of all pipelines: a file that was harmless at first may ask for any size later. A phone shares
// its memory; a video of four thousand pixels across needs half of this.
constexpr gsize mostBytes = gsize{512} << 20U;
std::atomic<gsize> heldBytes = 0;

/// Pages of the system, while there is room for more. `mmap` gives whole ones: aligned for every element.
class Pages {
 public:
  explicit Pages(gsize size)
      : data_(heldBytes.fetch_add(size) + size > mostBytes
                  ? MAP_FAILED
                  : mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)),
        size_(size) {}
  Pages(const Pages&) = delete;
  Pages& operator=(const Pages&) = delete;
  ~Pages() {
    heldBytes -= size_;
    if (*this) munmap(data_, size_);
  }

  explicit operator bool() const { return data_ != MAP_FAILED; }
  gpointer data() const { return data_; }

 private:
  gpointer data_;
  gsize size_;
};

GstMemory* allocate(GstAllocator* /*allocator*/, gsize size, GstAllocationParams* params) noexcept {
  if (size < smallestFrame) return gst_allocator_alloc(nullptr, size, params);
  const gsize whole = params->prefix + size + params->padding;
  auto pages = std::make_unique<Pages>(whole);
  if (!*pages) return nullptr;
  auto* const data = pages->data();
  return gst_memory_new_wrapped(params->flags, data, whole, params->prefix, size, pages.release(),
                                [](gpointer owned) { delete static_cast<Pages*>(owned); });
}

GType allocatorType() {
  static const GType type = [] {
    const auto prepareClass = [](gpointer objectClass, gpointer) {
      GST_ALLOCATOR_CLASS(objectClass)->alloc = allocate;
    };
    return g_type_register_static_simple(GST_TYPE_ALLOCATOR, "OrivexFrameAllocator", sizeof(GstAllocatorClass),
                                         prepareClass, sizeof(GstAllocator), nullptr, G_TYPE_FLAG_FINAL);
  }();
  return type;
}

GstAllocator* frameAllocator() {
  static const auto allocator =
      GRef<GstAllocator>::sink(static_cast<GstAllocator*>(g_object_new(allocatorType(), nullptr)));
  return allocator.get();
}

// Before a query is answered, since not every element answers, and after, since some name the C library's memory.
GstPadProbeReturn nameAllocator(GstPad* /*pad*/, GstPadProbeInfo* info, gpointer /*data*/) noexcept {
  auto* const query = gst_pad_probe_info_get_query(info);
  if (GST_QUERY_TYPE(query) != GST_QUERY_ALLOCATION) return GST_PAD_PROBE_OK;
  if (gst_query_get_n_allocation_params(query) == 0) {
    gst_query_add_allocation_param(query, frameAllocator(), nullptr);
    return GST_PAD_PROBE_OK;
  }
  GstAllocator* named = nullptr;
  GstAllocationParams params;
  gst_query_parse_nth_allocation_param(query, 0, &named, &params);
  const auto owned = GRef<GstAllocator>::adopt(named);
  if (!named || g_strcmp0(named->mem_type, GST_ALLOCATOR_SYSMEM) == 0) {
    gst_query_set_nth_allocation_param(query, 0, frameAllocator(), &params);
  }
  return GST_PAD_PROBE_OK;
}

void watchPad(GstElement* /*element*/, GstPad* pad, gpointer /*data*/) noexcept {
  if (GST_PAD_IS_SRC(pad)) gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM, nameAllocator, nullptr, nullptr);
}

void watchElement(GstElement* element) {
  g_signal_connect(element, "pad-added", G_CALLBACK(watchPad), nullptr);
  gst_element_foreach_src_pad(
      element,
      [](GstElement* owner, GstPad* pad, gpointer) -> gboolean {
        watchPad(owner, pad, nullptr);
        return TRUE;
      },
      nullptr);
}

}  // namespace

void keepFramesInPages(GstElement& pipeline) {
  g_signal_connect(&pipeline, "deep-element-added",
                   G_CALLBACK(+[](GstBin*, GstBin*, GstElement* element, gpointer) { watchElement(element); }),
                   nullptr);
  const std::unique_ptr<GstIterator, FreeWith<gst_iterator_free>> elements(gst_bin_iterate_recurse(GST_BIN(&pipeline)));
  gst_iterator_foreach(
      elements.get(), [](const GValue* element, gpointer) { watchElement(GST_ELEMENT(g_value_get_object(element))); },
      nullptr);
}

}  // namespace orivex::gtk
