#include "platform/linux/processes/linux_system.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <thread>

#include "platform/linux/loop/linux_clock.h"
#include "support/live_session.h"
#include "support/temp_folder.h"

namespace Corvetape {
namespace {

TEST(LinuxSystemInfo, TheVersionRecordIsThatOfASystemWhereEveryInputIsADevice) {
    const SystemVersion version = LinuxSystemInfo().Version();
    EXPECT_EQ(version.Platform, 2u);
    EXPECT_EQ(version.Major, 6u);
}

TEST(LinuxSystemInfo, SeedsDiffer) {
    LinuxSystemInfo system;
    EXPECT_NE(system.RandomSeed(), system.RandomSeed());
}

TEST(LinuxSystemInfo, RaisingThePriorityNeitherFailsNorWaitsWithoutABus) {
    LiveSession session;
    TempFolder folder;
    setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + (folder / "nobody")).c_str(), 1);
    std::thread thread([] {  // the priority is that of a thread; this one takes it along at its end
        rlimit limit{};
        getrlimit(RLIMIT_NICE, &limit);
        const int before = getpriority(PRIO_PROCESS, 0);
        const auto began = std::chrono::steady_clock::now();
        LinuxSystemInfo().RaisePriority();
        EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(5));
        const int after = getpriority(PRIO_PROCESS, 0);
        if (geteuid() == 0) {
            EXPECT_EQ(after, -10);
        } else {
            EXPECT_LE(after, before);
        }
    });
    thread.join();
    unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

TEST(LinuxClock, GivesTheLocalTimeOfTheWallClock) {
    const time_t before = time(nullptr);
    const DateTime now = LinuxClock().LocalNow();
    const time_t after = time(nullptr);
    tm parts{};
    parts.tm_year = now.Year - 1900;
    parts.tm_mon = now.Month - 1;
    parts.tm_mday = now.Day;
    parts.tm_hour = now.Hour;
    parts.tm_min = now.Minute;
    parts.tm_sec = now.Second;
    parts.tm_isdst = -1;
    const time_t told = mktime(&parts);
    EXPECT_GE(told, before);
    EXPECT_LE(told, after);
    EXPECT_GE(now.Millisecond, 0);
    EXPECT_LT(now.Millisecond, 1000);
}

TEST(LinuxClock, FollowsAChangeOfTheTimeZone) {
    const char* const before = std::getenv("TZ");
    const std::string kept = before != nullptr ? before : "";
    setenv("TZ", "UTC0", 1);
    const DateTime there = LinuxClock().LocalNow();
    setenv("TZ", "IST-5:30", 1);
    const DateTime here = LinuxClock().LocalNow();
    const int minutes = (here.Hour * 60 + here.Minute) - (there.Hour * 60 + there.Minute);
    EXPECT_NEAR((minutes + 1440) % 1440, 330, 1);
    if (before != nullptr) {
        setenv("TZ", kept.c_str(), 1);
    } else {
        unsetenv("TZ");
    }
}

TEST(LinuxClock, TheMonotonicClockNeverGoesBack) {
    const LinuxClock clock;
    int64_t last = clock.MonotonicNanoseconds();
    for (int i = 0; i < 1000; ++i) {
        const int64_t now = clock.MonotonicNanoseconds();
        EXPECT_GE(now, last);
        last = now;
    }
    EXPECT_EQ(clock.TimeGetTime(),
              static_cast<int32_t>(static_cast<uint32_t>(clock.MonotonicNanoseconds() / 1'000'000)));
}

}  // namespace
}  // namespace Corvetape
