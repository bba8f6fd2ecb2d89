// Memory handed out to callers. Every block is known until it comes back, so that leaks, double
// frees and frees of foreign memory show.
#include "calls.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <unordered_map>
#include <unordered_set>

namespace host {

namespace {

struct Memory {
    std::unordered_map<const void *, std::size_t> blocks; // with their sizes
    std::unordered_set<const void *> dataBlocks;
    std::size_t badFrees = 0;
};

Memory &memory()
{
    static Memory *const state = new Memory; // outlives every static object
    return *state;
}

} // namespace

void *allocate(std::size_t bytes)
{
    const std::size_t size = bytes ? bytes : 1;
    void *block = std::malloc(size);
    if (!block) throw std::bad_alloc();
    memory().blocks.emplace(block, size);
    return block;
}

char *allocateText(std::string_view text)
{
    char *copy = static_cast<char *>(allocate(text.size() + 1));
    std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    return copy;
}

std::size_t sizeOfBlock(const void *block)
{
    const auto found = memory().blocks.find(block);
    return found == memory().blocks.end() ? 0 : found->second;
}

void release(void *block)
{
    if (!block) return;
    if (memory().blocks.erase(block) == 0) {
        ++memory().badFrees;
        return;
    }
    std::free(block);
}

void dataBlockTaken(const void *block) { memory().dataBlocks.insert(block); }

bool dataBlockReturned(const void *block)
{
    if (memory().dataBlocks.erase(block) > 0) return true;
    ++memory().badFrees;
    return false;
}

MemoryState memoryState()
{
    return {memory().blocks.size(), memory().dataBlocks.size(), memory().badFrees};
}

void forgetBadFrees() { memory().badFrees = 0; }

} // namespace host
