#pragma once

#include <memory>

#include <gio/gio.h>

#include "../FreeWith.h"

namespace orivex::gtk {

using GBytesPtr = std::unique_ptr<GBytes, FreeWith<g_bytes_unref>>;
using GCharPtr = std::unique_ptr<char, FreeWith<g_free>>;
using GErrorPtr = std::unique_ptr<GError, FreeWith<g_error_free>>;
using GKeyFilePtr = std::unique_ptr<GKeyFile, FreeWith<g_key_file_unref>>;
using GListPtr = std::unique_ptr<GList, FreeWith<g_list_free>>;
using GSourcePtr = std::unique_ptr<GSource, FreeWith<g_source_unref>>;
using GStrvPtr = std::unique_ptr<char*, FreeWith<g_strfreev>>;
using GVariantPtr = std::unique_ptr<GVariant, FreeWith<g_variant_unref>>;

}  // namespace orivex::gtk
