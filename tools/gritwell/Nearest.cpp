#include "Nearest.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace gritwell {

namespace {

char lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

// Edit distance with transpositions of neighbours (optimal string alignment).
std::size_t distance(std::string_view a, std::string_view b) {
    const std::size_t n = a.size(), m = b.size();
    std::vector<std::size_t> d((n + 1) * (m + 1));
    auto at = [m, &d](std::size_t i, std::size_t j) -> std::size_t& { return d[i * (m + 1) + j]; };
    for (std::size_t i = 0; i <= n; ++i) at(i, 0) = i;
    for (std::size_t j = 0; j <= m; ++j) at(0, j) = j;
    for (std::size_t i = 1; i <= n; ++i)
        for (std::size_t j = 1; j <= m; ++j) {
            const std::size_t cost = lower(a[i - 1]) == lower(b[j - 1]) ? 0 : 1;
            at(i, j) = std::min({at(i - 1, j) + 1, at(i, j - 1) + 1, at(i - 1, j - 1) + cost});
            if (i > 1 && j > 1 && lower(a[i - 1]) == lower(b[j - 2]) && lower(a[i - 2]) == lower(b[j - 1]))
                at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
        }
    return at(n, m);
}

}  // namespace

std::string nearest(std::string_view word, std::span<const std::string_view> candidates) {
    const std::size_t allowed = std::max<std::size_t>(1, word.size() / 3);
    std::string_view best;
    std::size_t bestDistance = allowed + 1;
    for (const std::string_view candidate : candidates) {
        const std::size_t d = distance(word, candidate);
        if (d < bestDistance) {
            best = candidate;
            bestDistance = d;
        }
    }
    return std::string(best);
}

std::string didYouMean(std::string_view word, std::span<const std::string_view> candidates) {
    const std::string near = nearest(word, candidates);
    return near.empty() ? std::string() : "; did you mean '" + near + "'?";
}

}  // namespace gritwell
