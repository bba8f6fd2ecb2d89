// Memory handed out to callers. Every block is known until it comes back, so that leaks, double
// frees and frees of foreign memory show.
#include "calls.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <unordered_map>
#include <utility>
#include <vector>

namespace host {

namespace {

// What is given out and comes back. Most blocks come back soon, the last one first: those wait in a
// short list, and only what stays out longer is put into a table.
class Outstanding {
public:
    void add(const void *block, std::size_t bytes)
    {
        if (m_recent.size() == kRecent) {
            m_older.insert(m_recent.begin(), m_recent.end());
            m_recent.clear();
        }
        m_recent.emplace_back(block, bytes);
    }
    bool remove(const void *block) // false: it is not one of ours
    {
        const auto recent = find(block);
        if (recent == m_recent.rend()) return m_older.erase(block) > 0;
        m_recent.erase(std::next(recent).base());
        return true;
    }
    std::size_t bytesOf(const void *block) const // 0: it is not one of ours
    {
        if (const auto recent = find(block); recent != m_recent.rend()) return recent->second;
        const auto older = m_older.find(block);
        return older == m_older.end() ? 0 : older->second;
    }
    std::size_t size() const { return m_recent.size() + m_older.size(); }

private:
    using Block = std::pair<const void *, std::size_t>;
    static constexpr std::size_t kRecent = 16;

    std::vector<Block>::const_reverse_iterator find(const void *block) const
    {
        return std::find_if(m_recent.rbegin(), m_recent.rend(),
                            [&](const Block &one) { return one.first == block; });
    }

    std::vector<Block> m_recent; // the last one came last
    std::unordered_map<const void *, std::size_t> m_older;
};

struct Memory {
    Outstanding blocks;
    Outstanding dataBlocks;
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
    memory().blocks.add(block, size);
    return block;
}

char *allocateText(std::string_view text)
{
    char *copy = static_cast<char *>(allocate(text.size() + 1));
    std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    return copy;
}

std::size_t sizeOfBlock(const void *block) { return memory().blocks.bytesOf(block); }

void release(void *block)
{
    if (!block) return;
    if (!memory().blocks.remove(block)) {
        ++memory().badFrees;
        return;
    }
    std::free(block);
}

void dataBlockTaken(const void *block) { memory().dataBlocks.add(block, 0); }

bool dataBlockReturned(const void *block)
{
    if (memory().dataBlocks.remove(block)) return true;
    ++memory().badFrees;
    return false;
}

MemoryState memoryState()
{
    return {memory().blocks.size(), memory().dataBlocks.size(), memory().badFrees};
}

void forgetBadFrees() { memory().badFrees = 0; }

} // namespace host
