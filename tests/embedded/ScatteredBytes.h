#pragma once

#include <QByteArray>
#include <random>

/// The text with up to \a most changes: bytes that are taken out, or replaced by one of \a bytes.
inline QByteArray withScatteredBytes(QByteArray text, const QByteArray& bytes, unsigned int most,
                                     std::mt19937& random)
{
    const auto below = [&random](int limit) {
        return static_cast<int>(random() % static_cast<unsigned int>(limit));
    };
    for (unsigned int changes = 1 + random() % most; changes > 0 && !text.isEmpty(); --changes) {
        const int at = below(text.size());
        if (below(4) == 0)
            text.remove(at, below(20));
        else
            text[at] = bytes[below(bytes.size())];
    }
    return text;
}
