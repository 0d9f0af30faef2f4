#pragma once

#include "host/session/Events.h"

#include <functional>
#include <optional>

namespace host {

/// Turns the calls between host and add-ons into events. A call inside which nothing happens is one event,
/// others are two.
class TraceRecorder : public platform::CallObserver {
public:
    using Sink = std::function<void(const event::Call&)>;

    TraceRecorder(const Host& host, Sink sink) : host_(host), sink_(std::move(sink)) {}
    ~TraceRecorder() override;
    TraceRecorder(const TraceRecorder&) = delete;
    TraceRecorder& operator=(const TraceRecorder&) = delete;

    void start();
    void stop();

    /// Sends the call that was entered last and not yet sent; what follows happens inside it.
    void flush();

    void callEntered(const platform::TracedCall& call) override;
    void callLeft(const platform::TracedCall& call, const platform::TraceArguments& results) override;

private:
    std::string addOnOf(const platform::TracedCall& call) const;

    const Host& host_;
    Sink sink_;
    std::vector<std::string> open_;  ///< add-ons of the calls that were entered, outermost first
    std::optional<event::Call> pending_;
};

}  // namespace host
