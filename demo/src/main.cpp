#include <clocale>
#include <iostream>

#include "Demo.h"

int main(int argumentCount, char** arguments) {
  std::setlocale(LC_ALL, "");
  try {
    return orivex::demo::Demo(orivex::demo::parseOptions(argumentCount, arguments)).run();
  } catch (const orivex::demo::UsageError& error) {
    std::cerr << "orivex-demo: " << error.what() << "\nTry --help.\n";
    return 2;
  }
}
