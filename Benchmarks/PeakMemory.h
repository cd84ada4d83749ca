#pragma once

#include <fstream>
#include <limits>
#include <string>

namespace selvane::benchmarks {

/// The most memory that the process has had resident since the object was made, beyond what it had then.
class PeakMemory {
public:
    PeakMemory() {
        // Sets the high-water mark back to what is resident now.
        std::ofstream("/proc/self/clear_refs") << "5";
        _before = kilobytes("VmRSS:");
    }

    [[nodiscard]] double megabytes() const { return (kilobytes("VmHWM:") - _before) / 1024.0; }

private:
    static double kilobytes(const std::string& field) {
        std::ifstream status("/proc/self/status");
        std::string word;
        double value = 0;
        while (status >> word) {
            if (word == field && status >> value)
                return value;
            status.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
        }
        return 0;
    }

    double _before = 0;
};

} // namespace selvane::benchmarks
