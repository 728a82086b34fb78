#include "DocumentFilter.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "../glib/GMemory.h"

namespace orivex::gtk {
namespace {

// More names than these make the chooser's button unreadable.
constexpr std::size_t mostNames = 3;

struct Kind {
  std::string_view prefix;  // of a MIME type
  const char* name;
};

// What visitors call the files that they usually send; the first match counts.
constexpr Kind kinds[] = {
    {"image/", "图片"},
    {"video/", "视频"},
    {"audio/", "音频"},
    {"text/", "文本"},
    {"application/pdf", "PDF"},
    {"application/msword", "Word 文档"},
    {"application/vnd.openxmlformats-officedocument.wordprocessingml", "Word 文档"},
    {"application/vnd.ms-excel", "Excel 表格"},
    {"application/vnd.openxmlformats-officedocument.spreadsheetml", "Excel 表格"},
    {"application/vnd.ms-powerpoint", "PPT 演示文稿"},
    {"application/vnd.openxmlformats-officedocument.presentationml", "PPT 演示文稿"},
    {"application/zip", "压缩包"},
    {"application/x-rar", "压缩包"},
    {"application/vnd.rar", "压缩包"},
    {"application/x-7z-compressed", "压缩包"},
};

std::string lowerCase(const std::string& text) {
  return GCharPtr(g_ascii_strdown(text.c_str(), -1)).get();
}

bool isMimeType(const std::string& text) {
  const auto slash = text.find('/');
  return slash != std::string::npos && slash > 0 && slash + 1 < text.size() && text[0] != '*' &&
         text.find_first_of(" ,;") == std::string::npos;
}

std::string nameOf(const std::string& mimeType) {
  const auto* const kind = std::find_if(std::begin(kinds), std::end(kinds),
                                        [&](const Kind& candidate) { return mimeType.starts_with(candidate.prefix); });
  if (kind != std::end(kinds)) return kind->name;
  const GCharPtr description(g_content_type_get_description(mimeType.c_str()));
  return description ? description.get() : mimeType;
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), mostNames); ++i) text += (i > 0 ? "、" : "") + names[i];
  return names.size() > mostNames ? text + "等" : text;
}

}  // namespace

std::vector<GRef<GtkFileFilter>> documentFilters(const std::vector<std::string>& mimeTypes) {
  auto requested = GRef<GtkFileFilter>::sink(gtk_file_filter_new());
  std::vector<std::string> names;
  for (const auto& mimeType : mimeTypes) {
    const auto type = lowerCase(mimeType);
    if (type == "*/*") return {};
    if (!isMimeType(type)) continue;
    gtk_file_filter_add_mime_type(requested.get(), type.c_str());
    const auto name = nameOf(type);
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  }
  if (names.empty()) return {};
  gtk_file_filter_set_name(requested.get(), joined(names).c_str());
  auto all = GRef<GtkFileFilter>::sink(gtk_file_filter_new());
  gtk_file_filter_set_name(all.get(), "所有文件");
  gtk_file_filter_add_pattern(all.get(), "*");
  return {std::move(requested), std::move(all)};
}

}  // namespace orivex::gtk
