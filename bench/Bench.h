#pragma once

#include <string>
#include <vector>

namespace orivex::bench {

double median(std::vector<double> values);
double largest(const std::vector<double>& values);

/// A figure of this process in /proc/self/status, in KiB: "VmRSS", its resident memory, or "VmHWM", that at its peak.
double statusKiB(const std::string& name);

/// Memory that this process has taken from the allocator and not given back, in KiB.
double heapKiB();

/// Entries of this process in /proc/self/fd.
int openDescriptors();

/// Milliseconds of a steady clock.
double milliseconds();

/// Milliseconds of processor time that this thread has used: what others do on a busy machine does not count.
double threadMilliseconds();

/// "name    value unit", in columns.
void print(const std::string& name, double value, const std::string& unit);

}  // namespace orivex::bench
