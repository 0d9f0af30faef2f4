#include "tools/Commands.h"

#include "host/Printable.h"

#include <iostream>

namespace tools {

int fail(int code, const char* command, const std::string& line) {
    std::cerr << "tessaro " << command << ": " << host::printable(line) << std::endl;
    return code;
}

}  // namespace tools
