#pragma once

#include "base/Graph.h"
#include "loader/SceneSink.h"
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <QString>
#include <QStringList>
#include <string_view>
#include <vector>

/// Writes down what it hears, one line an event. Of the nodes that it knows it tells the types of the fields.
class SinkRecorder : public Orvane::SceneSink
{
public:
    QStringList events;
    QString fileVersion;
    int nodeLimit = 1000000;

    void version(std::string_view version) override { fileVersion = text(version); }

    void head(const Orvane::HeadStatement& s) override
    {
        static const char* const kinds[] = {"profile", "component", "unit", "meta"};
        add(QStringLiteral("%1 %2=%3").arg(QLatin1String(kinds[s.kind]), text(s.name), text(s.content)));
    }
    bool beginNode(const Orvane::NodeStart& s) override
    {
        add(QStringLiteral("%1%2 %3 %4 %5:%6")
                .arg(QLatin1String(s.isInstance ? "instance " : "node "), text(s.type), text(s.name),
                     text(s.containerField))
                .arg(s.place.line)
                .arg(s.place.column));
        _open.push_back(Orvane::findType(s.type));
        return --nodeLimit >= 0;
    }
    void endNode() override
    {
        add(QStringLiteral("end"));
        _open.pop_back();
    }
    void useNode(const Orvane::NodeUse& u) override
    {
        add(QStringLiteral("use %1 %2 %3").arg(text(u.type), text(u.name), text(u.containerField)));
    }
    Orvane::NodePartDataType fieldType(std::string_view field) override
    {
        const Orvane::NodeType* type = _open.empty() ? nullptr : _open.back();
        const int part = type ? Orvane::partIndex(*type, field) : -1;
        return part < 0 ? Orvane::NO_DT : Orvane::partDesc(*type, static_cast<unsigned int>(part))->dataType;
    }
    void fieldValue(std::string_view field, std::string_view value, Orvane::SourcePlace place) override
    {
        add(QStringLiteral("value %1=%2 %3:%4")
                .arg(text(field), text(value))
                .arg(place.line)
                .arg(place.column));
    }
    void beginFieldNodes(std::string_view field, Orvane::SourcePlace) override
    {
        add(QStringLiteral("nodes of ") + text(field));
    }
    void endFieldNodes() override { add(QStringLiteral("end nodes")); }
    void sourceText(std::string_view source, Orvane::SourcePlace place) override
    {
        add(QStringLiteral("text %1 %2:%3").arg(text(source)).arg(place.line).arg(place.column));
    }
    void beginDeclaration(const Orvane::FieldDeclaration& d) override
    {
        add(QStringLiteral("field %1 %2 %3 %4")
                .arg(text(d.name))
                .arg(d.dataType)
                .arg(d.access)
                .arg(d.hasValue ? text(d.value) : QStringLiteral("-")));
    }
    void endDeclaration() override { add(QStringLiteral("end field")); }
    void isConnection(std::string_view node, std::string_view proto, Orvane::SourcePlace) override
    {
        add(QStringLiteral("is %1 %2").arg(text(node), text(proto)));
    }
    void route(const Orvane::RouteStatement& r) override
    {
        add(QStringLiteral("route %1.%2 %3.%4")
                .arg(text(r.fromNode), text(r.fromField), text(r.toNode), text(r.toField)));
    }
    void importNode(const Orvane::ExchangeStatement& s) override
    {
        add(QStringLiteral("import %1.%2 as %3").arg(text(s.inlineName), text(s.exportedName), text(s.name)));
    }
    void exportNode(const Orvane::ExchangeStatement& s) override
    {
        add(QStringLiteral("export %1 as %2").arg(text(s.exportedName), text(s.name)));
    }
    void beginProto(std::string_view name, Orvane::SourcePlace) override
    {
        add(QStringLiteral("proto ") + text(name));
    }
    void beginProtoBody() override { add(QStringLiteral("body")); }
    void endProto() override { add(QStringLiteral("end proto")); }
    void beginExternProto(std::string_view name, std::string_view urls, Orvane::SourcePlace) override
    {
        add(QStringLiteral("extern %1 %2").arg(text(name), text(urls)));
    }
    void endExternProto() override { add(QStringLiteral("end extern")); }

private:
    static QString text(std::string_view view)
    {
        return QString::fromUtf8(view.data(), static_cast<int>(view.size()));
    }
    void add(const QString& event) { events << event; }

    std::vector<Orvane::NodeType*> _open;
};
