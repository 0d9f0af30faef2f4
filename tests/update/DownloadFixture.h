#pragma once

#include "files/KW_Location.h"
#include "foundation/KW_String.h"
#include "library/KW_General.h"
#include "platform/host/HttpOptions.h"
#include "platform/host/RunLoop.h"
#include "tests/support/FaultServer.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>

/// A clock of the run loop that stands still until it is moved.
class HandClock {
public:
    HandClock() {
        platform::RunLoop::main().setClock([this] { return seconds; });
    }
    ~HandClock() { platform::RunLoop::main().setClock({}); }

    double seconds = 1000;
};

/// Runs the loop until `done`, for at most `limit`. Returns whether it was done.
inline bool runLoopUntil(const std::function<bool()>& done,
                         std::chrono::milliseconds limit = std::chrono::seconds(20)) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!done() && std::chrono::steady_clock::now() < end)
        platform::RunLoop::main().dispatch(5);
    return done();
}

/// Runs the loop for a while, in which nothing should happen.
inline void runLoopFor(std::chrono::milliseconds time) {
    (void)runLoopUntil([] { return false; }, time);
}

/// One download and its messages: O opened, P any number of progress in a row, X failed, F finished.
class RecordedDownload {
public:
    bool start(const std::string& url, const std::string& path) {
        return start(KW_String(url.c_str(), KW_String::Encoding_UTF8), path);
    }
    bool start(const KW_String& url, const std::string& path) {
        const KW_Location destination(KW_String(path.c_str(), KW_String::Encoding_UTF8));
        return KW_General::URLDownload(url, destination, &RecordedDownload::called, this);
    }
    bool ended() const { return messages.find_first_of("XF") != std::string::npos; }
    /// Starts, runs to the end and returns the messages.
    std::string fetch(const std::string& url, const std::string& path) {
        EXPECT_TRUE(start(url, path)) << url;
        EXPECT_TRUE(runLoopUntil([this] { return ended(); })) << messages;
        return messages;
    }

    std::string messages;
    int openedAnswer = 0;
    std::function<void(KW_URL_Message)> then;  // called after the message was recorded

private:
    static int called(KW_URL_Message message, double value, void* userData) {
        auto* const self = static_cast<RecordedDownload*>(userData);
        EXPECT_EQ(value, message == KW_URL_Progress ? 0.5 : 0.0);
        EXPECT_FALSE(self->ended()) << "a message after the last one";
        const char letter = "OXPF"[message];
        if (letter != 'P' || !self->messages.ends_with('P')) self->messages += letter;
        if (self->then) self->then(message);
        return message == KW_URL_Opened ? self->openedAnswer : 1;  // which counts for the first message only
    }
};
