#include "ContrastRatio.h"
#include "ControlsFixture.h"
#include "Selvane/UI/Controls/Glass.h"
#include "Selvane/UI/Controls/Ink.h"

#include <QSignalSpy>

#include <vector>

namespace selvane {
namespace {

using test::contrast;
using test::on;

constexpr Look::Glass levels[] = {Look::Flat, Look::Clear, Look::Regular, Look::Tinted};

TEST(ContrastRatio, IsTheGuidelines) {
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 1e-9);
    EXPECT_NEAR(contrast(Qt::white, Qt::white), 1, 1e-9);
    EXPECT_NEAR(contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.005);
}

/// The theme of one appearance, as views get it.
class ThemeAppearances : public test::ControlsFixture, public testing::WithParamInterface<Palette::Scheme> {
protected:
    ThemeAppearances() {
        appearance.setDark(GetParam().isDark);
        appearance.setHighContrast(GetParam().isHighContrast);
    }

    /// The least contrast that text may have here.
    [[nodiscard]] double demanded() const { return GetParam().isHighContrast ? 7 : 4.5; }

    [[nodiscard]] QColor ink(double opacity) {
        QColor shade = theme().primary();
        shade.setAlphaF(static_cast<float>(opacity));
        return shade;
    }

    void expectReadable(const QColor& text, const QColor& ground, const std::string& what) const {
        EXPECT_GE(contrast(text, ground), demanded()) << what;
    }

