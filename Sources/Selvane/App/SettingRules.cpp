#include "Selvane/App/SettingRules.h"

#include "Selvane/App/SettingChoices.h"
#include "SelvaneCore/SiteRule.h"
#include "SelvaneCore/Text.h"

#include <cstddef>
#include <optional>
#include <set>

namespace selvane::Valid {

namespace {

using Texts = SettingValue::Texts;

constexpr std::size_t longestPlaylist = 300;
constexpr std::size_t longestApplication = 255;
constexpr std::size_t mostEntries = 200;

struct TextOrder {
    bool operator()(const std::string& left, const std::string& right) const {
        return Text::compare(left, right) < 0;
    }
};

/// The first entries that `form` accepts, in the form that it gives them, without those that come again.
template <typename Form>
Texts firstDistinct(const Texts& entries, Form form) {
    Texts result;
    std::set<std::string, TextOrder> known;
    for (const std::string& entry : entries) {
        if (result.size() == mostEntries)
            break;
        if (const std::optional<std::string> formed = form(entry); formed && known.insert(*formed).second)
            result.push_back(*formed);
    }
    return result;
}

std::string mendSymbol(const std::string& value, const std::string& initial) {
    const bool isAllowed = value.empty() || std::ranges::find(symbolChoices, value) != symbolChoices.end();
    return isAllowed ? value : initial;
}

double mendVolume(const double& value, const double& initial) {
    // Not a number fails both comparisons.
    return value >= 0 && value <= 1 ? value : initial;
}

std::string mendPlaylist(const std::string& value, const std::string&) {
    return std::string(Text::prefix(value, longestPlaylist));
}

Texts mendApplications(const Texts& value, const Texts&) {
    return firstDistinct(value, [](const std::string& id) {
        const bool isAllowed = !id.empty() && Text::prefix(id, longestApplication).size() == id.size();
        return isAllowed ? std::optional(id) : std::nullopt;
    });
}

Texts mendSites(const Texts& value, const Texts&) {
    return firstDistinct(value, SiteRule::normalize);
}

} // namespace

const SettingRule<std::string> symbol{SettingRepair::symbols, mendSymbol};
const SettingRule<double> volume{SettingRepair::volume, mendVolume};
const SettingRule<std::string> playlist{SettingRepair::playlists, mendPlaylist};
const SettingRule<Texts> applications{SettingRepair::applications, mendApplications};
const SettingRule<Texts> sites{SettingRepair::sites, mendSites};

} // namespace selvane::Valid
