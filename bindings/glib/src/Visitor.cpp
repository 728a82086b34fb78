#include "Visitor.h"

#include <iterator>
#include <optional>
#include <string>

namespace {

using orivex::UserMappingModel;

// A property for each field of the record.
const struct {
  const char* name;
  const char* blurb;
  std::optional<std::string> UserMappingModel::*field;
} fields[] = {
    {"id", "The host's own identifier of the visitor", &UserMappingModel::identity_id},
    {"display-name", "Name of the visitor", &UserMappingModel::visitor_name},
    {"phone", "Phone number of the visitor", &UserMappingModel::phone},
    {"email", "E-mail address of the visitor", &UserMappingModel::email},
    {"device-id", "Identifier of the device; one of the component's where it is left out", &UserMappingModel::deviceId},
    {"app-id", "Identifier of the host application", &UserMappingModel::app_id},
    {"app-name", "Name of the host application", &UserMappingModel::app_name},
    {"environment", "Environment of the host application", &UserMappingModel::env_name},
};

}  // namespace

struct _OrivexVisitor {
  GObject parent;
  UserMappingModel* record;
};

G_DEFINE_FINAL_TYPE(OrivexVisitor, orivex_visitor, G_TYPE_OBJECT)

static void orivex_visitor_get_property(GObject* object, guint id, GValue* value, GParamSpec* /*spec*/) {
  const auto& text = ORIVEX_VISITOR(object)->record->*fields[id - 1].field;
  g_value_set_string(value, text ? text->c_str() : nullptr);
}

static void orivex_visitor_set_property(GObject* object, guint id, const GValue* value, GParamSpec* spec) {
  auto& text = ORIVEX_VISITOR(object)->record->*fields[id - 1].field;
  const char* const given = g_value_get_string(value);
  const auto next = given ? std::optional<std::string>(given) : std::nullopt;
  if (text == next) return;
  text = next;
  g_object_notify_by_pspec(object, spec);
}

static void orivex_visitor_finalize(GObject* object) {
  delete ORIVEX_VISITOR(object)->record;
  G_OBJECT_CLASS(orivex_visitor_parent_class)->finalize(object);
}

static void orivex_visitor_class_init(OrivexVisitorClass* type) {
  auto* const object = G_OBJECT_CLASS(type);
  object->get_property = orivex_visitor_get_property;
  object->set_property = orivex_visitor_set_property;
  object->finalize = orivex_visitor_finalize;
  for (guint index = 0; index < std::size(fields); ++index) {
    const auto flags = GParamFlags(G_PARAM_READWRITE | G_PARAM_EXPLICIT_NOTIFY | G_PARAM_STATIC_STRINGS);
    g_object_class_install_property(
        object, index + 1, g_param_spec_string(fields[index].name, nullptr, fields[index].blurb, nullptr, flags));
  }
}

static void orivex_visitor_init(OrivexVisitor* self) {
  self->record = new UserMappingModel;
}

/**
 * orivex_visitor_new:
 *
 * Makes a visitor of whom nothing is known.
 *
 * Returns: (transfer full): a visitor
 */
OrivexVisitor* orivex_visitor_new(void) {
  return ORIVEX_VISITOR(g_object_new(ORIVEX_TYPE_VISITOR, nullptr));
}

std::shared_ptr<UserMappingModel> orivex::glib::recordOf(OrivexVisitor* visitor) {
  return visitor ? std::make_shared<UserMappingModel>(*visitor->record) : std::make_shared<UserMappingModel>();
}
