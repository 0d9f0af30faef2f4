#pragma once

#include "platform/Rendering.h"

#include <optional>
#include <string>
#include <vector>

namespace host {

/// The host's rendering engines, numbered from 1. One of them may be the current one.
class RenderingEngines {
public:
    struct Engine {
        API_ModulID identifier;
        std::string menuName;  ///< UTF-8
    };

    /// The engines that this host comes with; the first is current.
    RenderingEngines();

    const std::vector<Engine>& all() const { return engines_; }
    /// Replaces all engines; the first is current. Each gets an identifier that no other had before.
    void replace(const std::vector<std::string>& menuNames);

    /// Number of the current engine; nothing when none is.
    std::optional<std::int32_t> current() const { return current_; }
    /// False, with nothing changed, when there is no engine of this number.
    bool setCurrent(std::int32_t number);
    void clearCurrent() { current_.reset(); }

    /// Number of the engine; nothing when there is none of this identifier.
    std::optional<std::int32_t> find(const API_ModulID& identifier) const;

    /// Behind the slots of the host's table.
    std::int32_t count() const { return static_cast<std::int32_t>(engines_.size()); }
    GSErrCode identifier(std::int32_t number, API_ModulID* out) const;
    GSErrCode menuName(const API_ModulID& engine, GS::UniString* out) const;

private:
    const Engine& engine(std::int32_t number) const { return engines_[static_cast<std::size_t>(number - 1)]; }

    std::vector<Engine> engines_;
    std::optional<std::int32_t> current_;
    std::uint32_t lastIdentifier_ = 0;
};

}  // namespace host
