#include "LineReporter.h"
#include <QorSyntaxHighlighter.h>
#include <QtGui/QTextBlock>
#include <QtGui/QTextCursor>
#include <QtWidgets/QApplication>
#include <QtWidgets/QTextEdit>
#include <functional>
#ifdef ORVANE_BENCH_KSYNTAX
#include <KSyntaxHighlighting/Definition>
#include <KSyntaxHighlighting/Repository>
#include <KSyntaxHighlighting/SyntaxHighlighter>
#include <KSyntaxHighlighting/Theme>
#endif

using namespace Orvane::Qt4;

namespace {

constexpr int largeText = 1 << 20;

const char* const ecmaLines[] = {
    "function moved(value, time) {",
    "    // Where the pointer is now, in the units of the scene",
    "    var place = new SFVec3f(value.x * 2.5, value.y, 0);",
    "    if (place.x < limit.x && typeof count !== 'undefined')",
    "        total[count++] = Math.sqrt(place.x * place.x + place.y * place.y);",
    "    /* several at once */ for (var i = 0; i < total.length; ++i) print(total[i]);",
    "    return 'not found: \"' + name + '\"';",
    "}",
    "",
};

const char* const glslLines[] = {
    "#define LIGHTS 4 // as many as there are",
    "varying vec3 normal;",
    "uniform sampler2D picture;",
    "void main(void) {",
    "    vec4 color = gl_FrontMaterial.ambient * gl_LightSource[0].ambient;",
    "    float angle = max(dot(normalize(normal), vec3(gl_LightSource[1].position)), 0.0);",
    "    color += texture2D(picture, gl_TexCoord[0].st) * angle; /* the picture */",
    "    gl_FragColor = clamp(color, 0.0, 1.0);",
    "}",
};

template <std::size_t N>
QString textOf(const char* const (&lines)[N], const std::function<bool(const QString&, int)>& isEnough)
{
    QString text;
    for (int i = 0; !isEnough(text, i); ++i)
        text += QLatin1String(lines[static_cast<std::size_t>(i) % N]) + QLatin1Char('\n');
    return text;
}

template <std::size_t N>
QString textOfSize(const char* const (&lines)[N], int size)
{
    return textOf(lines, [size](const QString& text, int) { return text.size() >= size; });
}

/// A text edit with a text, set up as that of the code widget.
struct Editor
{
    explicit Editor(const QString& text)
    {
        QTextOption option = edit.document()->defaultTextOption();
        option.setTextDirection(Qt::LeftToRight);
        edit.document()->setDefaultTextOption(option);
        edit.resize(800, 600);
        edit.setPlainText(text);
    }

    QTextEdit edit;
};

using MakeHighlighter = std::function<QSyntaxHighlighter*(QTextEdit&)>;

MakeHighlighter ours(QorCodeWidget::LanguageE language)
{
    return [language](QTextEdit& edit) {
        auto* highlighter = new QorSyntaxHighlighter(&edit, language);
        highlighter->setLanguage(language);
        return highlighter;
    };
}

bool isColoured(const QTextDocument& document)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (!block.layout()->formats().isEmpty())
            return true;
    }
    return false;
}

/// The whole text at once, as when it is opened; the layout is not part of it.
void highlightAll(benchmark::State& state, const MakeHighlighter& make, const QString& text)
{
    Editor editor(text);
    QSyntaxHighlighter* highlighter = make(editor.edit);
    for (auto step : state) {
        static_cast<void>(step);
        highlighter->rehighlight();
    }
    if (!isColoured(*editor.edit.document()))
        state.SkipWithError("nothing is coloured");
}

/// A key in the middle of a text on the screen, up to the finished picture.
void typeInTheMiddle(benchmark::State& state, const MakeHighlighter& make, const QString& text)
{
    Editor editor(text);
    QSyntaxHighlighter* highlighter = make(editor.edit);
    editor.edit.show();
    highlighter->rehighlight();
    QTextDocument& document = *editor.edit.document();
    editor.edit.setTextCursor(QTextCursor(document.findBlockByNumber(document.blockCount() / 2)));
    editor.edit.ensureCursorVisible();
    QApplication::processEvents();
    editor.edit.grab();
    for (auto step : state) {
        static_cast<void>(step);
        editor.edit.insertPlainText(QStringLiteral("x"));
        editor.edit.viewport()->repaint();
        state.PauseTiming();
        editor.edit.textCursor().deletePreviousChar();
        editor.edit.viewport()->repaint();
        state.ResumeTiming();
    }
    if (!isColoured(document))
        state.SkipWithError("nothing is coloured");
}

using Run = void (*)(benchmark::State&, const MakeHighlighter&, const QString&);

void add(const char* name, Run run, const MakeHighlighter& make, const QString& text, int iterations)
{
    const auto function = [=](benchmark::State& state) { run(state, make, text); };
    benchmark::RegisterBenchmark(name, function)->Unit(benchmark::kMillisecond)->Iterations(iterations);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QString ecma = textOfSize(ecmaLines, largeText);
    const QString glsl = textOfSize(glslLines, largeText);
    const QString tenThousand = textOf(ecmaLines, [](const QString&, int line) { return line == 10000; });
#ifdef ORVANE_BENCH_KSYNTAX
    KSyntaxHighlighting::Repository repository;
    const auto peer = [&repository](const char* language) -> MakeHighlighter {
        return [&repository, language](QTextEdit& edit) {
            auto* highlighter = new KSyntaxHighlighting::SyntaxHighlighter(&edit);
            highlighter->setTheme(repository.defaultTheme(KSyntaxHighlighting::Repository::LightTheme));
            highlighter->setDefinition(repository.definitionForName(QLatin1String(language)));
            return highlighter;
        };
    };
#endif
    add("highlight_ecma_1mb/orvane", highlightAll, ours(QorCodeWidget::LANGUAGE_ECMA), ecma, 3);
#ifdef ORVANE_BENCH_KSYNTAX
    add("highlight_ecma_1mb/ksyntaxhighlighting", highlightAll, peer("JavaScript"), ecma, 3);
#endif
    add("highlight_glsl_1mb/orvane", highlightAll, ours(QorCodeWidget::LANGUAGE_GLSL), glsl, 3);
#ifdef ORVANE_BENCH_KSYNTAX
    add("highlight_glsl_1mb/ksyntaxhighlighting", highlightAll, peer("GLSL"), glsl, 3);
#endif
    add("key_in_10k_lines/orvane", typeInTheMiddle, ours(QorCodeWidget::LANGUAGE_ECMA), tenThousand, 100);
#ifdef ORVANE_BENCH_KSYNTAX
    add("key_in_10k_lines/ksyntaxhighlighting", typeInTheMiddle, peer("JavaScript"), tenThousand, 5);
#endif
    return runBenchmarks(argc, argv);
}
