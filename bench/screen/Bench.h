#pragma once

#include <string>
#include <vector>

namespace orivex::bench {

double median(std::vector<double> values);
/// The value that 99 of 100 do not exceed.
double percentile99(std::vector<double> values);
double largest(const std::vector<double>& values);

/// Resident memory of this process in KiB.
long residentKiB();

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
