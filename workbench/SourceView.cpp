#include "SourceView.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QTextBlock>
#include <QTextEdit>
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
    // Some lines of what follows are seen, too.
    QTextCursor below(_text->document()->findBlockByNumber(qMin(shown + 8, int(lines.size()) - 1)));
    _text->setTextCursor(below);
    cursor.setPosition(block.position() + qMin(offset, block.length() - 1));
    _text->setTextCursor(cursor);
    return true;
}
