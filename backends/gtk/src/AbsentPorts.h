#pragma once


/// Ports of devices that this backend does not reach yet: each answers as a device that lacks them.
namespace orivex::gtk {

}  // namespace orivex::gtk
