#include "QorTools.h"

#include <Orvane/Node.h>
#include <QtCore/QTextCodec>
#include <algorithm>
#include <cstring>

namespace Orvane::Qt4 {

namespace {

const int MibUtf8 = 106;

QString fromRuntime(const char* text, std::size_t size)
{
    const int length = static_cast<int>(size);
    const bool ascii =
        std::all_of(text, text + size, [](char c) { return static_cast<signed char>(c) >= 0; });
    if (!ascii) {
        QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
        const QString utf8 = QTextCodec::codecForMib(MibUtf8)->toUnicode(text, length, &state);
        if (state.invalidChars == 0 && state.remainingChars == 0)
            return utf8;
    }
    return QString::fromLatin1(text, length);
}

} // namespace

QString fromRuntime(const std::string& text)
{
    return fromRuntime(text.c_str(), text.size());
}

QString fromRuntime(const char* text)
{
    return text ? fromRuntime(text, std::strlen(text)) : QString();
}

std::string toRuntime(const QString& text)
{
    const bool latin1 = std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() <= 0xff; });
    return (latin1 ? text.toLatin1() : text.toUtf8()).toStdString();
}

const std::string& nodeName(const Orvane::Node* node)
{
    static const std::string none;
    if (!node)
        return none;
    return node->name() ? *node->name() : node->getIDStr();
}

} // namespace Orvane::Qt4
