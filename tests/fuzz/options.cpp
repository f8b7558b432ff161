// What the sanitizer of every target starts with. One execution allocates far less than is kept back here, so that what
// it frees and uses all the same is still found; keeping back as much as by default empties the processor's caches at
// each execution, and a longer look at who allocates takes longer than the parser does.

extern "C" const char* __asan_default_options();

extern "C" const char* __asan_default_options() { // NOLINT(bugprone-reserved-identifier): the sanitizer's name
    return "quarantine_size_mb=32:malloc_context_size=12";
}
