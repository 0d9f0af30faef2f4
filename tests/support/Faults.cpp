#include <charconv>
#include <stdexcept>

#include "tests/support/FaultServer.h"

namespace support {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view kHalf = kFaultBody.substr(0, kFaultBody.size() / 2);

std::string announcing(std::size_t length, std::string_view body) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(length) + "\r\n\r\n" + std::string(body);
}

std::string chunked(std::string_view chunks) {
    return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + std::string(chunks);
}

std::string redirectTo(std::string_view location) {
    return response("moved", "Location: " + std::string(location) + "\r\n", "302 Found");
}

/// "/N" leads to "/N-1", "/0" has the body.
void countDown(Connection& connection, const std::string& request) {
    int steps = 0;
    std::from_chars(request.data() + std::string_view("GET /").size(), request.data() + request.size(),
                    steps);
    connection.send(steps == 0 ? response(kFaultBody) : redirectTo("/" + std::to_string(steps - 1)));
}

void stallAfter(Connection& connection, std::string_view text) {
    if (connection.send(text)) connection.stall();
}

void drip(Connection& connection) {
    connection.send(announcing(kFaultBody.size(), ""));
    for (const char byte : kFaultBody) {
        if (!connection.send({&byte, 1})) return;
        connection.pause(milliseconds(5));
    }
}

void resetHalfWay(Connection& connection) {
    connection.send(announcing(kFaultBody.size(), kHalf));
    connection.pause(milliseconds(50));  // a reset overtakes what the client has not read yet
    connection.reset();
}

constexpr std::size_t kMegabyte = 1'000'000;

void hundredMegabytes(Connection& connection) {
    const std::string megabyte = patternedBody(kMegabyte);
    bool there = connection.send(announcing(100 * kMegabyte, ""));
    for (int i = 0; i < 100 && there; ++i)
        there = connection.send(megabyte);
}

/// A script that does not look at the request.
template <typename Action>
Script always(Action action) {
    return [action](Connection& connection, const std::string&) { action(connection); };
}

}  // namespace

const std::vector<Fault>& faults() {
    static const std::vector<Fault> all = {
        {"refuse", Script()},
        {"silent", always([](Connection& c) { c.stall(); })},
        {"hang-up", always([](Connection&) {})},
        {"stall-after-headers",
         always([](Connection& c) { stallAfter(c, announcing(kFaultBody.size(), "")); })},
        {"stall-half-way",
         always([](Connection& c) { stallAfter(c, announcing(kFaultBody.size(), kHalf)); })},
        {"drip", always(drip)},
        {"reset-half-way", always(resetHalfWay)},
        {"length-too-long", serving(announcing(kFaultBody.size() + 10, kFaultBody))},
        {"length-too-short", serving(announcing(kHalf.size(), kFaultBody))},
        {"no-length", serving("HTTP/1.1 200 OK\r\n\r\n" + std::string(kFaultBody))},
        {"chunked", serving(chunked("5\r\nfirst\r\nA\r\nand second\r\n0\r\n\r\n"))},
        {"broken-chunk", serving(chunked("5\r\nfirst\r\nno size\r\n"))},
        {"cut-chunk", serving(chunked("5\r\nfirst\r\nA\r\nand"))},
        {"empty", serving(response(""))},
        {"empty-no-length", serving("HTTP/1.1 200 OK\r\n\r\n")},
        {"not-found", serving(response("<h1>Not found</h1>", "", "404 Not Found"))},
        {"redirect", countDown},
        {"redirect-loop", serving(redirectTo("/file"))},
        {"redirect-away", serving(redirectTo("ftp://127.0.0.1/file"))},
        {"redirect-nowhere", serving(response("moved", "", "302 Found"))},
        {"large", always(hundredMegabytes)},
        {"binary", serving(response(patternedBody(70'000)))},
        {"compressed", serving(response("\x1F\x8B\x08 no real gzip", "Content-Encoding: gzip\r\n"))},
        {"garbage", serving("\x01\x02 what?\r\n\r\nnever")},
    };
    return all;
}

Script faultNamed(std::string_view name) {
    for (const Fault& fault : faults()) {
        if (name == fault.name) return fault.script;
    }
    throw std::invalid_argument("no fault is named " + std::string(name));
}

}  // namespace support
