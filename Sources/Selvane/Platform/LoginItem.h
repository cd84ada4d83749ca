#pragma once

#include <tl/expected.hpp>

#include <string>

namespace selvane {

/// Whether the desktop starts the program when the user logs in. The user can change that elsewhere too, so
/// each call looks anew. Main thread; the calls block, each for a small file or two.
class LoginItem {
public:
    /// The error is a short sentence for a person.
    using Outcome = tl::expected<void, std::string>;

    virtual ~LoginItem() = default;

    [[nodiscard]] virtual bool isRegistered() const = 0;

    /// After success `isRegistered` is true, after a failure what it was. To do it again changes nothing.
    [[nodiscard]] virtual Outcome registerItem() = 0;
    /// The counterpart.
    [[nodiscard]] virtual Outcome unregister() = 0;
};

} // namespace selvane
