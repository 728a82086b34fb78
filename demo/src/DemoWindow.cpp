#include "DemoWindow.h"

#include <algorithm>

#include "Style.h"
#include "base/Texts.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/platform/ui/NavigationController.h"

namespace orivex::demo {
namespace {

// A phone's screen, in points.
constexpr int windowWidth = 360;
constexpr int windowHeight = 720;

// The style's window_bg_color.
constexpr Color background{0xF6 / 255.0, 0xF6 / 255.0, 0xFB / 255.0};

const char* shopName() {
  return text("云上小店", "Cloud Corner");
}

GtkWindow* windowNew(GtkApplication* application, bool isFrameless) {
  auto* const window = GTK_WINDOW(adw_application_window_new(application));
  gtk_window_set_title(window, shopName());
  gtk_window_set_default_size(window, windowWidth, windowHeight);
  // GTK draws a frame by itself where the desktop draws none.
  if (isFrameless) gtk_widget_add_css_class(GTK_WIDGET(window), "frameless");
  return window;
}

GtkWidget* titleBarNew(bool isFrameless) {
  auto* const bar = adw_header_bar_new();
  adw_header_bar_set_title_widget(ADW_HEADER_BAR(bar), adw_window_title_new(shopName(), nullptr));
  adw_header_bar_set_show_start_title_buttons(ADW_HEADER_BAR(bar), !isFrameless);
  adw_header_bar_set_show_end_title_buttons(ADW_HEADER_BAR(bar), !isFrameless);
  gtk_widget_add_css_class(bar, "shop-title");
  return bar;
}

// The window's content once the window shows screens, taken out of it to be put into something else.
ObjectPtr<GtkWidget> takeContent(GtkWindow* window) {
  auto* const adwWindow = ADW_APPLICATION_WINDOW(window);
  ObjectPtr<GtkWidget> content(GTK_WIDGET(g_object_ref(adw_application_window_get_content(adwWindow))));
  adw_application_window_set_content(adwWindow, nullptr);
  return content;
}

}  // namespace

DemoWindow::DemoWindow(GtkApplication* application, const Settings& settings, bool isFrameless, Handlers handlers)
    : isFrameless_(isFrameless),
      window_(windowNew(application, isFrameless)),
      shop_(std::move(handlers.contact)),
      settings_(settings, OVKFApi::getSDKVersion(false),
                {.changed = std::move(handlers.settingsChanged), .clearCache = std::move(handlers.clearCache)}),
      pages_(ADW_VIEW_STACK(adw_view_stack_new())),
      titleBar_(titleBarNew(isFrameless)),
      toasts_(ADW_TOAST_OVERLAY(adw_toast_overlay_new())),
      screens_(gtk::attach(window_)),
      frame_(takeContent(window_).get()) {
  addStyle();
  adw_application_window_set_content(ADW_APPLICATION_WINDOW(window_), frame_.widget());
  buildContent();
  apply(settings);
}

DemoWindow::~DemoWindow() {
  gtk_window_destroy(window_);
}

void DemoWindow::buildContent() {
  adw_view_stack_add_titled(pages_, shop_.widget(), "shop", text("商店", "Shop"));
  adw_view_stack_add_titled(pages_, events_.widget(), "events", text("事件", "Events"));
  adw_view_stack_add_titled(pages_, settings_.widget(), "settings", text("设置", "Settings"));
  const auto setIcon = [this](GtkWidget* page, const char* icon) {
    adw_view_stack_page_set_icon_name(adw_view_stack_get_page(pages_, page), icon);
  };
  setIcon(shop_.widget(), "go-home-symbolic");
  setIcon(events_.widget(), "view-list-symbolic");
  setIcon(settings_.widget(), "emblem-system-symbolic");
  eventsTab_ = adw_view_stack_get_page(pages_, events_.widget());
  connectTo<&DemoWindow::pageChanged>(pages_, "notify::visible-child", this);
  gtk_widget_set_vexpand(GTK_WIDGET(pages_), TRUE);

  auto* const tabs = adw_view_switcher_bar_new();
  adw_view_switcher_bar_set_stack(ADW_VIEW_SWITCHER_BAR(tabs), pages_);
  adw_view_switcher_bar_set_reveal(ADW_VIEW_SWITCHER_BAR(tabs), TRUE);
  gtk_widget_set_name(tabs, "tabs");

  auto* const column = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_box_append(GTK_BOX(column), titleBar_);
  gtk_box_append(GTK_BOX(column), GTK_WIDGET(pages_));
  gtk_box_append(GTK_BOX(column), tabs);
  gtk_widget_add_css_class(column, "shop-pages");
  adw_toast_overlay_set_child(toasts_, column);
  content_.reset(GTK_WIDGET(g_object_ref_sink(toasts_)));
}

std::shared_ptr<ViewController> DemoWindow::rootFor(bool pushes) const {
  auto shop = gtk::screenFor(content_.get());
  if (!pushes) return shop;
  const auto navigation = std::make_shared<NavigationController>(shop);
  const auto title = gtk::viewFor(titleBarNew(isFrameless_));
  const auto& bar = navigation->navigationBar();
  bar->addSubview(title);
  bar->setLayoutHandler([title = std::weak_ptr(title), bar = bar.get()] {
    const auto bounds = bar->bounds();
    constexpr double height = NavigationController::barHeight;
    if (const auto shown = title.lock()) shown->setFrame({0, bounds.height - height, bounds.width, height});
  });
  // After the view has loaded, which gives both another colour.
  navigation->view()->setBackgroundColor(background);
  bar->setBackgroundColor(background);
  return navigation;
}

void DemoWindow::apply(const Settings& settings) {
  gtk::setSurroundings(window_, {settings.statusBarHeight, {settings.topInset, 0, settings.bottomInset, 0}});
  frame_.apply(settings);
  // The navigation controller's own bar keeps clear of the status bar, and has the title.
  const double top = settings.push ? 0 : std::max(settings.statusBarHeight, settings.topInset);
  gtk_widget_set_visible(titleBar_, !settings.push);
  gtk_widget_set_margin_top(GTK_WIDGET(toasts_), static_cast<int>(top));
  gtk_widget_set_margin_bottom(GTK_WIDGET(toasts_), static_cast<int>(settings.bottomInset));
  if (pushes_ != settings.push) screens_->setRootViewController(rootFor(settings.push));
  pushes_ = settings.push;
  // In its window by now, the bar finds its place below the status bar; and it finds a new one when that changes.
  const auto navigation = std::dynamic_pointer_cast<NavigationController>(screens_->rootViewController());
  if (navigation) navigation->setNavigationBarTranslucent(false);
}

void DemoWindow::show(const ConversationEvent& event) {
  events_.add(event);
  adw_view_stack_page_set_badge_number(eventsTab_, ++unseenEvents_);
}

void DemoWindow::pageChanged(GObject* /*stack*/, GParamSpec* /*property*/) {
  if (adw_view_stack_get_visible_child(pages_) != events_.widget()) return;
  unseenEvents_ = 0;
  adw_view_stack_page_set_badge_number(eventsTab_, 0);
}

void DemoWindow::showToast(const std::string& message) {
  auto* const toast = adw_toast_new("");
  const CharPtr escaped(g_markup_escape_text(message.c_str(), -1));
  adw_toast_set_title(toast, escaped.get());
  adw_toast_overlay_add_toast(toasts_, toast);
}

}  // namespace orivex::demo
