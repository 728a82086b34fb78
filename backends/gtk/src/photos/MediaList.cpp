#include "MediaList.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace orivex::gtk {
namespace {

/// Stands for one item in the model.
struct MediaObject {
  GObject parent;
  MediaItemPtr* item;
};
struct MediaObjectClass {
  GObjectClass parent;
};

/// The model itself: everything it knows is its owner's.
struct MediaModel {
  GObject parent;
  const MediaList* list;
};
struct MediaModelClass {
  GObjectClass parent;
};

void finalizeObject(GObject* object) {
  const std::unique_ptr<MediaItemPtr> item(reinterpret_cast<MediaObject*>(object)->item);
  static_cast<GObjectClass*>(g_type_class_peek(G_TYPE_OBJECT))->finalize(object);
}

GType objectType() {
  static const GType type = g_type_register_static_simple(
      G_TYPE_OBJECT, "OrivexMediaObject", sizeof(MediaObjectClass),
      [](gpointer classPointer, gpointer /*data*/) {
        static_cast<GObjectClass*>(classPointer)->finalize = finalizeObject;
      },
      sizeof(MediaObject), nullptr, static_cast<GTypeFlags>(0));
  return type;
}

guint countOf(GListModel* model) {
  const auto* const list = reinterpret_cast<MediaModel*>(model)->list;
  return list ? static_cast<guint>(list->count()) : 0;
}

gpointer objectAt(GListModel* model, guint position) {
  if (position >= countOf(model)) return nullptr;
  auto* const object = static_cast<MediaObject*>(g_object_new(objectType(), nullptr));
  const auto& items = *reinterpret_cast<MediaModel*>(model)->list->items();
  object->item = std::make_unique<MediaItemPtr>(items[position]).release();
  return object;
}

GType modelType() {
  static const GType type = [] {
    const GType fresh = g_type_register_static_simple(G_TYPE_OBJECT, "OrivexMediaModel", sizeof(MediaModelClass),
                                                      nullptr, sizeof(MediaModel), nullptr, static_cast<GTypeFlags>(0));
    const GInterfaceInfo implementation{[](gpointer interfacePointer, gpointer /*data*/) {
                                          auto* const functions = static_cast<GListModelInterface*>(interfacePointer);
                                          functions->get_item_type = [](GListModel*) { return objectType(); };
                                          functions->get_n_items = countOf;
                                          functions->get_item = objectAt;
                                        },
                                        nullptr, nullptr};
    g_type_add_interface_static(fresh, G_TYPE_LIST_MODEL, &implementation);
    return fresh;
  }();
  return type;
}

}  // namespace

MediaList::MediaList() : model_(GRef<GListModel>::adopt(static_cast<GListModel*>(g_object_new(modelType(), nullptr)))) {
  reinterpret_cast<MediaModel*>(model_.get())->list = this;
}

MediaList::~MediaList() {
  const auto before = static_cast<guint>(count());
  reinterpret_cast<MediaModel*>(model_.get())->list = nullptr;
  g_list_model_items_changed(model_.get(), 0, before, 0);
}

void MediaList::show(std::shared_ptr<const MediaItems> items) {
  const auto old = std::exchange(items_, std::move(items));
  const auto oldCount = std::min(limit_, old->size());
  const auto newCount = count();
  const auto both = static_cast<std::ptrdiff_t>(std::min(oldCount, newCount));
  const auto head = std::mismatch(old->begin(), old->begin() + both, items_->begin()).first - old->begin();
  const auto oldEnd = std::make_reverse_iterator(old->begin() + static_cast<std::ptrdiff_t>(oldCount));
  const auto newEnd = std::make_reverse_iterator(items_->begin() + static_cast<std::ptrdiff_t>(newCount));
  const auto tail = std::mismatch(oldEnd, oldEnd + (both - head), newEnd).first - oldEnd;
  const auto same = static_cast<std::size_t>(head + tail);
  if (same == oldCount && same == newCount) return;
  g_list_model_items_changed(model_.get(), static_cast<guint>(head), static_cast<guint>(oldCount - same),
                             static_cast<guint>(newCount - same));
}

void MediaList::setLimit(std::size_t limit) {
  const auto before = count();
  limit_ = std::max(limit_, limit);
  const auto added = static_cast<guint>(count() - before);
  if (added > 0) g_list_model_items_changed(model_.get(), static_cast<guint>(before), 0, added);
}

MediaItemPtr MediaList::itemOf(gpointer object) {
  return *static_cast<MediaObject*>(object)->item;
}

}  // namespace orivex::gtk
