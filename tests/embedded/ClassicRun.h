#pragma once

#include "ReaderRun.h"
#include "loader/ClassicReader.h"

/// Reads texts of the classic encodings.
class ClassicRun : public ReaderRun
{
public:
    bool readX3d(const std::string& text) { return read(Orvane::readClassic, text); }
    bool readVrml(const std::string& text) { return read(Orvane::readVrml97, text); }

    /// The events of a text behind a header.
    QStringList x3d(const std::string& text) { return eventsOf(readX3d("#X3D V3.3 utf8\n" + text)); }
    QStringList vrml(const std::string& text) { return eventsOf(readVrml("#VRML V2.0 utf8\n" + text)); }

    /// "a; b" as a list.
    static QStringList lines(const char* text)
    {
        return QString::fromLatin1(text).split(QStringLiteral("; "));
    }

private:
    QStringList eventsOf(bool isRead) const
    {
        return isRead ? recorder.events : QStringList(QStringLiteral("refused"));
    }
};
