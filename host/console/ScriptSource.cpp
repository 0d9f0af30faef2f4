#include "host/console/LineSource.h"

#include <unistd.h>
#include <array>
#include <cerrno>
#include <cstring>

namespace host {

namespace {

class ScriptSource : public LineSource {
public:
    explicit ScriptSource(int descriptor) : descriptor_(descriptor) {}

    Result next(std::string& line) override {
        while (!takeLine(line)) {
            if (ended_) return Result::End;
            if (!waitForInput(descriptor_)) return Result::Dispatched;
            if (!readMore(line)) return Result::Unreadable;
        }
        return Result::Line;
    }

    bool isInteractive() const override { return false; }

private:
    bool takeLine(std::string& line) {
        const std::size_t end = buffer_.find('\n', searched_);
        searched_ = buffer_.size();
        if (end == std::string::npos && (!ended_ || buffer_.empty())) return false;
        line = buffer_.substr(0, end);
        buffer_.erase(0, end == std::string::npos ? end : end + 1);
        searched_ = 0;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        return true;
    }

    bool readMore(std::string& problem) {
        constexpr std::size_t kLongestLine = 1U << 20U;
        std::array<char, 4096> bytes{};
        const ssize_t count = read(descriptor_, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) return true;
        if (count < 0) {
            problem = std::string("the input cannot be read: ") + std::strerror(errno);
        } else if (buffer_.size() > kLongestLine) {
            problem = "a line of the input is longer than 1 MiB";
        }
        if (count > 0) buffer_.append(bytes.data(), static_cast<std::size_t>(count));
        ended_ = count <= 0;
        return problem.empty();
    }

    int descriptor_;
    std::string buffer_;
    std::size_t searched_ = 0;  ///< there is no line end before
    bool ended_ = false;
};

}  // namespace

std::unique_ptr<LineSource> makeScriptSource(int descriptor) {
    return std::make_unique<ScriptSource>(descriptor);
}

}  // namespace host
