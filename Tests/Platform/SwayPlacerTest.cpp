#include "Selvane/Platform/Linux/SwayPlacer.h"

#include "Support/EventLoop.h"

#include <QtCore/QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace selvane::test {
namespace {

using testing::ElementsAre;

constexpr std::uint32_t runCommand = 0;
constexpr std::uint32_t getWorkspaces = 1;
constexpr std::uint32_t subscribe = 2;
constexpr std::uint32_t getOutputs = 3;
constexpr std::uint32_t getTree = 4;
constexpr std::uint32_t windowEvent = 0x80000003;

/// The socket of a compositor that answers what a test tells it.
class FakeSway {
public:
    FakeSway() {
        _listening = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path().c_str(), sizeof(address.sun_path) - 1);
        if (bind(_listening, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
            listen(_listening, 4) != 0)
            ADD_FAILURE() << "no socket";
    }
    ~FakeSway() { end(); }
    FakeSway(const FakeSway&) = delete;
    FakeSway& operator=(const FakeSway&) = delete;

    [[nodiscard]] std::string path() const {
        return _folder.filePath(QStringLiteral("sway.sock")).toStdString();
    }

    using Message = std::pair<std::uint32_t, std::string>;

    /// Everything that was asked up to now.
    const std::vector<Message>& asked() {
        if (_client < 0)
            _client = accept4(_listening, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        std::array<char, 1024> buffer;
        for (ssize_t count = 0; _client >= 0 && (count = read(_client, buffer.data(), buffer.size())) >= 0;) {
            if (count == 0) {
                isLeft = true;
                break;
            }
            _received.append(buffer.data(), static_cast<std::size_t>(count));
        }
        while (_received.size() >= 14) {
            std::array<std::uint32_t, 2> head{};
            std::memcpy(head.data(), _received.data() + 6, sizeof(head));
            if (_received.size() < 14 + head[0])
                break;
            EXPECT_TRUE(_received.starts_with("i3-ipc"));
            _asked.emplace_back(head[1], _received.substr(14, head[0]));
            _received.erase(0, 14 + head[0]);
        }
        return _asked;
    }

    [[nodiscard]] std::vector<std::string> commands() {
        std::vector<std::string> commands;
        for (const auto& [kind, payload] : asked()) {
            if (kind == runCommand)
                commands.push_back(payload);
        }
        return commands;
    }

    /// In pieces, as a stream may bring it.
    void tell(std::uint32_t kind, const std::string& payload) const {
        std::string message = "i3-ipc";
        for (const std::uint32_t number : {static_cast<std::uint32_t>(payload.size()), kind})
            message.append(reinterpret_cast<const char*>(&number), sizeof(number));
        message += payload;
        for (std::size_t at = 0; at < message.size(); at += 10) {
            const std::string piece = message.substr(at, 10);
            ASSERT_EQ(write(_client, piece.data(), piece.size()), static_cast<ssize_t>(piece.size()));
            QCoreApplication::processEvents();
        }
    }

    void tellScreens() const {
        tell(getWorkspaces,
             R"([{"name":"1","rect":{"x":0,"y":0,"width":640,"height":480},"focused":false},)"
             R"({"name":"2","rect":{"x":640,"y":28,"width":1280,"height":772},"focused":true}])");
        tell(getOutputs, R"([{"name":"A","rect":{"x":0,"y":0,"width":640,"height":480},"focused":false},)"
                         R"({"name":"B","rect":{"x":640,"y":0,"width":1280,"height":800},"focused":true}])");
    }

    void tellWindow(const char* change, int id, const char* name, int process) const {
        tell(windowEvent, std::string(R"({"change":")") + change + R"(","container":{"id":)" +
                              std::to_string(id) + R"(,"name":")" + name + R"(","pid":)" +
                              std::to_string(process) + "}}");
    }

    void hangUp() {
        if (_client >= 0)
            close(std::exchange(_client, -1));
    }

    void end() {
        hangUp();
        if (_listening >= 0)
            close(std::exchange(_listening, -1));
    }

    /// What was asked up to now, and by whom.
    void forget() {
        hangUp();
        isLeft = false;
        _received.clear();
        _asked.clear();
    }

    bool isLeft = false;

private:
    QTemporaryDir _folder;
    int _listening = -1;
    int _client = -1;
    std::string _received;
    std::vector<Message> _asked;
};

class SwayPlacerTest : public testing::Test {
protected:
    std::unique_ptr<WindowPlacer::Placement> place() {
        return _placer.placeNext("Selvane", [this](const WindowPlacer::Screen& screen) {
            _screen = screen;
            return _corner;
        });
    }

    FakeSway _sway;
    SwayPlacer _placer{_sway.path(), 42};
    std::optional<WindowPlacer::Screen> _screen;
    ScreenPoint _corner{1234, -5};
};

const auto theCommand = "[con_id=7] floating enable, move absolute position 1234 px -5 px";

TEST_F(SwayPlacerTest, WindowThatAppearsIsMoved) {
    const auto placing = place();
    ASSERT_TRUE(waitUntil([&] { return _sway.asked().size() == 3; }));
    EXPECT_THAT(_sway.asked(),
                ElementsAre(FakeSway::Message{subscribe, R"(["window"])"},
                            FakeSway::Message{getWorkspaces, ""}, FakeSway::Message{getOutputs, ""}));
    _sway.tell(subscribe, R"({"success":true})");
    _sway.tellScreens();
    _sway.tellWindow("new", 7, "Selvane", 42);
    ASSERT_TRUE(waitUntil([&] { return !_sway.commands().empty(); }));
    EXPECT_THAT(_sway.commands(), ElementsAre(theCommand));
    ASSERT_TRUE(_screen);
    EXPECT_EQ(_screen->whole, (ScreenRect{640, 0, 1280, 800})) << "the one that is focused";
    EXPECT_EQ(_screen->available, (ScreenRect{640, 28, 1280, 772}));
    EXPECT_FALSE(_sway.isLeft);
    _sway.tell(runCommand, R"([{"success":true}])");
    EXPECT_TRUE(waitUntil([&] {
        _sway.asked();
        return _sway.isLeft;
    })) << "nothing is kept";
}

TEST_F(SwayPlacerTest, WindowThatComesBeforeTheScreensAreKnownIsMovedThen) {
    const auto placing = place();
    ASSERT_TRUE(waitUntil([&] { return _sway.asked().size() == 3; }));
    _sway.tellWindow("new", 7, "Selvane", 42);
    EXPECT_THAT(_sway.commands(), ElementsAre());
    _sway.tellScreens();
    EXPECT_TRUE(waitUntil([&] { return !_sway.commands().empty(); }));
    EXPECT_THAT(_sway.commands(), ElementsAre(theCommand));
}

TEST_F(SwayPlacerTest, WindowWhoseTitleComesLaterIsMoved) {
    const auto placing = place();
    ASSERT_TRUE(waitUntil([&] { return _sway.asked().size() == 3; }));
    _sway.tellScreens();
    _sway.tell(windowEvent, R"({"change":"new","container":{"id":7,"name":null,"pid":42}})");
    EXPECT_THAT(_sway.commands(), ElementsAre());
    _sway.tellWindow("title", 7, "Selvane", 42);
    EXPECT_TRUE(waitUntil([&] { return !_sway.commands().empty(); }));
    EXPECT_THAT(_sway.commands(), ElementsAre(theCommand));
}

TEST_F(SwayPlacerTest, WindowThatCameBeforeItsEventsWereAskedForIsFound) {
    const auto placing = place();
    ASSERT_TRUE(waitUntil([&] { return _sway.asked().size() == 3; }));
    _sway.tellScreens();
    _sway.tell(subscribe, R"({"success":true})");
    ASSERT_TRUE(waitUntil([&] { return _sway.asked().size() == 4; }));
    EXPECT_EQ(_sway.asked().back(), (FakeSway::Message{getTree, ""}));
    _sway.tell(getTree, R"({"id":1,"name":"root","nodes":[{"id":2,"name":"A","nodes":[],"floating_nodes":[)"
                        R"({"id":5,"name":"Selvane","pid":41,"nodes":[]},{"id":6,"name":"Other","pid":42},)"
                        R"({"id":7,"name":"Selvane","pid":42,"nodes":[],"floating_nodes":[]}]}]})");
    ASSERT_TRUE(waitUntil([&] { return !_sway.commands().empty(); }));
    EXPECT_THAT(_sway.commands(), ElementsAre(theCommand));
}

TEST_F(SwayPlacerTest, OtherWindowsAreLeftAlone) {
    const auto placing = place();
    ASSERT_TRUE(waitUntil([&] { return _sway.asked().size() == 3; }));
    _sway.tellScreens();
    _sway.tellWindow("new", 5, "Selvane", 41);
    _sway.tellWindow("new", 5, "Statistics", 42);
    _sway.tellWindow("close", 5, "Selvane", 42);
    _sway.tell(windowEvent, R"({"change":"new","container":{"id":7,"name":null,"pid":42}})");
    _sway.tellWindow("new", 7, "Selvane", 42);
    ASSERT_TRUE(waitUntil([&] { return !_sway.commands().empty(); }));
    _sway.tellWindow("new", 8, "Selvane", 42);
    QCoreApplication::processEvents();
    EXPECT_THAT(_sway.commands(), ElementsAre(theCommand)) << "and only the first is ours";
}

TEST_F(SwayPlacerTest, OtherWindowsOfTheProgramAreLeftAloneThoughTheirTitlesAreAlike) {
    const auto placing = _placer.placeNext("Selvane Timer", [](const auto&) { return ScreenPoint{1, 2}; });
    ASSERT_TRUE(waitUntil([&] { return _sway.asked().size() == 3; }));
    _sway.tellScreens();
    _sway.tellWindow("new", 5, "Selvane", 42);
    _sway.tellWindow("title", 5, "Timer", 42);
    _sway.tellWindow("title", 6, "Selvane Timer and more", 42);
    EXPECT_FALSE(placing->hasWindow());
    _sway.tellWindow("new", 7, "Selvane Timer", 42);
    ASSERT_TRUE(waitUntil([&] { return !_sway.commands().empty(); }));
    EXPECT_THAT(_sway.commands(),
                ElementsAre("[con_id=7] floating enable, move absolute position 1 px 2 px"));
}

TEST_F(SwayPlacerTest, WindowThatHasItsPlaceIsMovedAgainWhenAsked) {
    const auto placing = place();
    ASSERT_TRUE(waitUntil([&] { return _sway.asked().size() == 3; }));
    _sway.tellScreens();
    EXPECT_FALSE(placing->hasWindow());
    placing->repeat();
    _sway.tellWindow("new", 7, "Selvane", 42);
    EXPECT_TRUE(placing->hasWindow());
    ASSERT_TRUE(waitUntil([&] { return !_sway.commands().empty(); }));
    _sway.tell(runCommand, R"([{"success":true}])");
    ASSERT_TRUE(waitUntil([&] {
        _sway.asked();
        return _sway.isLeft;
    }));

    _sway.forget();
    _corner = {1234, 95};
    placing->repeat();
    ASSERT_TRUE(waitUntil([&] { return _sway.asked().size() == 2; }));
    EXPECT_THAT(_sway.asked(),
                ElementsAre(FakeSway::Message{getWorkspaces, ""}, FakeSway::Message{getOutputs, ""}))
        << "the window is known";
    _sway.tellScreens();
    ASSERT_TRUE(waitUntil([&] { return !_sway.commands().empty(); }));
    EXPECT_THAT(_sway.commands(), ElementsAre("[con_id=7] move absolute position 1234 px 95 px"));
    _sway.tell(runCommand, R"([{"success":true}])");
    EXPECT_TRUE(waitUntil([&] {
        _sway.asked();
        return _sway.isLeft;
    })) << "nothing is kept";
}

TEST_F(SwayPlacerTest, MoveThatIsUnderWayGivesWayToTheNext) {
    const auto placing = place();
    ASSERT_TRUE(waitUntil([&] { return _sway.asked().size() == 3; }));
    _sway.tellWindow("new", 7, "Selvane", 42);
    ASSERT_TRUE(placing->hasWindow());
    placing->repeat();
    ASSERT_TRUE(waitUntil([&] {
        _sway.asked();
        return _sway.isLeft;
    }));
    _sway.forget();
    ASSERT_TRUE(waitUntil([&] { return _sway.asked().size() == 2; }));
    _sway.tellScreens();
    ASSERT_TRUE(waitUntil([&] { return !_sway.commands().empty(); }));
    EXPECT_THAT(_sway.commands(), ElementsAre(theCommand));
}

TEST_F(SwayPlacerTest, CompositorThatEndedMovesNothingAgain) {
    const auto placing = place();
    ASSERT_TRUE(waitUntil([&] { return _sway.asked().size() == 3; }));
    _sway.tellWindow("new", 7, "Selvane", 42);
    ASSERT_TRUE(placing->hasWindow());
    _sway.end();
    placing->repeat();
    QCoreApplication::processEvents();
    EXPECT_FALSE(_screen);
}

TEST_F(SwayPlacerTest, EndedHandleHangsUp) {
    auto placing = place();
    ASSERT_TRUE(waitUntil([&] { return _sway.asked().size() == 3; }));
    placing.reset();
    EXPECT_TRUE(waitUntil([&] {
        _sway.asked();
        return _sway.isLeft;
    }));
}

TEST_F(SwayPlacerTest, WhatCannotBeReadEndsIt) {
    for (const auto& [kind, payload] :
         {FakeSway::Message{windowEvent, "no JSON"}, FakeSway::Message{getWorkspaces, "{\"rect\":"}}) {
        FakeSway sway;
        SwayPlacer placer(sway.path(), 42);
        const auto placing = placer.placeNext("Selvane", [](const auto&) { return ScreenPoint{0, 0}; });
        ASSERT_TRUE(waitUntil([&] { return sway.asked().size() == 3; }));
        sway.tell(kind, payload);
        EXPECT_TRUE(waitUntil([&] {
            sway.asked();
            return sway.isLeft;
        })) << payload;
    }
}

TEST_F(SwayPlacerTest, StrangeScreensMoveNothing) {
    const auto placing = place();
    ASSERT_TRUE(waitUntil([&] { return _sway.asked().size() == 3; }));
    _sway.tell(getWorkspaces, R"([{"rect":{"x":0,"y":0,"width":"wide","height":480},"focused":true}])");
    _sway.tell(getOutputs, R"([{"rect":{"x":0,"y":0,"width":1e9,"height":480},"focused":true}, 5])");
    _sway.tellWindow("new", 7, "Selvane", 42);
    EXPECT_THAT(_sway.commands(), ElementsAre());
    EXPECT_FALSE(_screen);
}

TEST_F(SwayPlacerTest, CompositorThatEndsIsNoHarm) {
    const auto placing = place();
    ASSERT_TRUE(waitUntil([&] { return _sway.asked().size() == 3; }));
    _sway.hangUp();
    QCoreApplication::processEvents();
    EXPECT_FALSE(_screen);
}

TEST(SwayPlacerWithoutSway, DoesNothing) {
    const auto choose = [](const WindowPlacer::Screen&) { return ScreenPoint{0, 0}; };
    EXPECT_FALSE(SwayPlacer("/no/such/socket", 42).placeNext("Selvane", choose));
    EXPECT_FALSE(SwayPlacer("", 42).placeNext("Selvane", choose));
    EXPECT_FALSE(SwayPlacer(std::string(200, 'x'), 42).placeNext("Selvane", choose));
}

} // namespace
} // namespace selvane::test
