#pragma once

#include <functional>
#include <vector>

#include <adwaita.h>

#include "Settings.h"

namespace orivex::demo {

/// Shows the settings and lets the visitor change them.
class SettingsPage {
 public:
  struct Handlers {
    std::function<void(const Settings&)> changed;
    std::function<void()> clearCache;
  };

  SettingsPage(const Settings& settings, const std::string& version, Handlers handlers);
  SettingsPage(const SettingsPage&) = delete;
  SettingsPage& operator=(const SettingsPage&) = delete;

  GtkWidget* widget() const { return GTK_WIDGET(page_); }

 private:
  struct TextRow {
    std::string Settings::*field;
    GtkEditable* row;
  };
  struct LengthRow {
    double Settings::*field;
    GtkSpinButton* button;
  };

  void addServerGroup();
  void addDisplayGroup();
  void addComponentGroup(const std::string& version);
  AdwPreferencesGroup* addGroup(const char* title, const char* description);
  void addText(AdwPreferencesGroup* group, const char* title, std::string Settings::*field);
  void addLength(AdwPreferencesGroup* group, const char* title, double Settings::*field);

  void edited(GtkEditable* row);
  void lengthChanged(GtkSpinButton* button);
  void pushChanged(GObject* button, GParamSpec* property);
  void clearPressed(AdwActionRow* row);

  Settings settings_;
  Handlers handlers_;
  AdwPreferencesPage* page_;
  GtkSwitch* push_;
  std::vector<TextRow> texts_;
  std::vector<LengthRow> lengths_;
};

}  // namespace orivex::demo
