#include "LineReporter.h"
#include <QorLogView.h>
#include <QtCore/QTimerEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTextEdit>
#include <string>
#include <vector>

namespace {

constexpr int lineCount = 100000;
constexpr int repeatCount = 1000000;

const char* const levels[] = {"LOG", "FATAL", "WARNING", "NOTICE", "INFO", "DEBUG"};
const QColor colors[] = {QColor(0, 128, 0), QColor(255, 0, 0), QColor(128, 0, 0),
                         QColor(0, 0, 0),   QColor(0, 0, 128), QColor(128, 128, 0)};

std::vector<std::string> distinctLines(int count)
{
    std::vector<std::string> lines;
    for (int i = 0; i < count; ++i)
        lines.push_back(std::string(levels[i % 6]) + ": Scene::load() node " + std::to_string(i) +
                        " has no field of that name\n");
    return lines;
}

/// Prints when it is told to, and not only when its timer runs out.
class View : public Orvane::Qt4::QorLogView
{
public:
    View()
    {
        while (_timer < 0)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    void print()
    {
        QTimerEvent event(_timer);
        QorLogView::timerEvent(&event);
    }

protected:
    void timerEvent(QTimerEvent* event) override { _timer = event->timerId(); }

private:
    int _timer = -1;
};

void paint(QWidget& widget)
{
    widget.grab();
}

void logLines(benchmark::State& state, const std::vector<std::string>& lines)
{
    for (auto step : state) {
        static_cast<void>(step);
        state.PauseTiming();
        View view;
        view.resize(800, 400);
        view.show();
        QApplication::processEvents();
        state.ResumeTiming();
        for (const std::string& line : lines)
            view.addLogData(line.data(), static_cast<int>(line.size()));
        view.print();
        paint(view);
        auto* pane = view.findChild<QTextEdit*>();
        if (pane->document()->blockCount() < 2 ||
            pane->verticalScrollBar()->value() != pane->verticalScrollBar()->maximum())
            state.SkipWithError("the lines are not in the pane");
    }
}

/// What a host would write by hand, line by line.
void appendLines(benchmark::State& state, const std::vector<std::string>& lines)
{
    for (auto step : state) {
        static_cast<void>(step);
        state.PauseTiming();
        QTextEdit pane;
        pane.setReadOnly(true);
        pane.setUndoRedoEnabled(false);
        pane.setLineWrapMode(QTextEdit::NoWrap);
        pane.resize(800, 400);
        pane.show();
        QApplication::processEvents();
        state.ResumeTiming();
        for (std::size_t i = 0; i < lines.size(); ++i) {
            pane.setTextColor(colors[i % 6]);
            pane.append(QString::fromLatin1(lines[i].data(), static_cast<int>(lines[i].size()) - 1));
        }
        paint(pane);
    }
}

void add(const char* name, void (*function)(benchmark::State&, const std::vector<std::string>&),
         const std::vector<std::string>& lines)
{
    benchmark::RegisterBenchmark(name, function, lines)->Unit(benchmark::kMillisecond)->Iterations(1);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const auto lines = distinctLines(lineCount);
    add("log_100k_lines/orvane", logLines, lines);
    add("log_1m_equal_lines/orvane", logLines,
        std::vector<std::string>(repeatCount, "WARNING: the same line again\n"));
    add("log_10k_lines/orvane", logLines, distinctLines(lineCount / 10));
    add("log_10k_lines/append", appendLines, distinctLines(lineCount / 10));
    return runBenchmarks(argc, argv);
}
