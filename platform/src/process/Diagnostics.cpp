#include "platform/host/Diagnostics.h"

#include "platform/Bundle.h"

#include <cstdarg>
#include <cstdio>

namespace {

/// Never destroyed: add-ons print while the process ends.
std::function<void(const std::string&)>& printer() {
    static auto* const current = new std::function<void(const std::string&)>;
    return *current;
}

std::string formatted(const char* format, std::va_list arguments) {
    std::va_list copy;
    va_copy(copy, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    if (length <= 0) return {};
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, arguments);
    text.pop_back();
    return text;
}

}  // namespace

void platform::setDiagnosticPrinter(std::function<void(const std::string&)> newPrinter) {
    printer() = std::move(newPrinter);
}

void DBPrintf(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::string text = formatted(format, arguments);
    va_end(arguments);
    if (printer()) {
        printer()(text);
    } else {
        std::fputs(text.c_str(), stderr);
    }
}
