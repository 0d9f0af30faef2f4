#include "host/RenderingEngines.h"

#include "host/ErrorCodes.h"

namespace host {

namespace {

constexpr std::uint32_t kHostDeveloper = 0x48535431;

}  // namespace

RenderingEngines::RenderingEngines() {
    replace({"Sketch Engine", "Photo Engine", "White Model"});
}

void RenderingEngines::replace(const std::vector<std::string>& menuNames) {
    engines_.clear();
    current_.reset();
    for (const std::string& name : menuNames)
        engines_.push_back({{kHostDeveloper, ++lastIdentifier_}, name});
    setCurrent(1);
}

bool RenderingEngines::setCurrent(std::int32_t number) {
    if (number < 1 || number > count()) return false;
    current_ = number;
    return true;
}

std::optional<std::int32_t> RenderingEngines::find(const API_ModulID& identifier) const {
    for (std::int32_t number = 1; number <= count(); ++number) {
        if (engine(number).identifier == identifier) return number;
    }
    return std::nullopt;
}

GSErrCode RenderingEngines::identifier(std::int32_t number, API_ModulID* out) const {
    if (number < 1 || number > count()) return kErrNotFound;
    *out = engine(number).identifier;
    return kNoError;
}

GSErrCode RenderingEngines::menuName(const API_ModulID& wanted, GS::UniString* out) const {
    const auto number = find(wanted);
    if (!number) return kErrNotFound;
    *out = GS::UniStringFromUtf8(engine(*number).menuName);
    return kNoError;
}

}  // namespace host
