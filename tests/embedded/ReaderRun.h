#pragma once

#include "SinkRecorder.h"
#include "loader/LoadMessages.h"
#include "loader/SourceText.h"
#include <QStringList>
#include <string>

/// What a reader has last told of a text, and its messages.
class ReaderRun
{
public:
    using Reader = bool (*)(Orvane::SourceText&, Orvane::SceneSink&, Orvane::LoadMessages&);

    /// False when the reader refuses the text.
    bool read(Reader reader, const std::string& text)
    {
        recorder.events.clear();
        report = Orvane::LoadReport();
        std::size_t leftOut = 0;
        Orvane::LoadMessages messages(report, leftOut, "file");
        Orvane::SourceText source;
        Orvane::SourceFault fault;
        return source.takeText(text, fault) && reader(source, recorder, messages);
    }
    /// The messages as "line:column: text".
    QStringList messages() const
    {
        QStringList list;
        for (const Orvane::LoadMessage& message : report.messages)
            list << QString::fromStdString(message.toString()).mid(5);
        return list;
    }

    SinkRecorder recorder;
    Orvane::LoadReport report;
};