    /// The colours of the capsules' fill that a text can lie on, on the windows' ground.
    [[nodiscard]] std::vector<QColor> capsules(Look::Glass level, CapsuleUse use, CapsuleState state) {
        const CapsuleColors colors = capsuleColors(level, use, state, GetParam());
        return {on(theme().surface(), colors.top), on(theme().surface(), colors.bottom)};
    }
};

TEST_P(ThemeAppearances, TextIsReadableOnTheGroundsOfWindows) {
    const QColor surface = theme().surface();
    const std::pair<const char*, QColor> grounds[] = {
        {"surface", surface},
        {"backdrop", on(surface, theme().backdrop())},
        {"card", on(surface, theme().card())},
        {"popup", theme().popup()},
        {"row under the pointer", on(theme().popup(), ink(0.09))},
        {"hovered button", on(surface, ink(0.07))},
    };
    for (const auto& [name, ground] : grounds) {
        expectReadable(theme().primaryText(), ground, std::string("primary on ") + name);
        expectReadable(theme().secondaryText(), ground, std::string("secondary on ") + name);
    }
    expectReadable(theme().primaryText(), on(theme().popup(), ink(0.14)), "primary on a pressed row");
}

TEST_P(ThemeAppearances, TextIsReadableOnCapsulesOfEveryLevel) {
    for (const Look::Glass level : levels) {
        for (const CapsuleUse use : {CapsuleUse::passive, CapsuleUse::interactive}) {
            for (const CapsuleState state :
                 {CapsuleState::resting, CapsuleState::hovered, CapsuleState::pressed}) {
                for (const QColor& ground : capsules(level, use, state))
                    expectReadable(theme().primaryText(), ground, "primary, level " + std::to_string(level));
            }
        }
        for (const QColor& ground : capsules(level, CapsuleUse::passive, CapsuleState::resting)) {
            expectReadable(theme().secondaryText(), ground, "secondary, level " + std::to_string(level));
            expectReadable(theme().primaryText(), on(ground, theme().selectedSegment()),
                           "segment, level " + std::to_string(level));
        }
    }
}

TEST_P(ThemeAppearances, TextIsReadableOnWhatIsFilledWithInk) {
    expectReadable(theme().textOnSolidPrimary(), theme().solidPrimary(), "prominent button");
    QColor pressed = theme().solidPrimary();
    pressed.setAlphaF(0.82F);
    expectReadable(theme().textOnSolidPrimary(), on(theme().surface(), pressed), "pressed prominent button");
    expectReadable(theme().inverse(), theme().primary(), "checkmark");
}

TEST_P(ThemeAppearances, TaskAndThePromptInItsPlaceAreReadable) {
    for (const double pointed : {0.0, 0.07, 0.12}) {
        const QColor ground = on(theme().surface(), ink(pointed));
        expectReadable(theme().promptText(), ground, "prompt");
        expectReadable(ink(0.85), ground, "task");
    }
}

TEST_P(ThemeAppearances, QuietestTextStandsOut) {
    const QColor surface = theme().surface();
    const double least = GetParam().isHighContrast ? demanded() : 3;
    for (const QColor& ground : {surface, theme().popup(), on(surface, theme().card())})
        EXPECT_GE(contrast(theme().tertiaryText(), ground), least) << ground.name().toStdString();
}

TEST_P(ThemeAppearances, RingStandsOut) {
    const double least = GetParam().isHighContrast ? 4.5 : 3;
    EXPECT_GE(contrast(theme().focusRing(), theme().surface()), least);
    EXPECT_GE(contrast(theme().focusRing(), theme().popup()), least);
}

TEST_P(ThemeAppearances, MarksAreLiftedWhereContrastIsWanted) {
    const QColor surface = theme().surface();
    if (!GetParam().isHighContrast) {
        EXPECT_EQ(theme().markLift(), 0);
        EXPECT_EQ(theme().trackLift(), 0);
        return;
    }
    for (const QColor& ground : {surface, theme().popup(), on(surface, theme().card())}) {
        EXPECT_GE(contrast(ink(lifted(0, theme().markLift())), ground), 3) << ground.name().toStdString();
        EXPECT_GE(contrast(ink(lifted(0.07, theme().trackLift())), ground), 1.6)
            << ground.name().toStdString();
    }
    const QColor emptyDay = on(surface, ink(lifted(0.07, theme().trackLift())));
    EXPECT_GE(contrast(theme().solidPrimary(), emptyDay), 7) << "a full one stands out from it";
    EXPECT_GE(contrast(on(surface, ink(lifted(0.25, theme().trackLift()))), emptyDay), 1.4)
        << "and so does the least";
}

TEST_P(ThemeAppearances, QuieterTextIsFainter) {
    EXPECT_GT(contrast(theme().primaryText(), theme().surface()),
              contrast(theme().secondaryText(), theme().surface()));
    EXPECT_GT(contrast(theme().secondaryText(), theme().surface()),
              contrast(theme().tertiaryText(), theme().surface()));
}

TEST_P(ThemeAppearances, EdgesAreFullWhereContrastIsWanted) {
    const double ratio = contrast(theme().hairline(), theme().surface());
    if (GetParam().isHighContrast) {
        EXPECT_GE(ratio, 20);
        EXPECT_GE(contrast(theme().windowEdge(), theme().surface()), 20);
    } else {
        EXPECT_LT(ratio, 1.5);
    }
}

INSTANTIATE_TEST_SUITE_P(All, ThemeAppearances,
                         testing::Values(Palette::Scheme{false, false}, Palette::Scheme{true, false},
                                         Palette::Scheme{false, true}, Palette::Scheme{true, true}),
                         [](const auto& row) {
                             return std::string(row.param.isDark ? "Dark" : "Light") +
                                    (row.param.isHighContrast ? "HighContrast" : "");
                         });

class ThemeTest : public test::ControlsFixture {};

TEST_F(ThemeTest, LightPaletteIsDarkInkOnNearlyWhite) {
    EXPECT_EQ(theme().solidPrimary(), QColor::fromRgbF(0.11F, 0.11F, 0.12F));
    EXPECT_EQ(theme().textOnSolidPrimary(), QColor(Qt::white));
    EXPECT_EQ(theme().card(), QColor::fromRgbF(0, 0, 0, 0.045F));
    EXPECT_EQ(theme().hairline(), QColor::fromRgbF(0, 0, 0, 0.07F));
    EXPECT_EQ(theme().selectedSegment(), QColor(Qt::white));
    EXPECT_EQ(theme().surface(), QColor::fromRgbF(0.985F, 0.985F, 0.985F));
    EXPECT_EQ(theme().backdrop(), QColor::fromRgbF(1, 1, 1, 0.88F));
    EXPECT_EQ(theme().segmentShadow(), QColor::fromRgbF(0, 0, 0, 0.12F));
}

TEST_F(ThemeTest, DarkPaletteIsWhiteInkOnNearlyBlack) {
    appearance.setDark(true);
    EXPECT_EQ(theme().solidPrimary(), QColor(Qt::white));
    EXPECT_EQ(theme().textOnSolidPrimary(), QColor::fromRgbF(0.06F, 0.06F, 0.07F));
    EXPECT_EQ(theme().card(), QColor::fromRgbF(1, 1, 1, 0.08F));
    EXPECT_EQ(theme().hairline(), QColor::fromRgbF(1, 1, 1, 0.07F));
    EXPECT_EQ(theme().selectedSegment(), QColor::fromRgbF(1, 1, 1, 0.16F));
    EXPECT_EQ(theme().surface(), QColor::fromRgbF(0.05F, 0.05F, 0.055F));
    EXPECT_EQ(theme().backdrop(), QColor::fromRgbF(0, 0, 0, 0.75F));
    EXPECT_EQ(theme().segmentShadow().alpha(), 0);
}

TEST_F(ThemeTest, ChangedAppearanceChangesAllColorsAtOnce) {
    QQuickItem* const item = show(R"(Rectangle {
        width: 60; height: 60; color: Theme.solidPrimary
        property color text: Theme.textOnSolidPrimary
        property color shade: Theme.ink(0.5)
        Rectangle { width: 20; height: 20; color: Theme.surface }
    })");
    const QImage light = window.grabWindow();
    settings.appearance.set(AppearanceMode::dark);
    EXPECT_EQ(item->property("text").value<QColor>(), QColor::fromRgbF(0.06F, 0.06F, 0.07F));
    EXPECT_NEAR(item->property("shade").value<QColor>().redF(), 1, 0.01);
    EXPECT_NEAR(item->property("shade").value<QColor>().alphaF(), 0.5, 0.01);
    const QImage dark = window.grabWindow();
    EXPECT_NEAR(light.pixelColor(80, 100).lightness(), 29, 1);
    EXPECT_EQ(dark.pixelColor(80, 100).lightness(), 255);
    EXPECT_EQ(light.pixelColor(45, 65).lightness(), 251);
    EXPECT_NEAR(dark.pixelColor(45, 65).lightness(), 13, 1);
}

