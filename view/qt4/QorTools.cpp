#include "QorTools.h"

#include "QorLog.h"
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFNode.h>
#include <QtCore/QTextCodec>
#include <QtGui/QFont>
#include <QtWidgets/QWidget>
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

/// Calls \a visit with each link of a field that leads to a node.
template <class Visit>
void forEachLink(Orvane::Field& field, Visit visit)
{
    if (field.dataType() == Orvane::SFNODE_DT) {
        Orvane::NodeLink& link = static_cast<Orvane::SFNode&>(field).link();
        if (link.directNode())
            visit(link);
    } else if (field.dataType() == Orvane::MFNODE_DT) {
        for (Orvane::NodeLink& link : static_cast<Orvane::MFNode&>(field)) {
            if (link.directNode())
                visit(link);
        }
    }
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

void nodeLinks(Orvane::Node* node, QList<Orvane::NodeLink*>& links, bool stopAtProto)
{
    if (!node)
        return;
    if (stopAtProto && node->type()->isProto()) {
        QOR_LOG("::nodeLinks: node %s is proto.\n", nodeName(node).c_str());
        return;
    }
    for (unsigned int part = 0; Orvane::Field* field = node->findField(part); ++part)
        forEachLink(*field, [&links](Orvane::NodeLink& link) { links.append(&link); });
}

int nodeLinkIndex(Orvane::Field* field, Orvane::NodeLink* link)
{
    if (const auto* many = dynamic_cast<Orvane::MFNode*>(field)) {
        QOR_NOTICE("nodeLinkIndex: searching NodeLink %p in MFNode %p\n", static_cast<const void*>(link),
                   static_cast<const void*>(many));
        int position = 0;
        for (const Orvane::NodeLink& element : *many) {
            if (&element == link)
                return position;
            ++position;
        }
        QOR_WARNING("nodeLinkIndex: unable to find NodeLink %p in MFNode %p.\n",
                    static_cast<const void*>(link), static_cast<const void*>(many));
        return -1;
    }
    auto* single = dynamic_cast<Orvane::SFNode*>(field);
    return single && &single->link() == link ? 0 : -1;
}

int nodeLinkRow(Orvane::NodeLink* link)
{
    Orvane::Field* const field = link->field();
    int row = nodeLinkIndex(field, link);
    if (row < 0)
        return row;
    for (unsigned int part = 0; Orvane::Field* earlier = field->node()->findField(part); ++part) {
        if (earlier == field)
            break;
        forEachLink(*earlier, [&row](Orvane::NodeLink&) { ++row; });
    }
    return row;
}

void dropShaping(QWidget& widget)
{
    QFont font = widget.font();
    font.setStyleStrategy(static_cast<QFont::StyleStrategy>(font.styleStrategy() | QFont::PreferNoShaping));
    widget.setFont(font);
}

} // namespace Orvane::Qt4
