// To be preloaded: writes a line to the file that VELLORAN_OPENINGS names for each socket that is no local one, and for each device
// that a program opens.

#define _GNU_SOURCE

#include <dlfcn.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <unistd.h>

static void note(const char* what, const char* name) {
    const char* path = getenv("VELLORAN_OPENINGS");
    int (*open_file)(const char*, int, ...) = (int (*)(const char*, int, ...))dlsym(RTLD_NEXT, "open");
    const int file = path ? open_file(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644) : -1;
    if (file >= 0) {
        dprintf(file, "%s %s\n", what, name);
        close(file);
    }
}

int socket(int domain, int type, int protocol) {
    int (*next)(int, int, int) = (int (*)(int, int, int))dlsym(RTLD_NEXT, "socket");
    if (domain != AF_UNIX) {
        char name[16];
        snprintf(name, sizeof name, "%d", domain);
        note("socket", name);
    }
    return next(domain, type, protocol);
}

#define OPENING(function, first_parameters, first_arguments)                                                                       \
    int function first_parameters {                                                                                                \
        int (*next) first_parameters = (int(*) first_parameters)dlsym(RTLD_NEXT, #function);                                        \
        mode_t mode = 0;                                                                                                           \
        if (flags & (O_CREAT | __O_TMPFILE)) {                                                                                     \
            va_list rest;                                                                                                          \
            va_start(rest, flags);                                                                                                 \
            mode = va_arg(rest, mode_t);                                                                                           \
            va_end(rest);                                                                                                          \
        }                                                                                                                          \
        if (strncmp(path, "/dev/", 5) == 0) {                                                                                      \
            note("device", path);                                                                                                  \
        }                                                                                                                          \
        return next first_arguments;                                                                                               \
    }

OPENING(open, (const char* path, int flags, ...), (path, flags, mode))
OPENING(open64, (const char* path, int flags, ...), (path, flags, mode))
OPENING(openat, (int folder, const char* path, int flags, ...), (folder, path, flags, mode))
OPENING(openat64, (int folder, const char* path, int flags, ...), (folder, path, flags, mode))

// What checked programs call in their place.
#define CHECKED_OPENING(function, parameters, arguments)                                                                           \
    int function parameters {                                                                                                      \
        int (*next) parameters = (int(*) parameters)dlsym(RTLD_NEXT, #function);                                                    \
        if (strncmp(path, "/dev/", 5) == 0) {                                                                                      \
            note("device", path);                                                                                                  \
        }                                                                                                                          \
        return next arguments;                                                                                                     \
    }

CHECKED_OPENING(__open_2, (const char* path, int flags), (path, flags))
CHECKED_OPENING(__open64_2, (const char* path, int flags), (path, flags))
CHECKED_OPENING(__openat_2, (int folder, const char* path, int flags), (folder, path, flags))
CHECKED_OPENING(__openat64_2, (int folder, const char* path, int flags), (folder, path, flags))
