#include "SourceView.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextEdit>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int linesAround = 200;
constexpr int longestLine = 2000; // characters; text edits are slow with longer ones
constexpr qint64 mostBytes = qint64(1) << 28;

} // namespace

SourceView::SourceView(QWidget* parent)
    : QDialog(parent)
    , _text(new QTextEdit(this))
{
    _text->setReadOnly(true);
    _text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    _text->setLineWrapMode(QTextEdit::NoWrap);
    _text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(_text);
    layout->addWidget(buttons);
    const QFontMetrics metrics(_text->font());
    resize(metrics.averageCharWidth() * 100, metrics.lineSpacing() * 30);
}

bool SourceView::showLine(const QString& file, int line, int column)
{
    QFile source(file);
    if (line < 1 || !QFileInfo(file).isFile() || source.size() > mostBytes ||
        !source.open(QIODevice::ReadOnly))
        return false;
    QStringList lines;
    int number = 0;
    int shown = -1;
    int offset = 0;
    while (!source.atEnd() && number < line + linesAround) {
        const QByteArray read = source.readLine();
        if (++number < line - linesAround)
            continue;
        if (number == 1 && read.startsWith("\x1f\x8b"))
            return false; // packed
        const QString prefix = QStringLiteral("%1  ").arg(number, 6);
        if (number == line) {
            shown = static_cast<int>(lines.size());
            // Columns count bytes.
            offset = prefix.size() + QString::fromUtf8(read.left(qMax(0, column - 1))).size();
        }
        QString text = QString::fromUtf8(read);
        while (text.endsWith(QLatin1Char('\n')) || text.endsWith(QLatin1Char('\r')))
            text.chop(1);
        lines << prefix + text.left(longestLine);
    }
    if (shown < 0)
        return false;

    setWindowTitle(tr("%1, line %2").arg(QFileInfo(file).fileName()).arg(line));
    _text->setPlainText(lines.join(QLatin1Char('\n')));
    const QTextBlock block = _text->document()->findBlockByNumber(shown);
    QTextCursor cursor(block);
    QTextEdit::ExtraSelection mark;
    mark.cursor = cursor;
    mark.format.setProperty(QTextFormat::FullWidthSelection, true);
    mark.format.setBackground(palette().highlight());
    mark.format.setForeground(palette().highlightedText());
    _text->setExtraSelections({mark});
    cursor.setPosition(block.position() + qMin(offset, block.length() - 1));
    _text->setTextCursor(cursor);
    centreLine();
    return true;
}

/// The line stands among those around it, with its number where the column leaves room for that.
void SourceView::centreLine()
{
    const int half = _text->viewport()->height() / 2;
    QScrollBar* const down = _text->verticalScrollBar();
    down->setValue(down->value() + _text->cursorRect().center().y() - half);
    _text->horizontalScrollBar()->setValue(0);
    _text->ensureCursorVisible();
}

void SourceView::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    QTimer::singleShot(0, this, &SourceView::centreLine);
}
