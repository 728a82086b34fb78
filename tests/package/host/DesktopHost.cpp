// A host on a desktop that has made nothing of GTK ready: the library finds its bundle, which carries the wanted
// version.
#include <iostream>

#include "orivex/gtk/Gtk.h"
#include "orivex/sdk/OrivexSDK.h"

int main(int argc, char** argv) {
  orivex::gtk::install();
  const std::string version = orivex::OVKFApi::getSDKVersion(false);
  std::cout << "version " << version << '\n';
  return argc == 2 && version == argv[1] ? 0 : 1;
}
