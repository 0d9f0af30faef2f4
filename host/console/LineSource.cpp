#include "host/console/LineSource.h"

#include "platform/host/RunLoop.h"

#include <poll.h>

namespace host {

bool LineSource::waitForInput(int descriptor) {
    platform::RunLoop& loop = platform::RunLoop::main();
    pollfd waited[2] = {{descriptor, POLLIN, 0}, {loop.descriptor(), POLLIN, 0}};
    if (poll(waited, 2, -1) < 0) return false;  // a signal: the caller waits again
    if (waited[0].revents != 0) return true;
    loop.dispatch(0);
    return false;
}

}  // namespace host
