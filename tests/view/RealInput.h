#pragma once

#include <QElapsedTimer>
#include <QPoint>
#include <QProcess>
#include <QStringList>
#include <QTest>

/// What the devices of the X server do, by xdotool: the pointer, its buttons and wheel, and the keys. Places
/// are those of the screen. Each call is false when the server did not believe it, and handles the events
/// that come of it.
namespace RealInput {

inline bool run(const QStringList& words)
{
    const bool done = QProcess::execute(QStringLiteral("xdotool"), words) == 0;
    QTest::qWait(60);
    return done;
}

/// In the words of xdotool, with blanks between them.
inline bool say(const QString& words)
{
    return run(words.split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

inline bool moveTo(const QPoint& place)
{
    return say(QStringLiteral("mousemove %1 %2").arg(place.x()).arg(place.y()));
}

inline bool click(const QPoint& place, int button = 1)
{
    return say(QStringLiteral("mousemove %1 %2 click %3").arg(place.x()).arg(place.y()).arg(button));
}

inline bool doubleClick(const QPoint& place)
{
    return say(QStringLiteral("mousemove %1 %2 click --repeat 2 --delay 40 1").arg(place.x()).arg(place.y()));
}

/// Presses, moves in steps, and lets go.
inline bool drag(const QPoint& from, const QPoint& by, int button = 1)
{
    constexpr int steps = 4;
    bool done = moveTo(from) && say(QStringLiteral("mousedown %1").arg(button));
    for (int i = 1; i <= steps; ++i)
        done = done && moveTo(from + by * i / steps);
    return done && say(QStringLiteral("mouseup %1").arg(button));
}

/// One key after the other, each perhaps with others held: "ctrl+s Return".
inline bool keys(const QString& names)
{
    return say(QStringLiteral("key --delay 20 ") + names);
}

inline bool type(const QString& text)
{
    return run(
        {QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("8"), QStringLiteral("--"), text});
}

/// Waits for what is to come about.
template <class Condition>
bool comesTrue(Condition isTrue, int milliseconds = 10000)
{
    QElapsedTimer timer;
    timer.start();
    while (!isTrue()) {
        if (timer.elapsed() > milliseconds)
            return false;
        QTest::qWait(20);
    }
    return true;
}

} // namespace RealInput
