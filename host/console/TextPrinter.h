#pragma once

#include "host/console/Events.h"

#include <ostream>

namespace host {

/// Events as text for a person.
class TextPrinter : public EventPrinter {
public:
    explicit TextPrinter(std::ostream& out) : out_(out) {}
    void print(const Event& event) override;

private:
    std::ostream& out_;
};

}  // namespace host
