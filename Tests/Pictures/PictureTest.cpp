#include "PictureComparison.h"
#include "Scenes.h"
#include "Stage.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlListReference>
#include <QQuickItem>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <set>

namespace selvane::test {
namespace {

using std::filesystem::path;

const path keptFolder = SELVANE_KEPT_PICTURES;
const path differingFolder = SELVANE_DIFFERING_PICTURES;

int scaleOfProcess() {
    return std::max(1, qEnvironmentVariableIntValue("QT_SCALE_FACTOR"));
}

QImage load(const path& file) {
    return QImage(QString::fromStdString(file.string()));
}

path save(const QImage& picture, const path& folder, const std::string& name) {
    std::filesystem::create_directories(folder);
    const path file = folder / name;
    EXPECT_TRUE(picture.save(QString::fromStdString(file.string()))) << file;
    return file;
}

/// Those of which a picture is kept at the scale of this process.
std::vector<Scene> scenesOfProcess() {
    std::vector<Scene> wanted = scenes();
    if (scaleOfProcess() != 1)
        std::erase_if(wanted, [](const Scene& scene) { return scene.scales == Scene::Scales::one; });
    return wanted;
}

class PictureTest : public testing::TestWithParam<Scene> {};

/// With the folder that `SELVANE_KEEP_PICTURES` names, the picture is written there instead.
TEST_P(PictureTest, LooksAsKept) {
    const int scale = scaleOfProcess();
    Stage stage;
    play(GetParam(), stage);
    if (HasFatalFailure())
        return;
    const QImage actual = stage.picture();
    ASSERT_EQ(actual.size(), stage.window().size() * scale);
    const std::string name = fileName(GetParam(), scale);

    if (const QByteArray keep = qgetenv("SELVANE_KEEP_PICTURES"); !keep.isEmpty()) {
        save(actual, keep.toStdString(), name);
        return;
    }
    const QImage kept = load(keptFolder / name);
    ASSERT_FALSE(kept.isNull()) << "there is no kept picture of it; it looks as in "
                                << save(actual, differingFolder, name);
    const PictureDifference difference(kept, actual, scale);
    if (!difference.passes()) {
        const std::string stem = path(name).stem().string();
        ADD_FAILURE() << name << ' ' << difference.text()
                      << "\n  now:        " << save(actual, differingFolder, name) << "\n  difference: "
                      << save(difference.picture(), differingFolder, stem + "-difference.png");
    }
}

INSTANTIATE_TEST_SUITE_P(Popover, PictureTest, testing::ValuesIn(scenesOfProcess()), [](const auto& scene) {
    std::string name = scene.param.name;
    std::ranges::replace(name, '-', '_');
    return name;
});

TEST(KeptPicturesTest, EachIsOfAScene) {
    std::set<std::string> wanted;
    for (const Scene& scene : scenes()) {
        wanted.insert(fileName(scene, 1));
        if (scene.scales == Scene::Scales::both)
            wanted.insert(fileName(scene, 2));
    }
    std::set<std::string> found;
    for (const auto& file : std::filesystem::directory_iterator(keptFolder))
        found.insert(file.path().filename().string());
    EXPECT_EQ(found, wanted);
}

/// That a view which is a little off makes its picture differ.
class SpoiledPictureTest : public testing::Test {
protected:
    SpoiledPictureTest() {
        const auto scene = std::ranges::find(scenes(), "ring-running", &Scene::name);
        play(*scene, stage);
        right = stage.picture();
        collectDrawn(stage.window().contentItem());
    }

    /// The items that leave something out of the picture when they are clear.
    void collectDrawn(QQuickItem* item) {
        if (!item->isVisible() || item->opacity() == 0)
            return;
        if (item->flags().testFlag(QQuickItem::ItemHasContents) && item->width() > 0) {
            const double opacity = item->opacity();
            item->setOpacity(0);
            if (stage.picture() != right)
                drawn.push_back(item);
            item->setOpacity(opacity);
        }
        for (QQuickItem* const child : item->childItems())
            collectDrawn(child);
    }

    [[nodiscard]] static std::string describe(const QQuickItem* item) {
        const QPointF place = item->mapToScene({});
        return std::string(item->metaObject()->className()) + " at " +
               std::to_string(std::lround(place.x())) + ", " + std::to_string(std::lround(place.y()));
    }

    /// What moves the item from the place that its anchors or its layout give it.
    std::unique_ptr<QObject> shiftOf(QQuickItem* item) {
        QQmlComponent component(qmlEngine(stage.window().contentItem()));
        component.setData("import QtQuick; Translate {}", {});
        std::unique_ptr<QObject> shift(component.create());
        EXPECT_TRUE(QQmlListReference(item, "transform").append(shift.get()));
        return shift;
    }

    /// Whether the picture differs now.
    [[nodiscard]] bool isSeen() {
        return !PictureDifference(right, stage.picture(), scaleOfProcess()).passes();
    }

    Stage stage;
    QImage right;
    std::vector<QQuickItem*> drawn;
};

TEST_F(SpoiledPictureTest, AnythingThatMovedByAPixelIsSeen) {
    ASSERT_GE(drawn.size(), 40U);
    for (QQuickItem* const item : drawn) {
        const auto shift = shiftOf(item);
        for (const char* const axis : {"x", "y"}) {
            shift->setProperty(axis, 1);
            EXPECT_TRUE(isSeen()) << axis << " of " << describe(item);
            shift->setProperty(axis, 0);
        }
    }
    EXPECT_FALSE(isSeen()) << "all is back in its place";
}

TEST_F(SpoiledPictureTest, AnyTextThatFadedByATenthIsSeen) {
    int count = 0;
    for (QQuickItem* const item : drawn) {
        if (!item->inherits("QQuickText"))
            continue;
        ++count;
        const double opacity = item->opacity();
        item->setOpacity(opacity * 0.9);
        EXPECT_TRUE(isSeen()) << describe(item);
        item->setOpacity(opacity);
    }
    EXPECT_GE(count, 10);
    EXPECT_FALSE(isSeen()) << "all is as it was";
}

} // namespace
} // namespace selvane::test
