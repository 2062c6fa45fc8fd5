#pragma once
// The decisions of a randomized operator, read from a byte string: each takes one byte, and once the
// bytes are used up every decision is the first choice.

#include <random>
#include <string>
#include <vector>

namespace halvane::monkey {

class Choices {
  public:
    explicit Choices(std::string bytes) : m_bytes(std::move(bytes)) {}
    // 0 to n - 1.
    int below(int n) {
        if (exhausted()) return 0;
        const int byte = static_cast<unsigned char>(m_bytes[m_next++]);
        return n > 1 ? byte % n : 0;
    }
    template <class T>
    const T& oneOf(const std::vector<T>& items) {
        return items[static_cast<std::size_t>(below(static_cast<int>(items.size())))];
    }
    bool exhausted() const { return m_next >= m_bytes.size(); }

  private:
    std::string m_bytes;
    std::size_t m_next = 0;
};

// The bytes of a fixed seed, for runs that come out the same every time.
inline std::string bytesFromSeed(unsigned seed, std::size_t length) {
    std::mt19937 random(seed);
    std::string bytes(length, '\0');
    for (char& c : bytes) c = static_cast<char>(random() & 0xFF);
    return bytes;
}

}  // namespace halvane::monkey
