#include "QorWordList.h"

#include <algorithm>

namespace Orvane::Qt4 {

namespace {

bool isWordPart(QChar c)
{
    const unsigned int code = c.unicode();
    if (code < 0x80)
        return (code | 0x20) - 'a' < 26 || code - '0' < 10 || code == '_';
    return c.isLetterOrNumber() || c.isMark();
}

bool isWord(const QString& text)
{
    return !text.isEmpty() && std::all_of(text.cbegin(), text.cend(), isWordPart);
}

unsigned int extendedHash(unsigned int hash, QChar c)
{
    return (hash + c.unicode()) * 0x9e3779b1U;
}

/// The upper bits of a product depend on all of its factors.
std::size_t firstSlot(unsigned int hash, std::size_t slotCount)
{
    return (hash ^ (hash >> 16)) & (slotCount - 1);
}

} // namespace

QorWordList::QorWordList(const QStringList& words)
{
    if (!std::all_of(words.cbegin(), words.cend(), isWord) || words.isEmpty())
        return;
    std::size_t size = 2;
    while (size < 2 * static_cast<std::size_t>(words.size()))
        size *= 2;
    _slots.resize(size);
    for (const QString& word : words) {
        unsigned int hash = 0;
        for (const QChar c : word)
            hash = extendedHash(hash, c);
        std::size_t slot = firstSlot(hash, size);
        while (!_slots[slot].isEmpty() && _slots[slot] != word)
            slot = (slot + 1) & (size - 1);
        _slots[slot] = word;
    }
}

QorWordList QorWordList::fromPattern(const QString& pattern)
{
    const QLatin1String begin("\\b(");
    const QLatin1String end(")\\b");
    if (pattern.size() < begin.size() + end.size() || !pattern.startsWith(begin) || !pattern.endsWith(end))
        return {};
    const QString words = pattern.mid(begin.size(), pattern.size() - begin.size() - end.size());
    return QorWordList(words.split(QLatin1Char('|')));
}

QorWordList::Place QorWordList::find(const QString& text, int from) const
{
    const QChar* const data = text.constData();
    const int size = text.size();
    int at = from;
    if (at > 0 && at < size && isWordPart(data[at - 1])) {
        while (at < size && isWordPart(data[at]))
            ++at;
    }
    while (at < size) {
        const int start = at;
        unsigned int hash = 0;
        for (; at < size && isWordPart(data[at]); ++at)
            hash = extendedHash(hash, data[at]);
        if (at == start)
            ++at;
        else if (contains(data + start, at - start, hash))
            return {start, at - start};
    }
    return {};
}

bool QorWordList::contains(const QChar* word, int length, unsigned int hash) const
{
    if (_slots.empty())
        return false;
    const std::size_t mask = _slots.size() - 1;
    for (std::size_t slot = firstSlot(hash, _slots.size()); !_slots[slot].isEmpty(); slot = (slot + 1) & mask)
    {
        const QString& known = _slots[slot];
        if (known.size() == length && std::equal(word, word + length, known.constData()))
            return true;
    }
    return false;
}

} // namespace Orvane::Qt4
