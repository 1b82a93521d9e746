#include "core/controls/event.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace Corvetape {
namespace {

TEST(Event, AListenerHearsNothingOnceItsConnectionIsGone) {
    Event<> event;
    int heard = 0;
    {
        const Connection connection = event.Listen([&heard] { ++heard; });
        event.Raise();
    }
    event.Raise();
    EXPECT_EQ(heard, 1);
}

TEST(Event, AListenerThatGoesLeavesTheOthersInTheirOrder) {
    Event<> event;
    std::string order;
    event.Connect([&order] { order += "a"; });
    Connection second = event.Listen([&order] { order += "b"; });
    const Connection third = event.Listen([&order] { order += "c"; });
    second.Release();
    event.Raise();
    EXPECT_EQ(order, "ac");
}

TEST(Event, AHandlerMayEndItsOwnConnection) {
    Event<> event;
    int heard = 0;
    Connection connection;
    connection = event.Listen([&] {
        connection.Release();
        ++heard;
    });
    event.Raise();
    event.Raise();
    EXPECT_EQ(heard, 1);
}

TEST(Event, AHandlerThatIsDisconnectedByAnEarlierOneDoesNotRunAnyMore) {
    Event<> event;
    Connection later;
    int heard = 0;
    event.Connect([&later] { later.Release(); });
    later = event.Listen([&heard] { ++heard; });
    event.Raise();
    EXPECT_EQ(heard, 0);
}

TEST(Event, AConnectionMayOutliveItsEvent) {
    auto event = std::make_unique<Event<>>();
    Connection connection = event->Listen([] {});
    event.reset();
    connection.Release();
}

TEST(Event, AHandlerMayDestroyTheEvent) {
    auto event = std::make_unique<Event<>>();
    int heard = 0;
    event->Connect([&event] { event.reset(); });
    event->Connect([&heard] { ++heard; });
    event->Raise();
    EXPECT_EQ(event, nullptr);
    EXPECT_EQ(heard, 1);
}

TEST(Event, AMovedConnectionEndsWithItsNewOwner) {
    Event<> event;
    int heard = 0;
    std::optional<Connection> owner;
    {
        Connection first = event.Listen([&heard] { ++heard; });
        owner = std::move(first);
    }
    event.Raise();
    owner.reset();
    event.Raise();
    EXPECT_EQ(heard, 1);
}

}  // namespace
}  // namespace Corvetape