TEST_F(ThemeTest, ThemeOutlivesTheLook) {
    appearance.setDark(true);
    {
        Look other(settings, appearance);
        theme().setLook(&other);
        EXPECT_TRUE(theme().dark());
    }
    EXPECT_FALSE(theme().dark()) << "light, as without a look";
    EXPECT_EQ(theme().surface(), Palette::of({}).surface);
}

TEST_F(ThemeTest, TellsOfAChangeOnce) {
    const QSignalSpy changes(&theme(), &ThemeValues::changed);
    appearance.setDark(true);
    EXPECT_EQ(changes.count(), 1);
    settings.focusMinutes.set(40);
    EXPECT_EQ(changes.count(), 1);
}

// Glass

struct GlassRow {
    Look::Glass level;
    CapsuleUse use;
    bool isDark;
    std::optional<GlassMaterial> material;
};

using Kind = GlassMaterial::Kind;

const GlassRow glassRows[] = {
    {Look::Flat, CapsuleUse::passive, false, std::nullopt},
    {Look::Flat, CapsuleUse::interactive, true, std::nullopt},
    {Look::Clear, CapsuleUse::passive, false, GlassMaterial{Kind::clear, 0, false}},
    {Look::Clear, CapsuleUse::interactive, true, GlassMaterial{Kind::clear, 0, false}},
    {Look::Regular, CapsuleUse::passive, true, GlassMaterial{Kind::regular, 0, false}},
    {Look::Regular, CapsuleUse::interactive, false, GlassMaterial{Kind::regular, 0, true}},
    {Look::Tinted, CapsuleUse::passive, true, GlassMaterial{Kind::regular, 0.2, false}},
    {Look::Tinted, CapsuleUse::interactive, true, GlassMaterial{Kind::regular, 0.2, true}},
    {Look::Tinted, CapsuleUse::passive, false, GlassMaterial{Kind::regular, 0.45, false}},
    {Look::Tinted, CapsuleUse::interactive, false, GlassMaterial{Kind::regular, 0.45, true}},
};

TEST(Glass, MaterialFollowsTheTable) {
    for (const GlassRow& row : glassRows) {
        EXPECT_EQ(glassMaterial(row.level, row.use, {.isDark = row.isDark}), row.material)
            << row.level << (row.isDark ? " dark" : " light");
    }
}

TEST(Glass, StrongContrastTakesTheGlassAway) {
    for (const Look::Glass level : levels)
        EXPECT_EQ(glassMaterial(level, CapsuleUse::interactive, {.isHighContrast = true}), std::nullopt);
}

TEST(Glass, FlatCapsuleIsACardThatDarkensWhenPressed) {
    const auto fill = [](CapsuleState state, bool isDark) {
        const CapsuleColors colors =
            capsuleColors(Look::Flat, CapsuleUse::interactive, state, {.isDark = isDark});
        EXPECT_EQ(colors.top, colors.bottom);
        EXPECT_EQ(colors.edgeTop, Palette::of({.isDark = isDark}).hairline);
        return colors.top;
    };
    EXPECT_EQ(fill(CapsuleState::resting, false), QColor::fromRgbF(0, 0, 0, 0.045F));
    EXPECT_EQ(fill(CapsuleState::pressed, false), QColor::fromRgbF(0, 0, 0, 0.09F));
    EXPECT_EQ(fill(CapsuleState::resting, true), QColor::fromRgbF(1, 1, 1, 0.08F));
    EXPECT_EQ(fill(CapsuleState::pressed, true), QColor::fromRgbF(1, 1, 1, 0.14F));
}

