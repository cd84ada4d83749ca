#include "Selvane/Platform/Linux/StatusNotifierItem.h"

#include "FakeNotifierPanel.h"
#include "KnownHost.h"
#include "PlainImage.h"
#include "Selvane/Platform/Linux/ActivationToken.h"
#include "Support/EnvironmentVariable.h"
#include "Support/PlainTitles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string_view>
#include <utility>
#include <vector>

namespace selvane::test {
namespace {

using testing::ElementsAre;
using Company = ItemLook::Company;

class StatusNotifierItemTest : public testing::Test {
protected:
    void SetUp() override {
        _item->onMenuEntry = [this](int id) { _chosen.push_back(id); };
        _item->setShown(true);
        _panel.appear();
        ASSERT_TRUE(waitUntil([&] { return _panel.registered.size() == 1; }));
    }

    void setImage(std::shared_ptr<const TemplateImage> image, Ink ink) {
        _look.image = std::move(image);
        _look.ink = ink;
        _item->setLook(_look);
    }
    void setLabel(const std::string& label, Company company) {
        _look.title = label;
        _look.company = company;
        _item->setLook(_look);
    }

    /// Everything that the item sent before has arrived when this returns.
    void flush() { _panel.hearAll(_itemBus); }

    PrivateBus _bus;
    PlainTitles _titles{0xff000000, 0xffffffff};
    FakeNotifierPanel _panel{_bus.connect()};
    QDBusConnection _itemBus = _bus.connect();
    std::unique_ptr<StatusNotifierItem> _item = std::make_unique<StatusNotifierItem>(_itemBus, _titles);
    ItemLook _look;
    std::vector<int> _chosen;
};

TEST_F(StatusNotifierItemTest, RegistersUnderAName) {
    EXPECT_EQ(_panel.registered.front(), _item->serviceName());
    EXPECT_EQ(_item->serviceName(),
              QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid()));
}

TEST_F(StatusNotifierItemTest, SaysWhatItIs) {
    const std::map<const char*, QVariant> properties{
        {"Category", QStringLiteral("ApplicationStatus")},
        {"Id", QStringLiteral("selvane")},
        {"Title", QStringLiteral("Selvane")},
        {"Status", QStringLiteral("Active")},
        {"IconName", QString()},
        {"IconThemePath", QString()},
        {"ItemIsMenu", false},
        {"XAyatanaLabel", QString()},
        {"XAyatanaLabelGuide", QString()},
        {"IconAccessibleDesc", QString()},
        {"AttentionAccessibleDesc", QString()},
    };
    for (const auto& [name, value] : properties)
        EXPECT_EQ(_panel.property(name), value) << name;
}

TEST_F(StatusNotifierItemTest, ScreenReadersAreToldTheWords) {
    _item->setAccessibleDescription("Selvane, Focus, 24:13 remaining");
    for (const char* const name : {"IconAccessibleDesc", "AttentionAccessibleDesc"})
        EXPECT_EQ(_panel.property(name), QStringLiteral("Selvane, Focus, 24:13 remaining")) << name;
}

TEST_F(StatusNotifierItemTest, PicturesAreInNetworkByteOrder) {
    const auto image = std::make_shared<PlainImage>(0x40102030, 0x80ffeedd);
    setImage(image, Ink::dark);
    EXPECT_EQ(image->drawings, 0);
    const auto pixmaps = qdbus_cast<NotifierPixmapList>(_panel.property("IconPixmap"));
    EXPECT_EQ(image->drawings, pixmaps.size());
    std::vector<int> sides;
    for (const NotifierPixmap& pixmap : pixmaps) {
        sides.push_back(pixmap.width);
        EXPECT_EQ(pixmap.width, pixmap.height);
        ASSERT_EQ(pixmap.bytes.size(), pixmap.width * pixmap.height * 4);
        EXPECT_EQ(pixmap.bytes.first(4), QByteArray("\x40\x10\x20\x30"));
        EXPECT_EQ(pixmap.bytes.last(4), QByteArray("\x40\x10\x20\x30"));
    }
    EXPECT_THAT(sides, ElementsAre(16, 22, 24, 32, 48, 64));
    setImage(image, Ink::light);
    EXPECT_EQ(qdbus_cast<NotifierPixmapList>(_panel.property("IconPixmap")).front().bytes.first(4),
              QByteArray("\x80\xff\xee\xdd"));
}

TEST_F(StatusNotifierItemTest, AsksForAttentionWithTheSamePicture) {
    const auto image = std::make_shared<PlainImage>(0x40102030, 0x80ffeedd);
    setImage(image, Ink::dark);
    _item->setNeedsAttention(true);
    ASSERT_TRUE(waitUntil([&] { return _panel.count("NewStatus") == 1; }));
    EXPECT_EQ(_panel.lastArguments, QVariantList{QStringLiteral("NeedsAttention")});
    EXPECT_EQ(_panel.property("Status"), QStringLiteral("NeedsAttention"));
    EXPECT_EQ(_panel.count("NewAttentionIcon"), 1);
    const auto pixmaps = qdbus_cast<NotifierPixmapList>(_panel.property("AttentionIconPixmap"));
    const auto usual = qdbus_cast<NotifierPixmapList>(_panel.property("IconPixmap"));
    ASSERT_EQ(pixmaps.size(), usual.size());
    EXPECT_EQ(pixmaps.front().bytes, usual.front().bytes);

    setImage(image, Ink::light);
    ASSERT_TRUE(waitUntil([&] { return _panel.count("NewAttentionIcon") == 2; }));

    _item->setNeedsAttention(false);
    ASSERT_TRUE(waitUntil([&] { return _panel.count("NewStatus") == 2; }));
    EXPECT_EQ(_panel.lastArguments, QVariantList{QStringLiteral("Active")});
    EXPECT_EQ(_panel.property("Status"), QStringLiteral("Active"));
    image->drawings = 0;
    EXPECT_TRUE(qdbus_cast<NotifierPixmapList>(_panel.property("AttentionIconPixmap")).empty());
    EXPECT_EQ(image->drawings, 0) << "panels read it with each picture";
}

TEST_F(StatusNotifierItemTest, AttentionThatIsAskedForTwiceIsToldOnce) {
    _item->setNeedsAttention(true);
    _item->setNeedsAttention(true);
    flush();
    EXPECT_EQ(_panel.count("NewStatus"), 1);
    _item->setShown(false);
    _item->setNeedsAttention(false);
    flush();
    EXPECT_EQ(_panel.count("NewStatus"), 1) << "nobody is there to hear it";
}

TEST_F(StatusNotifierItemTest, AnEqualValueIsNotToldAgain) {
    const auto image = std::make_shared<PlainImage>(0xff000000, 0xffffffff);
    const std::vector<StatusMenuEntry> menu{{1, "Open", true}};
    _panel.setShowsLabels(true);
    ASSERT_TRUE(waitUntil([&] { return _panel.count("XAyatanaNewLabel") == 1; }));
    for (int round = 0; round < 3; ++round) {
        setImage(image, Ink::dark);
        setLabel("24:59", Company::image);
        _item->setToolTip("Focus");
        _item->setMenu(menu);
    }
    flush();
    EXPECT_EQ(_panel.count("NewIcon"), 1);
    EXPECT_EQ(_panel.count("NewToolTip"), 1);
    EXPECT_EQ(_panel.count("LayoutUpdated"), 1);
    EXPECT_EQ(_panel.count("XAyatanaNewLabel"), 2);
    setImage(image, Ink::light);
    flush();
    EXPECT_EQ(_panel.count("NewIcon"), 2);
}

TEST_F(StatusNotifierItemTest, AnImageLikeTheOneThatWasToldIsReadButNotTold) {
    const auto first = std::make_shared<PlainImage>(0xff000001, 0);
    const auto second = std::make_shared<PlainImage>(0xff000002, 0);
    const auto third = std::make_shared<PlainImage>(0xff000003, 0);
    second->like = first.get();
    third->like = second.get();
    setImage(first, Ink::dark);
    setImage(second, Ink::dark);
    flush();
    EXPECT_EQ(_panel.count("NewIcon"), 1);
    EXPECT_EQ(qdbus_cast<NotifierPixmapList>(_panel.property("IconPixmap")).value(0).bytes.first(4),
              QByteArray("\xff\0\0\2", 4));
    setImage(third, Ink::dark);
    flush();
    EXPECT_EQ(_panel.count("NewIcon"), 2) << "it is like one that was not told";
    setImage(second, Ink::light);
    flush();
    EXPECT_EQ(_panel.count("NewIcon"), 3) << "another ink is seen";
}

TEST_F(StatusNotifierItemTest, AnItemThatIsShownAgainTellsWhatDiffersFromItsImageThen) {
    const auto first = std::make_shared<PlainImage>(0xff000001, 0);
    const auto second = std::make_shared<PlainImage>(0xff000002, 0);
    const auto third = std::make_shared<PlainImage>(0xff000003, 0);
    third->like = first.get();
    setImage(first, Ink::dark);
    flush();
    _item->setShown(false);
    setImage(second, Ink::dark);
    _item->setShown(true);
    ASSERT_TRUE(waitUntil([&] { return _panel.registered.size() == 2; }));
    flush();
    ASSERT_EQ(_panel.count("NewIcon"), 1);
    setImage(third, Ink::dark);
    flush();
    EXPECT_EQ(_panel.count("NewIcon"), 2);
}

TEST_F(StatusNotifierItemTest, PanelsThatMakePicturesSquareGetNoWords) {
    setImage(std::make_shared<PlainImage>(0xff000000, 0xffffffff), Ink::dark);
    setLabel("24:59", Company::image);
    setLabel("24:58", Company::image);
    flush();
    EXPECT_EQ(_panel.count("NewIcon"), 1);
    for (const NotifierPixmap& pixmap : qdbus_cast<NotifierPixmapList>(_panel.property("IconPixmap")))
        EXPECT_EQ(pixmap.width, pixmap.height);
}

TEST_F(StatusNotifierItemTest, APanelThatKeepsTheirShapeGetsTheWordsInThePicture) {
    const KnownHost waybar(_bus.connect(), "waybar");
    setImage(std::make_shared<PlainImage>(0xff112233, 0), Ink::dark);
    setLabel("24:59", Company::image);
    ASSERT_TRUE(waitUntil([&] { return _panel.count("NewIcon") == 2; })) << "once it is known";
    auto pixmaps = qdbus_cast<NotifierPixmapList>(_panel.property("IconPixmap"));
    ASSERT_EQ(pixmaps.size(), 1);
    EXPECT_EQ(pixmaps[0].height, 48);
    EXPECT_EQ(pixmaps[0].width, 48 + 6 * 24);
    EXPECT_EQ(pixmaps[0].bytes.size(), pixmaps[0].width * pixmaps[0].height * 4);
    EXPECT_EQ(_titles.drawn, " 24:59");

    setLabel("24:58", Company::nothing);
    ASSERT_TRUE(waitUntil([&] { return _panel.count("NewIcon") == 3; })) << "each change is told";
    pixmaps = qdbus_cast<NotifierPixmapList>(_panel.property("IconPixmap"));
    EXPECT_EQ(pixmaps.value(0).width, 5 * 24);

    setLabel("", Company::image);
    ASSERT_TRUE(waitUntil([&] { return _panel.count("NewIcon") == 4; }));
    EXPECT_EQ(qdbus_cast<NotifierPixmapList>(_panel.property("IconPixmap")).size(), 6);
}

TEST_F(StatusNotifierItemTest, AnImageAndWordsThatChangeTogetherAreToldOnce) {
    const KnownHost waybar(_bus.connect(), "waybar");
    const auto image = std::make_shared<PlainImage>(0xff112233, 0);
    _item->setLook({image, Ink::dark, "25:00", Company::image});
    ASSERT_TRUE(waitUntil([&] { return _panel.count("NewIcon") == 2; })) << "again once it is known";
    _item->setLook({std::make_shared<PlainImage>(0xff445566, 0), Ink::dark, "24:59", Company::image});
    flush();
    EXPECT_EQ(_panel.count("NewIcon"), 3);
    EXPECT_EQ(qdbus_cast<NotifierPixmapList>(_panel.property("IconPixmap")).value(0).bytes.first(4),
              QByteArray("\xff\x44\x55\x66"));
    EXPECT_EQ(_titles.drawn, " 24:59");
}

TEST_F(StatusNotifierItemTest, TheTooltipIsToldAgainOnceItWasRead) {
    _item->setToolTip("one");
    _item->setToolTip("two");
    flush();
    EXPECT_EQ(_panel.count("NewToolTip"), 1);
    EXPECT_EQ(qdbus_cast<NotifierToolTip>(_panel.property("ToolTip")).title, QStringLiteral("two"));
    _item->setToolTip("three");
    flush();
    EXPECT_EQ(_panel.count("NewToolTip"), 2);
    EXPECT_EQ(qdbus_cast<NotifierToolTip>(_panel.property("ToolTip")).title, QStringLiteral("three"));
}

TEST_F(StatusNotifierItemTest, APanelThatLostAMessageHearsOfTheTooltipLater) {
    for (int change = 0; change < 61; ++change)
        _item->setToolTip(std::to_string(change));
    flush();
    EXPECT_EQ(_panel.count("NewToolTip"), 3);
}

TEST_F(StatusNotifierItemTest, TheLabelComesWithAGuide) {
    setLabel("04:59", Company::image);
    EXPECT_EQ(_panel.property("XAyatanaLabel"), QStringLiteral("04:59"));
    EXPECT_EQ(_panel.property("XAyatanaLabelGuide"), QStringLiteral("00:00"));
    setLabel("", Company::image);
    EXPECT_EQ(_panel.property("XAyatanaLabel"), QString());
    EXPECT_EQ(_panel.property("XAyatanaLabelGuide"), QString());
}

TEST_F(StatusNotifierItemTest, APanelThatShowsLabelsHearsOfEachChange) {
    setLabel("04:59", Company::image);
    _panel.setShowsLabels(true);
    ASSERT_TRUE(waitUntil([&] { return _panel.count("XAyatanaNewLabel") == 1; }));
    EXPECT_EQ(_panel.lastArguments, (QVariantList{QStringLiteral("04:59"), QStringLiteral("00:00")}));
    setLabel("04:58", Company::image);
    ASSERT_TRUE(waitUntil([&] { return _panel.count("XAyatanaNewLabel") == 2; }));
    EXPECT_EQ(_panel.lastArguments, (QVariantList{QStringLiteral("04:58"), QStringLiteral("00:00")}));
    setLabel("", Company::image);
    ASSERT_TRUE(waitUntil([&] { return _panel.count("XAyatanaNewLabel") == 3; }));
    EXPECT_EQ(_panel.lastArguments, (QVariantList{QString(), QString()}));
}

TEST_F(StatusNotifierItemTest, APanelThatShowsNoLabelsIsLeftAloneWithThem) {
    setLabel("04:59", Company::image);
    setLabel("04:58", Company::image);
    flush();
    EXPECT_EQ(_panel.count("XAyatanaNewLabel"), 0);
    EXPECT_EQ(_panel.property("XAyatanaLabel"), QStringLiteral("04:58"));

    _panel.setShowsLabels(true);
    ASSERT_TRUE(waitUntil([&] { return _panel.count("XAyatanaNewLabel") == 1; }));
    _panel.setShowsLabels(false);
    ASSERT_TRUE(waitUntil([&] {
        const auto before = _panel.count("XAyatanaNewLabel");
        setLabel("another", Company::image);
        setLabel("04:57", Company::image);
        flush();
        return _panel.count("XAyatanaNewLabel") == before;
    }));
    EXPECT_EQ(_panel.property("XAyatanaLabel"), QStringLiteral("04:57"));
}

TEST_F(StatusNotifierItemTest, TheServiceBehindIndicatorsShowsLabels) {
    QDBusConnection service = _bus.connect();
    service.registerService(QStringLiteral("org.ayatana.indicator.application"));
    EXPECT_TRUE(waitUntil([&] { return _panel.count("XAyatanaNewLabel") == 1; }));
}

TEST_F(StatusNotifierItemTest, ClicksArrive) {
    std::vector<ScreenPoint> activations;
    int secondary = 0;
    _item->onActivate = [&](ScreenPoint point) { activations.push_back(point); };
    _item->onSecondaryActivate = [&] { ++secondary; };
    _panel.tell("Activate", {10, 20});
    _panel.tell("SecondaryActivate", {1, 1});
    _panel.tell("ContextMenu", {30, 40});
    EXPECT_EQ(_panel.tell("Scroll", {120, QStringLiteral("vertical")}).type(), QDBusMessage::ReplyMessage);
    EXPECT_THAT(activations, ElementsAre(ScreenPoint{10, 20}, ScreenPoint{30, 40}));
    EXPECT_EQ(secondary, 1);
}

/// Something that the user does to an item.
struct Deed {
    const char* name;
    const char* method;
    QVariantList arguments;
};

void PrintTo(const Deed& deed, std::ostream* stream) {
    *stream << deed.name;
}

class StatusNotifierTokenTest : public StatusNotifierItemTest, public testing::WithParamInterface<Deed> {
protected:
    EnvironmentVariable _before{ActivationToken::variable, std::nullopt};
};

TEST_P(StatusNotifierTokenTest, ATokenDoesNotOutliveItsClick) {
    std::vector<QByteArray> seen;
    const auto see = [&] { seen.push_back(qgetenv(ActivationToken::variable)); };
    _item->setMenu({{1, "Open", true}});
    _item->onActivate = [&](ScreenPoint) { see(); };
    _item->onSecondaryActivate = see;
    _item->onMenuEntry = [&](int) { see(); };
    const auto act = [&] {
        const Deed& deed = GetParam();
        const bool isOfMenu = std::string_view(deed.method) == "Event";
        const QDBusMessage reply = isOfMenu ? _panel.tellMenu(deed.method, deed.arguments)
                                            : _panel.tell(deed.method, deed.arguments);
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    };
    _panel.tell("ProvideXdgActivationToken", {QStringLiteral("one")});
    act();
    EXPECT_FALSE(qEnvironmentVariableIsSet(ActivationToken::variable));
    act();
    EXPECT_THAT(seen, ElementsAre("one", QByteArray()));
}

INSTANTIATE_TEST_SUITE_P(
    All, StatusNotifierTokenTest,
    testing::Values(
        Deed{"Activate", "Activate", {10, 20}}, Deed{"SecondaryActivate", "SecondaryActivate", {10, 20}},
        Deed{"ContextMenu", "ContextMenu", {10, 20}},
        Deed{"MenuEntry", "Event", {1, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U}}),
    [](const auto& test) { return test.param.name; });

TEST_F(StatusNotifierItemTest, RegistersWithEveryWatcherThatAppears) {
    _panel.vanish();
    ASSERT_TRUE(waitUntil([&] { return _item->watcher() == StatusNotifierItem::Watcher::absent; }));
    _panel.appear();
    EXPECT_TRUE(waitUntil([&] { return _panel.registered.size() == 1; }));

    // Another process may take over without a gap.
    FakeNotifierPanel successor(_bus.connect());
    _panel.vanish();
    successor.appear();
    EXPECT_TRUE(waitUntil([&] { return successor.registered.size() == 1; }));
    EXPECT_EQ(successor.property("Id"), QStringLiteral("selvane"));
}

TEST_F(StatusNotifierItemTest, LeavesTheBusWhenItIsNotShown) {
    const auto hasName = [this] { return hasOwner(_bus.connect(), _item->serviceName()); };
    EXPECT_TRUE(hasName());
    _item->setShown(false);
    EXPECT_TRUE(waitUntil([&] { return !hasName(); }));
    EXPECT_EQ(_panel.tell("Activate", {1, 1}).type(), QDBusMessage::ErrorMessage);
    _item->setShown(true);
    EXPECT_TRUE(waitUntil([&] { return _panel.registered.size() == 2; }));
    EXPECT_EQ(_panel.property("Id"), QStringLiteral("selvane"));
}

TEST_F(StatusNotifierItemTest, KnowsWhetherAPanelListens) {
    using Watcher = StatusNotifierItem::Watcher;
    ASSERT_TRUE(waitUntil([&] { return _item->watcher() == Watcher::withHost; }));
    _panel.setHosted(false);
    ASSERT_TRUE(waitUntil([&] { return _item->watcher() == Watcher::withoutHost; }));
    _panel.setHosted(true);
    ASSERT_TRUE(waitUntil([&] { return _item->watcher() == Watcher::withHost; }));
}

TEST(StatusNotifierItemWithoutBus, IsNowhere) {
    const PlainTitles titles{0, 0};
    StatusNotifierItem item(QDBusConnection(QStringLiteral("there is no such connection")), titles);
    item.setShown(true);
    item.setToolTip("words");
    EXPECT_EQ(item.watcher(), StatusNotifierItem::Watcher::absent);
}

// The menu

class StatusNotifierMenuTest : public StatusNotifierItemTest {
protected:
    void SetUp() override {
        StatusNotifierItemTest::SetUp();
        _item->setMenu({{1, "Start_now", true}, {2, "", true}, {7, "Skip", false}});
    }

