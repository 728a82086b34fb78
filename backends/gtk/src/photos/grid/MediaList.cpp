#include "MediaList.h"

#include <utility>

namespace orivex::gtk {
namespace {

/// Everything the model knows is its owner's.
struct MediaModel {
  GObject parent;
  const MediaList* list;
};
struct MediaModelClass {
  GObjectClass parent;
};

guint countOf(GListModel* model) {
  const auto* const list = reinterpret_cast<MediaModel*>(model)->list;
  return list ? static_cast<guint>(list->count()) : 0;
}

void implement(gpointer interface, gpointer /*data*/) {
  auto* const functions = static_cast<GListModelInterface*>(interface);
  functions->get_item_type = [](GListModel*) -> GType { return G_TYPE_OBJECT; };
  functions->get_n_items = countOf;
  functions->get_item = [](GListModel* model, guint position) -> gpointer {
    return position < countOf(model) ? g_object_new(G_TYPE_OBJECT, nullptr) : nullptr;
  };
}

GType modelType() {
  static const GType type = [] {
    const GType fresh = g_type_register_static_simple(G_TYPE_OBJECT, "OrivexMediaModel", sizeof(MediaModelClass),
                                                      nullptr, sizeof(MediaModel), nullptr, static_cast<GTypeFlags>(0));
    const GInterfaceInfo implementation{implement, nullptr, nullptr};
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
  const auto before = count();
  const auto old = std::exchange(items_, std::move(items));
  const auto both = std::min(before, count());
  std::size_t head = 0;  // items that stay at the beginning, and at the end
  std::size_t tail = 0;
  while (head < both && (*old)[head] == (*items_)[head]) ++head;
  while (tail < both - head && (*old)[before - 1 - tail] == (*items_)[count() - 1 - tail]) ++tail;
  const auto removed = static_cast<guint>(before - head - tail);
  const auto added = static_cast<guint>(count() - head - tail);
  if (removed + added > 0) g_list_model_items_changed(model_.get(), static_cast<guint>(head), removed, added);
}

void MediaList::setLimit(std::size_t limit) {
  const auto before = count();
  limit_ = std::max(limit_, limit);
  const auto added = static_cast<guint>(count() - before);
  if (added > 0) g_list_model_items_changed(model_.get(), static_cast<guint>(before), 0, added);
}

}  // namespace orivex::gtk
