#pragma once

namespace selvane {

/// Knows whether a newer version can be had. Main thread.
class Updater {
public:
    virtual ~Updater() = default;

    [[nodiscard]] virtual bool updateAvailable() const = 0;
};

} // namespace selvane
