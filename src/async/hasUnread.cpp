#include "async/hasUnread.h"

#include <linux/sockios.h>
#include <sys/ioctl.h>

namespace velloran {

bool hasUnread(int socket) {
    int unread = 0;
    return ioctl(socket, SIOCOUTQ, &unread) == 0 && unread > 0;
}

} // namespace velloran
