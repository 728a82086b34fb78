#pragma once

#include <string>
#include <vector>

namespace orivex::bench {

double median(std::vector<double> values);
double largest(const std::vector<double>& values);

/// Resident memory of this process in KiB.
long residentKiB();

/// Memory that this process has taken from the allocator and not given back, in KiB.
double heapKiB();

/// Entries of this process in /proc/self/fd.
int openDescriptors();

/// Milliseconds of a steady clock.
double milliseconds();

/// "name    value unit", in columns.
void print(const std::string& name, double value, const std::string& unit);

}  // namespace orivex::bench
