#pragma once

#include <QStringList>

/// What a line of the log speaks of, as far as its words tell.
struct LogPlace
{
    QString file;      ///< a file or an address; empty for none
    int line = 0;      ///< of the file, from 1; 0 for none
    int column = 0;    ///< of the line, from 1; 0 for none
    QStringList nodes; ///< what may be the name of a node, or its id such as "Shape#7", the likeliest first
    int codeLine = 0;  ///< of the code inside the first node, from 1; 0 for none

    static LogPlace of(const QString& text);
};
