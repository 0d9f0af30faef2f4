#pragma once

#include "host/console/Events.h"

#include <ostream>

namespace host {

/// Events as JSON for programs: one object per event and line, each with "schema" and "event".
/// docs/console.md describes them.
class JsonPrinter : public EventPrinter {
public:
    static constexpr int kSchemaVersion = 1;

    explicit JsonPrinter(std::ostream& out) : out_(out) {}
    void print(const Event& event) override;

private:
    std::ostream& out_;
};

}  // namespace host
