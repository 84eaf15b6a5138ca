// Preloaded into the program by the end-to-end tests: no socket of its own can wait for clients over IPv4.

#include <errno.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

// What the program starts runs without this library.
__attribute__((constructor)) static void leaveChildrenAlone(void)
{
    unsetenv("LD_PRELOAD");
}

int listen(int socket, int backlog)
{
    int domain = AF_UNSPEC;
    socklen_t size = sizeof domain;
    if (getsockopt(socket, SOL_SOCKET, SO_DOMAIN, &domain, &size) == 0 && domain == AF_INET) {
        errno = EADDRINUSE;
        return -1;
    }
    return (int)syscall(SYS_listen, socket, backlog);
}
