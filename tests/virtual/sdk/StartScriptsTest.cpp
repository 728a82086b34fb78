#include <limits>

#include "ChatScreenTest.h"
#include "StartScripts.h"

#include "orivex/session/OVKFApiManager.h"

namespace orivex::testing {
namespace {

std::string environmentScript(const std::shared_ptr<UserMappingModel>& user, double statusBar, double bottom) {
  OVKFApiManager::shared().user = user;
  std::vector<std::string> scripts;
  addEnvironmentScript(scripts, statusBar, bottom);
  return scripts.at(0);
}

TEST(EnvironmentScriptTest, NamesTheApplicationOrItsStandIns) {
  using Name = std::optional<std::string>;
  const struct {
    Name application;
    Name environment;
    std::string expected;
  } cases[] = {
      {{}, {}, R"({"app_name":"kep","env_name":"test","hh":47,"bh":34,"os_name":"iOS"})"},
      {"", "", R"({"app_name":"","env_name":"","hh":47,"bh":34,"os_name":"iOS"})"},
      {"商城", "prod", R"({"app_name":"商城","env_name":"prod","hh":47,"bh":34,"os_name":"iOS"})"},
      {"O'Neill \"&\" 😀", "a\\b\n</script>",
       R"({"app_name":"O'Neill \"&\" 😀","env_name":"a\\b\n</script>","hh":47,"bh":34,"os_name":"iOS"})"},
      {"\xFF", {}, ""},  // cannot be encoded: the page gets no record
  };
  for (const auto& row : cases) {
    auto user = std::make_shared<UserMappingModel>();
    user->app_name = row.application;
    user->env_name = row.environment;
    EXPECT_EQ(environmentScript(user, 47, 34), "window.extraParams=" + row.expected + ";");
  }
  EXPECT_EQ(environmentScript(nullptr, 47, 34), "window.extraParams=" + cases[0].expected + ";");
}

TEST(EnvironmentScriptTest, CutsHeightsToWholePoints) {
  const std::pair<double, std::string> cases[] = {
      {0, "0"}, {47.9, "47"}, {-0.5, "0"}, {-1.9, "-1"}, {-9223372036854775808.0, "-9223372036854775808"}};
  for (const auto& [height, expected] : cases) {
    EXPECT_EQ(environmentScript(nullptr, height, height),
              std::string(R"(window.extraParams={"app_name":"kep","env_name":"test","hh":)")
                  .append(expected)
                  .append(R"(,"bh":)")
                  .append(expected)
                  .append(R"(,"os_name":"iOS"};)"));
  }
  using Limits = std::numeric_limits<double>;
  for (const double height : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), 9223372036854775808.0}) {
    EXPECT_DEATH(environmentScript(nullptr, height, 0), "Fatal error: a height of the screen");
    EXPECT_DEATH(environmentScript(nullptr, 0, height), "Fatal error: a height of the screen");
  }
}

class DebugConsolesTest : public ChatScreenTest {
 protected:
  static constexpr const char* vConsoleScript =
      "v;\nif (typeof VConsole !== 'undefined') {\n    var vConsoleiOS = new VConsole();\n    console.log('vConsole is "
      "initialized');\n} else {\n    console.error('vConsole is not available');\n}";
  static constexpr const char* erudaScript =
      "e;\nif (typeof eruda !== 'undefined') {\n    eruda.init();\n    console.log('eruda is initialized');\n} else {\n"
      "    console.error('eruda is not available');\n}";

  DebugConsolesTest() {
    device_.componentBundle().addResource("vconsole.min", "js", "v");
    device_.componentBundle().addResource("eruda", "js", "e");
  }

  /// What a page gets after its environment script.
  Lines consoles() {
    const auto screen = started();
    log_.take();
    auto scripts = pageOf(*screen).configuration().userScripts;
    EXPECT_TRUE(scripts.at(0).starts_with("window.extraParams="));
    scripts.erase(scripts.begin());
    return scripts;
  }
};

TEST_F(DebugConsolesTest, FollowTheSwitchesAndImperialUnits) {
  using Unit = std::optional<std::string>;
  const struct {
    bool vConsole;
    bool eruda;
    Unit length;
    Unit temperature;
    Lines expected;
  } cases[] = {
      {false, false, {}, {}, {}},
      {false, true, {}, {}, {erudaScript}},
      {true, true, {}, {}, {vConsoleScript, erudaScript}},
      {false, false, "Inches", "Fahrenheit", {erudaScript}},
      {false, false, "Inches", "Celsius", {}},
      {false, false, "Centimeters", "Fahrenheit", {}},
      {false, false, "inches", "fahrenheit", {}},
  };
  auto& defaults = device_.userDefaults();
  const auto set = [&](const char* key, const Unit& unit) {
    unit ? defaults.setString(key, *unit) : defaults.setBool(key, false);  // which is no text
  };
  for (const auto& row : cases) {
    defaults.setBool("enable_vconsole", row.vConsole);
    defaults.setBool("enable_eruda", row.eruda);
    set("AppleMeasurementUnits", row.length);
    set("AppleTemperatureUnit", row.temperature);
    EXPECT_EQ(consoles(), row.expected) << row.vConsole << row.eruda << row.length.value_or("-")
                                        << row.temperature.value_or("-");
  }
}

TEST_F(DebugConsolesTest, AreLeftOutWithoutAReadableFile) {
  device_.userDefaults().setBool("enable_vconsole", true);
  device_.userDefaults().setBool("enable_eruda", true);
  auto& bundle = device_.componentBundle();
  const struct {
    const char* what;
    std::function<void()> arrange;
    Lines expected;
    Lines log;  // the starts of the lines
  } cases[] = {
      {"both there", [] {}, {vConsoleScript, erudaScript}, {"\"vConsole injecting\"", "\"eruda injecting\""}},
      {"vConsole missing",
       [&] { bundle.removeResource("vconsole.min", "js"); },
       {erudaScript},
       {"\"eruda injecting\""}},
      {"vConsole unreadable",
       [&] { bundle.addUnreadableResource("vconsole.min", "js"); },
       {erudaScript},
       {"\"vConsole injecting\"", "\"Error reading vConsole script file: ", "\"eruda injecting\""}},
      {"eruda not UTF-8",
       [&] { bundle.addResource("eruda", "js", "e\xC3("); },
       {},
       {"\"vConsole injecting\"", "\"Error reading vConsole script file: ", "\"eruda injecting\"",
        "\"Error reading eruda script file: "}},
      {"no bundle", [&] { bundle.setMissing(true); }, {}, {}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    row.arrange();
    EXPECT_EQ(consoles(), row.expected);
    const auto lines = log_.take();
    ASSERT_EQ(lines.size(), row.log.size() + 1) << ::testing::PrintToString(lines);  // the last one tells the distances
    for (std::size_t i = 0; i < row.log.size(); ++i) EXPECT_TRUE(lines[i].starts_with(row.log[i])) << lines[i];
  }
}

}  // namespace
}  // namespace orivex::testing