    struct Layout {
        uint revision;
        DBusMenuLayoutItem root;
    };
    Layout layout(int parent = 0, int depth = -1, const QStringList& names = {}) {
        const QDBusMessage reply = _panel.tellMenu("GetLayout", {parent, depth, names});
        return {reply.arguments().value(0).toUInt(),
                qdbus_cast<DBusMenuLayoutItem>(reply.arguments().value(1).value<QDBusArgument>())};
    }
    static DBusMenuEvent clicked(int id) { return {id, QStringLiteral("clicked"), QDBusVariant(0), 0}; }
};

TEST_F(StatusNotifierMenuTest, ItsPathIsKnown) {
    EXPECT_EQ(_panel.property("Menu").value<QDBusObjectPath>().path(), QStringLiteral("/MenuBar"));
    _item->setMenu({});
    EXPECT_EQ(_panel.property("Menu").value<QDBusObjectPath>().path(), QStringLiteral("/NO_DBUSMENU"));
    EXPECT_TRUE(waitUntil([&] { return _panel.count("NewMenu") == 2; }));
}

TEST_F(StatusNotifierMenuTest, TheProtocolIsNamed) {
    EXPECT_EQ(_panel.menuProperty("Version"), QVariant(3U));
    EXPECT_EQ(_panel.menuProperty("Status"), QStringLiteral("normal"));
    EXPECT_EQ(_panel.menuProperty("TextDirection"), QStringLiteral("ltr"));
    EXPECT_EQ(_panel.menuProperty("IconThemePath"), QStringList());
}

TEST_F(StatusNotifierMenuTest, TheLayoutHasAllLines) {
    const Layout answer = layout();
    EXPECT_EQ(answer.root.id, 0);
    EXPECT_EQ(answer.root.properties.value(QStringLiteral("children-display")), QStringLiteral("submenu"));
    ASSERT_EQ(answer.root.children.size(), 3);
    const QVariantMap start = answer.root.children[0].properties;
    EXPECT_EQ(answer.root.children[0].id, 1);
    EXPECT_EQ(start.value(QStringLiteral("label")), QStringLiteral("Start__now")) << "one would be a key";
    EXPECT_EQ(start.value(QStringLiteral("enabled")), QVariant(true));
    EXPECT_EQ(answer.root.children[1].id, 2);
    EXPECT_EQ(answer.root.children[1].properties.value(QStringLiteral("type")), QStringLiteral("separator"));
    EXPECT_EQ(answer.root.children[2].id, 7);
    EXPECT_EQ(answer.root.children[2].properties.value(QStringLiteral("enabled")), QVariant(false));
}

TEST_F(StatusNotifierMenuTest, TheLayoutKeepsToWhatWasAsked) {
    EXPECT_TRUE(layout(0, 0).root.children.isEmpty());
    const DBusMenuLayoutItem skip = layout(7).root;
    EXPECT_EQ(skip.id, 7);
    EXPECT_EQ(skip.properties.value(QStringLiteral("label")), QStringLiteral("Skip"));
    const DBusMenuLayoutItem labels = layout(0, 1, {QStringLiteral("label")}).root;
    EXPECT_EQ(labels.children.value(0).properties.keys(), QStringList{QStringLiteral("label")});
    EXPECT_EQ(_panel.tellMenu("GetLayout", {99, -1, QStringList()}).type(), QDBusMessage::ErrorMessage);
}

TEST_F(StatusNotifierMenuTest, PropertiesCanBeAskedForOneByOneAndTogether) {
    EXPECT_EQ(_panel.tellMenu("GetProperty", {7, QStringLiteral("label")})
                  .arguments()
                  .value(0)
                  .value<QDBusVariant>()
                  .variant(),
              QStringLiteral("Skip"));
    EXPECT_EQ(_panel.tellMenu("GetProperty", {99, QStringLiteral("label")}).type(),
              QDBusMessage::ErrorMessage);
    const QDBusMessage reply =
        _panel.tellMenu("GetGroupProperties",
                        {QVariant::fromValue(QList<int>{7, 1, 99}), QStringList{QStringLiteral("label")}});
    const auto items = qdbus_cast<DBusMenuItemList>(reply.arguments().value(0).value<QDBusArgument>());
    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(items[0].id, 1);
    EXPECT_EQ(items[1].id, 7);
}

TEST_F(StatusNotifierMenuTest, AClickChoosesAnEnabledLine) {
    _panel.tellMenu("Event", {1, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U});
    _panel.tellMenu("Event", {1, QStringLiteral("hovered"), QVariant::fromValue(QDBusVariant(0)), 0U});
    _panel.tellMenu("Event", {2, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U});
    _panel.tellMenu("Event", {7, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U});
    EXPECT_EQ(
        _panel.tellMenu("Event", {99, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U})
            .type(),
        QDBusMessage::ErrorMessage);
    EXPECT_THAT(_chosen, ElementsAre(1));
}

TEST_F(StatusNotifierMenuTest, AGroupOfClicksDoesToo) {
    const QDBusMessage reply = _panel.tellMenu(
        "EventGroup", {QVariant::fromValue(DBusMenuEventList{clicked(99), clicked(1), clicked(7)})});
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().value(0)), QList<int>{99});
    EXPECT_THAT(_chosen, ElementsAre(1));
    EXPECT_EQ(_panel.tellMenu("EventGroup", {QVariant::fromValue(DBusMenuEventList{clicked(99)})}).type(),
              QDBusMessage::ErrorMessage);
}

