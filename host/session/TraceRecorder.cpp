#include "host/session/TraceRecorder.h"

namespace host {

TraceRecorder::~TraceRecorder() {
    stop();
}

void TraceRecorder::start() {
    if (platform::callObserver() == this) return;
    open_.clear();
    pending_.reset();
    platform::setCallObserver(this);
}

void TraceRecorder::stop() {
    if (platform::callObserver() != this) return;
    flush();
    platform::setCallObserver(nullptr);
}

void TraceRecorder::flush() {
    if (!pending_) return;
    const event::Call call = *std::move(pending_);
    pending_.reset();
    sink_(call);
}

std::string TraceRecorder::addOnOf(const platform::TracedCall& call) const {
    const AddOn* addOn = call.target != nullptr ? host_.findByAddress(call.target) : nullptr;
    if (addOn == nullptr && !open_.empty() && !open_.back().empty()) return open_.back();
    if (addOn == nullptr) addOn = host_.running();
    return addOn != nullptr ? addOn->name() : std::string();
}

void TraceRecorder::callEntered(const platform::TracedCall& call) {
    flush();
    pending_ =
        event::Call{event::Call::Phase::Entered, static_cast<int>(open_.size()), addOnOf(call), call, {}};
    open_.push_back(pending_->addOn);
}

void TraceRecorder::callLeft(const platform::TracedCall& call, const platform::TraceArguments& results) {
    if (open_.empty()) return;  // entered before the watching began
    const std::string addOn = open_.back();
    open_.pop_back();
    const bool whole = pending_.has_value();
    pending_.reset();
    sink_({whole ? event::Call::Phase::Whole : event::Call::Phase::Left, static_cast<int>(open_.size()),
           addOn, call, results});
}

}  // namespace host
