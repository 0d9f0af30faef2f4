#pragma once

#include "platform/UniString.h"

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

/// Lets a program watch every call between host and add-ons. Costs one comparison per call while nobody
/// watches.
namespace platform {

using TraceValue = std::variant<std::int64_t, bool, std::string>;
using TraceArguments = std::vector<std::pair<std::string, TraceValue>>;

enum class CallDirection {
    ToAddOn,  ///< entry point, handler or callback of an add-on
    ToHost,   ///< function that the host offers
};

struct TracedCall {
    CallDirection direction;
    const char* function;
    TraceArguments arguments;
    const void* target;  ///< the add-on's function that is called, where its add-on is not known otherwise
};

class CallObserver {
public:
    virtual ~CallObserver() = default;
    virtual void callEntered(const TracedCall& call) = 0;
    /// Exactly one for each callEntered, the innermost call first. `results` is empty for a function without
    /// one.
    virtual void callLeft(const TracedCall& call, const TraceArguments& results) = 0;
};

/// Null ends the watching. The observer stays the caller's; it must not throw.
void setCallObserver(CallObserver* observer);
CallObserver* callObserver();

/// One call, from its construction to its end. `arguments` is a function that is called only when someone
/// watches.
class CallTrace {
public:
    template <typename MakeArguments>
    CallTrace(CallDirection direction, const char* function, const MakeArguments& arguments,
              const void* target = nullptr)
        : observer_(callObserver()) {
        if (observer_ == nullptr) return;
        call_ = {direction, function, arguments(), target};
        observer_->callEntered(call_);
    }
    /// A call of a function that the host offers: the names of its arguments, each before its value.
    template <typename... NamesAndValues>
    explicit CallTrace(const char* function, const NamesAndValues&... arguments)
        : CallTrace(CallDirection::ToHost, function, [&] {
              TraceArguments all;
              add(all, arguments...);
              return all;
          }) {}
    ~CallTrace() {
        if (observer_ != nullptr && observer_ == callObserver()) observer_->callLeft(call_, results_);
    }
    CallTrace(const CallTrace&) = delete;
    CallTrace& operator=(const CallTrace&) = delete;

    bool watched() const { return observer_ != nullptr; }
    /// What the function answers, or one of its outputs; the function's own result has the name "result".
    void result(const char* name, TraceValue value) {
        if (watched()) results_.emplace_back(name, std::move(value));
    }
    /// Notes the function's own result and hands it through.
    template <typename Number>
    Number returning(Number value) {
        if constexpr (std::is_same_v<Number, bool>) {
            result("result", value);
        } else {
            result("result", static_cast<std::int64_t>(value));
        }
        return value;
    }

private:
    static void add(TraceArguments&) {}
    template <typename Value, typename... Rest>
    static void add(TraceArguments& all, const char* name, const Value& value, const Rest&... rest) {
        if constexpr (std::is_same_v<Value, GS::UniString>) {
            all.emplace_back(name, UniStringToUtf8(value));
        } else {
            all.emplace_back(name, value);
        }
        add(all, rest...);
    }

    CallObserver* observer_;
    TracedCall call_{};
    TraceArguments results_;
};

}  // namespace platform
