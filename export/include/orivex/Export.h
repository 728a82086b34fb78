#pragma once

/// Marks what a shared library of the component lends to others; all else in it is hidden.
#define ORIVEX_API __attribute__((visibility("default")))