TEST(Glass, EachLevelCoversMoreOfTheGround) {
    for (const bool isDark : {false, true}) {
        const auto covers = [&](Look::Glass level) {
            const CapsuleColors colors =
                capsuleColors(level, CapsuleUse::passive, CapsuleState::resting, {.isDark = isDark});
            return colors.top.alphaF() + colors.bottom.alphaF();
        };
        EXPECT_LT(covers(Look::Clear) + 0.05F, covers(Look::Regular));
        EXPECT_LT(covers(Look::Regular) + 0.2F, covers(Look::Tinted));
    }
}

TEST(Glass, TintIsWhiteOverTheRegularGlass) {
    for (const bool isDark : {false, true}) {
        const Palette::Scheme scheme{.isDark = isDark};
        const QColor ground = Palette::of(scheme).surface;
        const auto look = [&](Look::Glass level) {
            return on(ground,
                      capsuleColors(level, CapsuleUse::passive, CapsuleState::resting, scheme).bottom);
        };
        const QColor expected = on(look(Look::Regular), QColor::fromRgbF(1, 1, 1, isDark ? 0.2F : 0.45F));
        EXPECT_NEAR(look(Look::Tinted).lightnessF(), expected.lightnessF(), 0.005);
        EXPECT_NE(look(Look::Tinted).lightness(), look(Look::Regular).lightness());
    }
}

TEST(Ink, FadesByAPartOfItsOwnOpacity) {
    EXPECT_EQ(faded(QColor::fromRgbF(1, 0, 0, 0.5F), 0.5), QColor::fromRgbF(1, 0, 0, 0.25F));
    EXPECT_EQ(faded(Qt::red, 1), QColor(Qt::red));
}

TEST(Ink, LiftMovesTheFaintestMostAndTheFullNotAtAll) {
    EXPECT_EQ(lifted(0.15, 0), 0.15);
    EXPECT_EQ(lifted(0, 0.4), 0.4);
    EXPECT_DOUBLE_EQ(lifted(0.5, 0.4), 0.7);
    EXPECT_EQ(lifted(1, 0.4), 1);
}

TEST(Ink, BlendsBetweenTwoColorsAndNoFurther) {
    const QColor from = QColor::fromRgbF(0, 0.5F, 1, 1);
    const QColor to = QColor::fromRgbF(1, 0.5F, 0, 0);
    const QColor half = blended(from, to, 0.5);
    EXPECT_NEAR(half.redF(), 0.5, 0.001);
    EXPECT_NEAR(half.greenF(), 0.5, 0.001);
    EXPECT_NEAR(half.blueF(), 0.5, 0.001);
    EXPECT_NEAR(half.alphaF(), 0.5, 0.001);
    EXPECT_EQ(blended(from, to, -0.2), from);
    EXPECT_EQ(blended(from, to, 1.2), to);
}

TEST(Glass, OnlyInteractiveGlassAnswersToThePointer) {
    const auto answers = [](Look::Glass level, CapsuleUse use) {
        return capsuleColors(level, use, CapsuleState::pressed, {}) !=
                   capsuleColors(level, use, CapsuleState::resting, {}) &&
               capsuleColors(level, use, CapsuleState::hovered, {}) !=
                   capsuleColors(level, use, CapsuleState::resting, {});
    };
    EXPECT_TRUE(answers(Look::Regular, CapsuleUse::interactive));
    EXPECT_TRUE(answers(Look::Tinted, CapsuleUse::interactive));
    EXPECT_FALSE(answers(Look::Regular, CapsuleUse::passive));
    EXPECT_FALSE(answers(Look::Tinted, CapsuleUse::passive));
    EXPECT_FALSE(answers(Look::Clear, CapsuleUse::interactive));
}

TEST(Glass, LightGlassHasAHairlineForAnEdge) {
    for (const Look::Glass level : levels) {
        const CapsuleColors colors =
            capsuleColors(level, CapsuleUse::passive, CapsuleState::resting, {.isDark = false});
        EXPECT_EQ(colors.edgeTop, QColor::fromRgbF(0, 0, 0, 0.07F)) << level;
        EXPECT_EQ(colors.edgeBottom, colors.edgeTop) << level;
    }
}

} // namespace
} // namespace selvane
