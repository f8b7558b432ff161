#include "memory/RefusedMemory.h"

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::int64_t never = std::numeric_limits<std::int64_t>::max();

std::int64_t pieces = 0;
std::int64_t untilRefusal = never;
bool isRefusalLasting = false;
bool isRefused = false;

bool isToBeRefused() {
    if (untilRefusal == never || --untilRefusal > 0) {
        return false;
    }
    isRefused = true;
    untilRefusal = isRefusalLasting ? 1 : never;
    return true;
}

void* take(std::size_t size, std::size_t alignment) {
    if (isToBeRefused()) {
        return nullptr;
    }
    // Sizes of aligned pieces have to be multiples of the alignment.
    const std::size_t whole = (size + alignment - 1) / alignment * alignment;
    void* const piece = std::aligned_alloc(alignment, whole == 0 ? alignment : whole);
    pieces += piece == nullptr ? 0 : 1;
    return piece;
}

void* takeOrThrow(std::size_t size, std::size_t alignment) {
    void* const piece = take(size, alignment);
    if (piece == nullptr) {
        throw std::bad_alloc();
    }
    return piece;
}

void giveBack(void* piece) {
    pieces -= piece == nullptr ? 0 : 1;
    std::free(piece); // NOLINT(cppcoreguidelines-no-malloc): this is what others stand on
}

constexpr std::size_t usual = alignof(std::max_align_t);

} // namespace

// Each of the others comes down to one of these.
void* operator new(std::size_t size) {
    return takeOrThrow(size, usual);
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    return takeOrThrow(size, static_cast<std::size_t>(alignment));
}

void operator delete(void* piece) noexcept {
    giveBack(piece);
}

void operator delete(void* piece, std::size_t /*size*/) noexcept {
    giveBack(piece);
}

void operator delete(void* piece, std::align_val_t /*alignment*/) noexcept {
    giveBack(piece);
}

void operator delete(void* piece, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    giveBack(piece);
}

namespace velloran::tests {

RefusedMemory::RefusedMemory(std::int64_t number, Manner manner) {
    isRefused = false;
    isRefusalLasting = manner == Manner::fromThenOn;
    untilRefusal = number;
}

RefusedMemory::~RefusedMemory() {
    end();
}

void RefusedMemory::end() {
    untilRefusal = never;
}

bool RefusedMemory::hasRefused() {
    return isRefused;
}

std::int64_t RefusedMemory::held() {
    return pieces;
}

} // namespace velloran::tests
