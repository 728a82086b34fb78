#include "Catalogue.h"

#include <cstdint>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "PluralRule.h"

namespace orivex {
namespace {

constexpr std::uint32_t magicNumber = 0x950412de;  // in the byte order of this machine, for which msgfmt wrote the file

std::uint32_t wordAt(const std::string& file, std::size_t offset) {
  std::uint32_t word = 0;
  file.copy(reinterpret_cast<char*>(&word), sizeof word, offset);
  return word;
}

// A table of texts has two words for each: how long it is, and where it begins. A zero byte follows it.
std::string textAt(const std::string& file, std::size_t table, std::size_t index) {
  const auto place = table + index * 8;
  const std::size_t length = wordAt(file, place);
  const std::size_t begin = wordAt(file, place + 4);
  if (file.at(begin + length) != '\0') throw std::out_of_range(__func__);
  return file.substr(begin, length);
}

// What stands in the header between `name` and a semicolon.
std::string field(const std::string& header, std::string_view name) {
  const auto begin = header.find(name);
  if (begin == std::string::npos) return "";
  return header.substr(begin + name.size(), header.find(';', begin) - begin - name.size());
}

}  // namespace

std::optional<Catalogue> Catalogue::read(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  const std::string file{std::istreambuf_iterator<char>(in), {}};
  Catalogue catalogue;
  try {
    if (wordAt(file, 0) != magicNumber) return std::nullopt;
    const auto count = wordAt(file, 8);
    const auto originals = wordAt(file, 12);
    const auto translations = wordAt(file, 16);
    for (std::uint32_t i = 0; i < count; ++i) {
      const auto original = textAt(file, originals, i);  // and its plural, behind a zero byte
      catalogue.texts_.emplace(original.substr(0, original.find('\0')), textAt(file, translations, i));
    }
  } catch (const std::out_of_range&) {
    return std::nullopt;
  }
  catalogue.pluralRule_ = field(catalogue.texts_[""], "plural=");
  catalogue.texts_.erase("");
  return catalogue;
}

const char* Catalogue::find(std::string_view text, unsigned long number) const {
  const auto found = texts_.find(text);
  if (found == texts_.end()) return nullptr;
  const auto& forms = found->second;
  std::size_t begin = 0;
  for (auto form = pluralForm(pluralRule_, number); form > 0; --form) {
    const auto next = forms.find('\0', begin);
    if (next == std::string::npos) break;
    begin = next + 1;
  }
  return forms.c_str() + begin;
}

}  // namespace orivex
