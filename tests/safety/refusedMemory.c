// To be preloaded: counts how often the system, or the C library for it, refuses a program memory, in the file that
// VELLORAN_REFUSALS names.

#define _GNU_SOURCE

#include <fcntl.h>
#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

extern void* __libc_malloc(size_t size);
extern void* __libc_calloc(size_t count, size_t size);
extern void* __libc_realloc(void* old, size_t size);

static int64_t* refusals;

static void* counted(void* given) {
    if (!given && refusals) {
        __atomic_add_fetch(refusals, 1, __ATOMIC_RELAXED);
    }
    return given;
}

__attribute__((constructor)) static void open_refusals(void) {
    const char* name = getenv("VELLORAN_REFUSALS");
    const int descriptor = name ? open(name, O_RDWR | O_CLOEXEC) : -1;
    if (descriptor >= 0) {
        void* place = mmap(NULL, sizeof *refusals, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
        refusals = place == MAP_FAILED ? NULL : place;
        close(descriptor);
    }
}

void* malloc(size_t size) {
    return counted(__libc_malloc(size));
}

void* calloc(size_t count, size_t size) {
    return counted(__libc_calloc(count, size));
}

void* realloc(void* old, size_t size) {
    return size == 0 ? __libc_realloc(old, size) : counted(__libc_realloc(old, size));
}
