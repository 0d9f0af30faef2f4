#include "host/console/LineSource.h"

#include <unistd.h>
#include <array>

namespace host {

namespace {

class ScriptSource : public LineSource {
public:
    explicit ScriptSource(int descriptor) : descriptor_(descriptor) {}

    Result next(std::string& line) override {
        while (!takeLine(line)) {
            if (ended_) return Result::End;
            if (!waitForInput(descriptor_)) return Result::Dispatched;
            readMore();
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

    void readMore() {
        std::array<char, 4096> bytes{};
        const ssize_t count = read(descriptor_, bytes.data(), bytes.size());
        if (count > 0) {
            buffer_.append(bytes.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            ended_ = true;
        }
    }

    int descriptor_;
    std::string buffer_;
    std::size_t searched_ = 0;  ///< no line end lies before
    bool ended_ = false;
};

}  // namespace

std::unique_ptr<LineSource> makeScriptSource(int descriptor) {
    return std::make_unique<ScriptSource>(descriptor);
}

}  // namespace host
