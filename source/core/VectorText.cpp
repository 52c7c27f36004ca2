#include "core/VectorText.h"

#include <cctype>
#include <iostream>

namespace gritwell {

void writeVectorText(std::ostream& os, const float* c, int count) {
    const std::streamsize w = os.width();
    os << '[' << c[0];
    for (int i = 1; i < count; ++i) {
        os << ' ';
        os.width(w);
        os << c[i];
    }
    os << ']';
}

int skipSpaceAndPeek(std::istream& is) {
    int c = is.peek();
    while (c != std::char_traits<char>::eof() && std::isspace(c)) {
        is.get();
        c = is.peek();
    }
    return c;
}

bool readVectorText(std::istream& is, float* out, int count) {
    if (skipSpaceAndPeek(is) != '[') {
        is.setstate(std::ios::failbit);
        std::cerr << "Error: Expected '[' while reading vector\n";
        return false;
    }
    is.get();
    float values[4];
    for (int i = 0; i < count; ++i) is >> values[i];
    if (is.fail()) {
        std::cerr << "Error: Expected number while reading vector\n";
        return false;
    }
    if (skipSpaceAndPeek(is) != ']') {
        is.setstate(std::ios::failbit);
        std::cerr << "Error: Expected ']' while reading vector\n";
        return false;
    }
    is.get();
    for (int i = 0; i < count; ++i) out[i] = values[i];
    return true;
}

}  // namespace gritwell
