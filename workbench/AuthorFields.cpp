#include "AuthorFields.h"

#include <Orvane/Field.h>
#include <Orvane/FieldType.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <QCoreApplication>
#include <QStringList>
#include <QorNewFieldDialog.h>
#include <QorTools.h>
#include <algorithm>

using namespace Orvane::Qt4;

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("AuthorFields", text);
}

bool takesFields(const Orvane::Node& node)
{
    const std::string& type = node.type()->name;
    return type == "Script" || type == "ComposedShader" || type == "ShaderProgram" ||
           type == "PackagedShader";
}

/// True for what every encoding of scene files can write as the name of a field.
bool isFieldName(const QString& name)
{
    static const QStringList keywords =
        QStringLiteral("AS COMPONENT DEF EXPORT EXTERNPROTO FALSE IMPORT IS META NULL PROFILE PROTO ROUTE TO "
                       "TRUE USE eventIn eventOut exposedField field initializeOnly inputOnly inputOutput "
                       "outputOnly")
            .split(QLatin1Char(' '));
    const auto isPart = [](QChar c) {
        return c > QLatin1Char(' ') && c != QLatin1Char('\x7f') &&
               !QStringLiteral("\"#',.:[\\]{}<>&").contains(c) && !c.isSpace();
    };
    const auto startsNumber = [](QChar c) {
        return c.isDigit() || c == QLatin1Char('+') || c == QLatin1Char('-');
    };
    return !name.isEmpty() && !startsNumber(name.at(0)) && std::all_of(name.begin(), name.end(), isPart) &&
           !keywords.contains(name);
}

} // namespace

QString AuthorFields::add(Orvane::Node& node, const QString& dataType, const QString& fieldType,
                          const QString& name, const QString& defaultValue)
{
    if (!takesFields(node))
        return tr("%1: nodes of this type take no fields").arg(fromRuntime(node.type()->name));
    if (!isFieldName(name))
        return tr("\"%1\" cannot be the name of a field").arg(name);
    // The name of an event of an exposed field is taken as well.
    if (node.findField(toRuntime(name), Orvane::Node::DECLARED_FSO))
        return tr("there is a field \"%1\" already").arg(name);
    const Orvane::NodePartType access = QorNewFieldDialog::getNodePartType(fieldType);
    Orvane::Field* field =
        node.addField(toRuntime(name), Orvane::FieldType::dataType(toRuntime(dataType)), access);
    if (!field)
        return tr("there are no fields of type %1").arg(dataType);
    if (defaultValue.isEmpty())
        return {};
    std::string error;
    const bool hasValue = access & Orvane::FIELDP;
    if (hasValue && field->parseValue(toRuntime(defaultValue), error))
        return {};
    node.removeField(*field);
    return tr("\"%1\" cannot be the value of %2: %3")
        .arg(defaultValue, name, hasValue ? fromRuntime(error) : tr("an event has no value"));
}

QString AuthorFields::remove(Orvane::Node& node, const QString& name)
{
    Orvane::Field* field = node.findField(toRuntime(name), Orvane::Node::EXACT_FSO);
    if (!field)
        return tr("there is no field \"%1\": choose the cell of its name").arg(name);
    if (!field->_desc->objExt() || !node.removeField(*field))
        return tr("\"%1\" belongs to every %2 and stays").arg(name, fromRuntime(node.type()->name));
    return {};
}
