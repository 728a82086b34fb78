#include "Style.h"

#include <adwaita.h>

#include "base/GObjects.h"

namespace orivex::demo {
namespace {

constexpr char rules[] = R"(
  @define-color accent_bg_color #5447e0;
  @define-color accent_color #4a3fd0;
  @define-color window_bg_color #f6f6fb;
  window.frameless { padding: 0; margin: 0; border: none; box-shadow: none; }
  .shop-title { background: transparent; box-shadow: none; min-height: 44px; }
  .shop-title > windowhandle > box { min-height: 44px; padding-top: 0; padding-bottom: 0; }
  .shop-pages { background: @window_bg_color; }
  viewswitcherbar > actionbar > revealer > box { background: @window_bg_color; border-top-color: alpha(black, 0.07); }
  .shop-column { padding: 4px 16px 16px; }
  .shop-price { font-size: 1.2em; font-weight: 700; color: @accent_color; }
  .shop-contact { margin: 8px 16px 12px; }
  .shop-badge { min-width: 14px; padding: 2px 7px; border-radius: 12px; background: white; color: @accent_bg_color; font-size: 13px; }
  .shop-picture { border-radius: 12px; }
  .phone-status { padding: 0 26px; color: #14141a; font-weight: bold; }
  .phone-notch { background: #14141a; border-radius: 14px; min-width: 116px; min-height: 27px; }
  .phone-home { background: #14141a; border-radius: 3px; min-width: 128px; min-height: 5px; margin-bottom: 8px; }
)";

}  // namespace

void addStyle() {
  // The chat is light; a dark shop around it would flash.
  adw_style_manager_set_color_scheme(adw_style_manager_get_default(), ADW_COLOR_SCHEME_FORCE_LIGHT);
  const ObjectPtr<GtkCssProvider> provider(gtk_css_provider_new());
#if GTK_CHECK_VERSION(4, 12, 0)
  gtk_css_provider_load_from_string(provider.get(), rules);
#else
  gtk_css_provider_load_from_data(provider.get(), rules, -1);
#endif
  gtk_style_context_add_provider_for_display(gdk_display_get_default(), GTK_STYLE_PROVIDER(provider.get()),
                                             GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

}  // namespace orivex::demo
