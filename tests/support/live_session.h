#pragma once

#include <QCoreApplication>
#include <chrono>
#include <functional>

#include "platform/linux/loop/qt_loop.h"

namespace Corvetape {

/// What every live test runs on: a Qt application and the loop on it.
class LiveSession {
    int count = 1;
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{count, arguments};

 public:
    QtLoop Loop;

    /// Handles events until the condition holds. False if it does not within the limit.
    bool WaitFor(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
        const auto end = std::chrono::steady_clock::now() + limit;
        while (!condition()) {
            if (std::chrono::steady_clock::now() >= end) return false;
            QCoreApplication::processEvents(QEventLoop::AllEvents);
            Loop.Sleep(std::chrono::milliseconds(1));  // the condition may come from another process
        }
        return true;
    }
};

}  // namespace Corvetape
