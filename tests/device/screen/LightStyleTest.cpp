#include <adwaita.h>

#include "PageFixture.h"

namespace orivex::gtk {
namespace {

class LightStyle : public PageFixture {
 protected:
  LightStyle() { adw_style_manager_set_color_scheme(adw_style_manager_get_default(), ADW_COLOR_SCHEME_FORCE_DARK); }
  ~LightStyle() override {
    adw_style_manager_set_color_scheme(adw_style_manager_get_default(), ADW_COLOR_SCHEME_DEFAULT);
  }
};

TEST_F(LightStyle, ADarkDesktopReachesNeitherThePageNorItsDialogs) {
  open("<style>:root { color-scheme: dark light; }</style><input id=field>");
  EXPECT_EQ(evaluate("getComputedStyle(field).color + getComputedStyle(document.body).color"),
            "rgb(0, 0, 0)rgb(0, 0, 0)");
  const std::pair<const char*, const char*> questions[] = {
      {"(prefers-color-scheme: dark)", "false"},
      {"(prefers-color-scheme:light)", "true"},
      {"(prefers-color-scheme)", "true"},
      {"(min-width: 10px) and (PREFERS-color-scheme: Dark)", "false"},
      {"(max-width: 10px) and (prefers-color-scheme: light)", "false"},
  };
  for (const auto& [query, answer] : questions) {
    EXPECT_EQ(evaluate(std::string("matchMedia('") + query + "').matches"), answer) << query;
  }
  EXPECT_EQ(evaluate("matchMedia('(prefers-color-scheme: dark)').media"), "(prefers-color-scheme: dark)");

  run("alert('light?')");
  ASSERT_TRUE(waitForDialog());
  GdkRGBA text;
  GtkWidget* const label = findByType(openDialog(), GTK_TYPE_LABEL);
  gtk_style_context_get_color(gtk_widget_get_style_context(label), &text);
  EXPECT_LT(text.red + text.green + text.blue, 0.3F);
  ASSERT_TRUE(pressInDialog("确定"));
  EXPECT_TRUE(wait([] { return !openDialog(); }, 5));
}

}  // namespace
}  // namespace orivex::gtk