TEST_F(StatusNotifierMenuTest, NothingIsHeldBackUntilItIsShown) {
    EXPECT_EQ(_panel.tellMenu("AboutToShow", {0}).arguments(), QVariantList{false});
    EXPECT_EQ(_panel.tellMenu("AboutToShow", {99}).type(), QDBusMessage::ErrorMessage);
    const QDBusMessage reply =
        _panel.tellMenu("AboutToShowGroup", {QVariant::fromValue(QList<int>{0, 1, 99})});
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().value(0)), QList<int>());
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().value(1)), QList<int>{99});
}

TEST_F(StatusNotifierMenuTest, ChangedWordsAndChangedLinesAreToldApart) {
    const uint revision = layout().revision;
    _item->setMenu({{1, "Pause", true}, {2, "", true}, {7, "Skip", false}});
    ASSERT_TRUE(waitUntil([&] { return _panel.count("ItemsPropertiesUpdated") == 1; }));
    const auto updated = qdbus_cast<DBusMenuItemList>(_panel.lastArguments.value(0).value<QDBusArgument>());
    ASSERT_EQ(updated.size(), 1);
    EXPECT_EQ(updated[0].id, 1);
    EXPECT_EQ(updated[0].properties.value(QStringLiteral("label")), QStringLiteral("Pause"));
    EXPECT_EQ(layout().revision, revision);
    const qsizetype layouts = _panel.count("LayoutUpdated");
    _item->setMenu({{1, "Pause", true}});
    ASSERT_TRUE(waitUntil([&] { return _panel.count("LayoutUpdated") == layouts + 1; }));
    EXPECT_EQ(_panel.lastArguments, (QVariantList{revision + 1, 0}));
    EXPECT_EQ(layout().revision, revision + 1);
}

} // namespace
} // namespace selvane::test
