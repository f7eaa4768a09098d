#pragma once

#include "QorExport.h"
#include <QtCore/QStringList>
#include <vector>

namespace Orvane::Qt4 {

/// Finds the words of a list in a text: what the expression "\b(one|two)\b" finds, in one pass and at a cost
/// that does not grow with the list. What belongs to a word is what `QRegExp` counts to it.
class QOR_EXPORT QorWordList
{
public:
    struct Place
    {
        int index = -1; ///< -1 when there is none
        int length = 0;
    };

    QorWordList() = default;
    /// Words that have other characters than those of words would never be found: one makes the list empty.
    explicit QorWordList(const QStringList& words);
    /// The words of a pattern "\b(one|two)\b"; empty when the pattern says anything else.
    static QorWordList fromPattern(const QString& pattern);

    /// True when there is no word to find.
    bool isEmpty() const { return _slots.empty(); }
    /// The first place at or behind \a from where a whole word is one of the list.
    Place find(const QString& text, int from) const;

private:
    bool contains(const QChar* word, int length, unsigned int hash) const;

    std::vector<QString> _slots; ///< a power of two of them, at most half of them taken
};

} // namespace Orvane::Qt4
