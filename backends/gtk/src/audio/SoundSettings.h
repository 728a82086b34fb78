#pragma once

namespace orivex::gtk::SoundSettings {

/// Whether the desktop has a program in which the visitor can look after the microphone.
bool areAvailable();

/// Opens it. A failure is one log line.
void open();

}  // namespace orivex::gtk::SoundSettings
