// A host on a desktop: the installed library finds its bundle, and the bundle carries the wanted version.
#include <iostream>

#include <adwaita.h>

#include "orivex/gtk/Gtk.h"
#include "orivex/sdk/OrivexSDK.h"

int main(int argc, char** argv) {
  adw_init();
  orivex::gtk::install();
  const std::string version = orivex::OVKFApi::getSDKVersion(false);
  std::cout << "version " << version << '\n';
  return argc == 2 && version == argv[1] ? 0 : 1;
}
