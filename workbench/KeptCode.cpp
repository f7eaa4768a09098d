#include "KeptCode.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QorTools.h>

using namespace Orvane::Qt4;

namespace {

const QString nameKey = QStringLiteral("node");
const QString typeKey = QStringLiteral("type");
const QString wayKey = QStringLiteral("way"); ///< "children 0 geometry 0"
const QString textKey = QStringLiteral("code");

QString wayText(const ScenePlace& place)
{
    QStringList parts;
    for (const ScenePlace::Turn& turn : place.way)
        parts << fromRuntime(turn.field) << QString::number(turn.index);
    return parts.join(QLatin1Char(' '));
}

std::vector<ScenePlace::Turn> wayOf(const QString& text)
{
    std::vector<ScenePlace::Turn> way;
    const QStringList parts = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (int i = 0; i + 1 < parts.size(); i += 2)
        way.push_back({toRuntime(parts.at(i)), parts.at(i + 1).toInt()});
    return way;
}

} // namespace

QByteArray KeptCode::toBytes(const std::vector<KeptCode>& codes)
{
    QJsonArray array;
    for (const KeptCode& code : codes)
        array.append(QJsonObject{{nameKey, fromRuntime(code.place.name)},
                                 {typeKey, fromRuntime(code.place.type)},
                                 {wayKey, wayText(code.place)},
                                 {textKey, code.text}});
    return array.isEmpty() ? QByteArray() : QJsonDocument(array).toJson();
}

std::vector<KeptCode> KeptCode::fromBytes(const QByteArray& bytes)
{
    std::vector<KeptCode> codes;
    const QJsonArray array = QJsonDocument::fromJson(bytes).array();
    for (const QJsonValue& value : array) {
        const QJsonObject object = value.toObject();
        KeptCode code;
        code.place.name = toRuntime(object.value(nameKey).toString());
        code.place.type = toRuntime(object.value(typeKey).toString());
        code.place.way = wayOf(object.value(wayKey).toString());
        code.text = object.value(textKey).toString();
        codes.push_back(code);
    }
    return codes;
}
