#include "LogPlace.h"

#include <QRegularExpression>

LogPlace LogPlace::of(const QString& text)
{
    LogPlace place;
    // Behind the word, so that file and line in the header of the log are not taken for those of the scene.
    static const QRegularExpression position(
        QStringLiteral("(?:ERROR|WARNING): (?!.*(?:ERROR|WARNING): )(.+?):(\\d+)(?::(\\d+))?: "));
    const QRegularExpressionMatch where = position.match(text);
    if (where.hasMatch()) {
        place.file = where.captured(1);
        place.line = where.captured(2).toInt();
        place.column = where.captured(3).toInt();
    }

    static const QRegularExpression code(QStringLiteral("\", line (\\d+) of its code"));
    const QRegularExpressionMatch inCode = code.match(text);
    if (inCode.hasMatch())
        place.codeLine = inCode.captured(1).toInt();
    else if (text.contains(QLatin1String(": Script \"")))
        place.codeLine = place.line;

    static const QRegularExpression named(QStringLiteral("(?:Script|Node) \"([^\"]+)\""));
    static const QRegularExpression quoted(QStringLiteral("\"([^\"]+)\""));
    static const QRegularExpression numbered(QStringLiteral("\\b(\\w+#\\d+)"));
    for (const QRegularExpression& each : {named, numbered, quoted}) {
        auto matches = each.globalMatch(text);
        while (matches.hasNext()) {
            const QString name = matches.next().captured(1);
            if (!place.nodes.contains(name))
                place.nodes << name;
        }
    }
    return place;
}
