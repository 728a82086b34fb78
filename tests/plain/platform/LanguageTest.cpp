#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orivex/platform/base/Language.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/testing/VirtualDevice.h"

namespace orivex::testing {
namespace {

using namespace std::string_literals;
using Texts = std::map<std::string, std::string>;

void appendWord(std::string& bytes, std::size_t value) {
  const auto word = static_cast<std::uint32_t>(value);
  bytes.append(reinterpret_cast<const char*>(&word), sizeof word);
}

/// The file that msgfmt would write.
std::string catalogue(const Texts& texts) {
  constexpr std::size_t headSize = 28;
  std::string head;
  const auto originals = headSize;
  const auto translations = originals + 8 * texts.size();
  for (const std::size_t word : {std::size_t{0x950412de}, std::size_t{0}, texts.size(), originals, translations,
                                 std::size_t{0}, std::size_t{0}}) {
    appendWord(head, word);
  }
  const auto begin = translations + 8 * texts.size();
  std::string of[2];
  std::string contents;
  const auto append = [&](std::string& table, const std::string& text) {
    appendWord(table, text.size());
    appendWord(table, begin + contents.size());
    contents += text + '\0';
  };
  for (const auto& [original, translation] : texts) {
    append(of[0], original);
    append(of[1], translation);
  }
  return head + of[0] + of[1] + contents;
}

std::string header(const std::string& plural) {
  return "Content-Type: text/plain; charset=UTF-8\nPlural-Forms: nplurals=3; plural=" + plural + ";\n";
}

class LanguageTest : public ::testing::Test {
 protected:
  static constexpr const char* variables[] = {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"};

  LanguageTest() {
    for (const char* const name : variables) {
      const char* const value = std::getenv(name);
      if (value) before_[name] = value;
      unsetenv(name);
    }
    for (const auto& [tag, word] : {std::pair{"en", "yes"}, {"fr", "oui"}, {"pt", "sim"}, {"pt_BR", "sim!"}}) {
      add(tag, {{"", header("n != 1")}, {"好", word}});
    }
  }
  ~LanguageTest() override {
    for (const char* const name : variables) {
      before_.contains(name) ? setenv(name, before_[name].c_str(), 1) : unsetenv(name);
    }
  }

  void add(const std::string& tag, const Texts& texts) {
    device_.componentBundle().addResource("locale/" + tag, "mo", catalogue(texts));
  }

  static std::string yesIn(const std::string& tag) {
    setLanguage(tag);
    return tr("好");
  }

  VirtualDevice device_;
  std::map<std::string, std::string> before_;
};

TEST_F(LanguageTest, IsChineseUntilTheHostChoosesOne) {
  setenv("LANG", "en_US.UTF-8", 1);
  EXPECT_STREQ(tr("好"), "好");
  const std::pair<const char*, const char*> cases[] = {
      {"fr", "oui"},    {"fr_CA", "oui"},   {"fr-CA", "oui"}, {"pt-BR", "sim!"},       {"pt_BR.UTF-8", "sim!"},
      {"pt_PT", "sim"}, {"zh", "好"},       {"zh-CN", "好"},  {"zh_Hant_TW@x", "好"},  {"xx", "yes"},
      {"", "yes"},      {"english", "yes"}, {"zhx", "yes"},   {"../locale/fr", "yes"},
  };
  for (const auto& [tag, wanted] : cases) EXPECT_EQ(yesIn(tag), wanted) << tag;
}

TEST_F(LanguageTest, TakesTheVisitorsOwnAsGettextDoes) {
  const struct {
    const char* values[4];  // of LANGUAGE, LC_ALL, LC_MESSAGES, LANG
    const char* wanted;
  } cases[] = {
      {{"", "", "", ""}, "yes"},
      {{"", "", "", "fr_FR.UTF-8"}, "oui"},
      {{"", "", "pt_PT", "fr_FR"}, "sim"},
      {{"", "zh_CN.UTF-8", "pt_PT", "fr_FR"}, "好"},
      {{"fr", "zh_CN.UTF-8", "", ""}, "oui"},
      {{"xx:pt_BR:fr", "en_US", "", ""}, "sim!"},
      {{"xx:zh_TW:fr", "en_US", "", ""}, "好"},
      {{"fr", "", "", "C.UTF-8"}, "oui"},
      {{"", "", "", "C.UTF-8"}, "yes"},
      {{"fr", "C", "", "fr_FR"}, "yes"},
      {{"fr", "", "", ""}, "yes"},
      {{"xx", "", "", "fr_FR"}, "yes"},
  };
  for (const auto& row : cases) {
    for (std::size_t i = 0; i < std::size(variables); ++i) setenv(variables[i], row.values[i], 1);
    EXPECT_EQ(yesIn("auto"), row.wanted) << row.values[0] << ' ' << row.values[1] << ' ' << row.values[3];
  }
}

TEST_F(LanguageTest, FillsInValuesAndTakesTheFormOfANumber) {
  EXPECT_EQ(tr("共%1，%2", {"%2", "b"}), "共%2，b");
  EXPECT_EQ(tr("%3 % %1%", {"a"}), "%3 % a%");
  EXPECT_EQ(trNumber("%1项", 1), "1项");
  // Polish: 1; 2 to 4 but not 12 to 14; the rest.
  add("pl", {{"", header("(n==1 ? 0 : n%10>=2 && n%10<=4 && (n%100<10 || n%100>=20) ? 1 : 2)")},
             {"%1项\0%1项"s, "%1 plik\0%1 pliki\0%1 plików"s},
             {"%1在%2", "%2: %1"}});
  setLanguage("pl");
  EXPECT_EQ(tr("%1在%2", {"a", "b"}), "b: a");
  EXPECT_STREQ(tr(""), "") << "the catalogue's header";
  const std::pair<unsigned long, const char*> cases[] = {{0, "0 plików"},   {1, "1 plik"},      {3, "3 pliki"},
                                                         {12, "12 plików"}, {102, "102 pliki"}, {112, "112 plików"}};
  for (const auto& [number, wanted] : cases) EXPECT_EQ(trNumber("%1项", number), wanted);
}

TEST_F(LanguageTest, ADamagedCatalogueIsNone) {
  const auto whole = catalogue({{"", header("0")}, {"好", "ja"}});
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const auto tag = "de_" + std::to_string(size);
    device_.componentBundle().addResource("locale/" + tag, "mo", whole.substr(0, size));
    EXPECT_EQ(yesIn(tag), "yes") << size;
  }
  auto other = whole;
  std::swap(other[0], other[3]);
  device_.componentBundle().addResource("locale/de", "mo", other);
  EXPECT_EQ(yesIn("de"), "yes");
  device_.componentBundle().setMissing(true);
  EXPECT_EQ(yesIn("nl"), "yes") << "read before";
}

TEST(LanguageWithoutCatalogues, StaysChineseAndWhatWasReadStaysValid) {
  {
    const VirtualDevice device;
    setLanguage("en");
    EXPECT_STREQ(tr("好"), "好");
  }
  VirtualDevice device;
  device.componentBundle().addResource("locale/en", "mo", catalogue({{"好", "yes"}}));
  setLanguage("en");
  const char* const yes = tr("好");
  setLanguage("zh");
  EXPECT_STREQ(yes, "yes");
  EXPECT_STREQ(tr("好"), "好");
}

}  // namespace
}  // namespace orivex::testing
