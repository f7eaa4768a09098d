#pragma once

#include <QDialog>

class QTextEdit;

/// Shows the part of a file around a line, to read.
class SourceView : public QDialog
{
    Q_OBJECT

public:
    explicit SourceView(QWidget* parent);

    /// Shows line \a line, from 1, with the cursor at \a column, from 1 or 0. False when there is no such
    /// text.
    bool showLine(const QString& file, int line, int column);

protected:
    /// Only now the text knows its room.
    void showEvent(QShowEvent* event) override;

private:
    void centreLine();

    QTextEdit* _text;
};
