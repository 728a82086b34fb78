#include "orivex/platform/base/Language.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstdlib>
#include <map>
#include <sstream>
#include <string_view>
#include <vector>

#include "Catalogue.h"

#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/ProcessState.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ports/Bundle.h"

namespace orivex {
namespace {

/// The catalogues that have been read stay: their texts may still be in use.
struct Language {
  std::map<std::string, Catalogue> catalogues;    // main thread
  std::atomic<const Catalogue*> chosen{nullptr};  // none is Chinese
};

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

// In the visitor's order. The locale "C" speaks no language, whatever LANGUAGE says.
std::vector<std::string> visitorsTags() {
  std::string locale;
  for (const char* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (locale.empty()) locale = variable(name);
  }
  if (locale.empty() || locale == "C" || locale == "POSIX") return {};
  std::vector<std::string> tags;
  std::istringstream wanted(variable("LANGUAGE"));
  for (std::string tag; std::getline(wanted, tag, ':');) tags.push_back(tag);
  if (tags.empty()) tags.push_back(locale);
  return tags;
}

// "pt_BR" of "pt-BR" and "pt_BR.UTF-8@euro"; empty when it could lead out of the catalogues' folder.
std::string languageName(std::string tag) {
  tag.resize(std::min(tag.find_first_of(".@"), tag.size()));
  std::replace(tag.begin(), tag.end(), '-', '_');
  const auto isPlain = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; };
  return std::all_of(tag.begin(), tag.end(), isPlain) ? tag : "";
}

// "pt" of "pt_BR", nothing of "pt".
std::string lessPrecise(const std::string& name) {
  const auto end = name.rfind('_');
  return name.substr(0, end == std::string::npos ? 0 : end);
}

const Catalogue* catalogueOf(Language& language, const std::string& name) {
  if (const auto found = language.catalogues.find(name); found != language.catalogues.end()) return &found->second;
  const auto path = Platform::current().componentBundle.pathForResource("locale/" + name, "mo");
  if (!path) return nullptr;
  auto catalogue = Catalogue::read(*path);
  if (catalogue) return &language.catalogues.emplace(name, *std::move(catalogue)).first->second;
  log::print("No texts from " + *path + ": it is damaged");
  return nullptr;
}

// Puts the values at their places, in one pass: a value may look like a place itself.
std::string filledIn(std::string_view text, std::initializer_list<std::string> values) {
  std::string filled;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto place = text[i] == '%' && i + 1 < text.size() ? static_cast<std::size_t>(text[i + 1] - '1') : 9;
    if (place < values.size()) {
      filled += values.begin()[place];
      ++i;
    } else {
      filled += text[i];
    }
  }
  return filled;
}

const char* translated(const char* chinese, unsigned long number) {
  const Catalogue* const catalogue = ProcessState::current().get<Language>().chosen;
  const char* const found = catalogue ? catalogue->find(chinese, number) : nullptr;
  return found ? found : chinese;
}

}  // namespace

void setLanguage(const std::string& tag) {
  auto& language = ProcessState::current().get<Language>();
  auto tags = tag == "auto" ? visitorsTags() : std::vector{tag};
  tags.emplace_back("en");
  for (const auto& wanted : tags) {
    for (auto name = languageName(wanted); !name.empty(); name = lessPrecise(name)) {
      const auto* const catalogue = catalogueOf(language, name);
      if (!catalogue && name != "zh") continue;
      language.chosen = catalogue;
      return;
    }
  }
  language.chosen = nullptr;
  log::print("The resource bundle has no catalogue of texts");
}

const char* tr(const char* chinese) {
  return translated(chinese, 1);
}

std::string tr(const char* chinese, std::initializer_list<std::string> values) {
  return filledIn(tr(chinese), values);
}

std::string trNumber(const char* chinese, unsigned long number) {
  return filledIn(translated(chinese, number), {std::to_string(number)});
}

}  // namespace orivex
