#include "PlainHighlighter.h"
#include "QorTools.h"
#include "tinyruntime/Tiny.h"
#include <Orvane/NodeType.h>
#include <QtCore/QRandomGenerator>
#include <QtGui/QTextBlock>
#include <QtGui/QTextLayout>
#include <QtTest>

using namespace Orvane::Qt4;

Q_DECLARE_METATYPE(Orvane::Qt4::QorCodeWidget::LanguageE)

class tst_QorSyntaxHighlighter : public QObject
{
    Q_OBJECT

private slots:
    void coloursAndFontsAtFirst();
    void typeWithoutEntryFallsBack();
    void setterReplacesTheEntry();
    void setterTakesEffectAtTheNextHighlighting();
    void languageIsKept();
    void languageOfTheConstructorHasNoExpressions_data();
    void languageOfTheConstructorHasNoExpressions();
    void setLanguageTriggersNothing();
    void codeIsPainted_data();
    void codeIsPainted();
    void everyKeywordIsPainted_data();
    void everyKeywordIsPainted();
    void everyVariableHasItsMembers();
    void fontsFollowTheRules();
    void textBehindAnOpenCommentIsPaintedAnew();
    void randomCodeIsPaintedAsByTheExpressions_data();
    void randomCodeIsPaintedAsByTheExpressions();
    void hugeLineIsPainted_data();
    void hugeLineIsPainted();
    // These register node types and come last.
    void typeOfLaterIsUncolouredUntilTheLanguageIsSetAgain();
    void typeNameThatIsNoWordGoesByTheExpression();
    void emptyTypeNameEndsTheSearch();
};

namespace {

const QorCodeWidget::LanguageE Languages[] = {QorCodeWidget::LANGUAGE_NONE,  QorCodeWidget::LANGUAGE_ECMA,
                                              QorCodeWidget::LANGUAGE_PLAIN, QorCodeWidget::LANGUAGE_GLSL,
                                              QorCodeWidget::LANGUAGE_CG,    QorCodeWidget::LANGUAGE_OTHER,
                                              QorCodeWidget::LANGUAGE_X3D};

constexpr int TypeCount = 7;

QorSyntaxHighlighter::BlockType blockType(int i)
{
    return static_cast<QorSyntaxHighlighter::BlockType>(i);
}

QColor markColour(int type)
{
    return {10 + type, 20, 30};
}

/// The formats of a document, a character for a character: the number of the block type, "-" for a font
/// without colour, "." for no format. Lines are parted by "\n".
QString paintOf(const QTextDocument& document)
{
    QStringList lines;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        QString line(block.text().size(), QLatin1Char('.'));
        for (const auto& range : block.layout()->formats()) {
            QChar mark = QLatin1Char('?');
            if (!range.format.hasProperty(QTextFormat::ForegroundBrush))
                mark = QLatin1Char('-');
            for (int type = 0; type < TypeCount; ++type) {
                if (range.format.foreground() == QBrush(markColour(type)))
                    mark = QString::number(type).at(0);
            }
            line.replace(range.start, range.length, QString(range.length, mark));
        }
        lines << line;
    }
    return lines.join(QLatin1Char('\n'));
}

/// The states of the blocks, parted by blanks.
QString statesOf(const QTextDocument& document)
{
    QStringList states;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        states << QString::number(block.userState());
    return states.join(QLatin1Char(' '));
}

/// An edit with a highlighter, whose block types have a colour each.
struct Code
{
    explicit Code(QorCodeWidget::LanguageE language)
        : highlighter(new QorSyntaxHighlighter(&edit, QorCodeWidget::LANGUAGE_NONE))
    {
        for (int type = 0; type < TypeCount; ++type)
            highlighter->setBlockColor(blockType(type), markColour(type));
        highlighter->setLanguage(language);
    }

    QString paint(const QString& text)
    {
        edit.setPlainText(text);
        highlighter->rehighlight();
        return paintOf(*edit.document());
    }
    QString states() const { return statesOf(*edit.document()); }

    QTextEdit edit;
    QorSyntaxHighlighter* highlighter;
};

QStringList wordsOf(const char* pattern)
{
    const QString text = QString::fromLatin1(pattern);
    return text.mid(3, text.size() - 6).split(QLatin1Char('|'));
}

QStringList typeNames()
{
    std::vector<Orvane::NodeType*> types;
    Orvane::NodeType::getTypeVec(types, 1);
    QStringList names;
    for (const Orvane::NodeType* type : types)
        names << fromRuntime(type->name);
    return names;
}

} // namespace

void tst_QorSyntaxHighlighter::coloursAndFontsAtFirst()
{
    QTextEdit edit;
    const QorSyntaxHighlighter highlighter(&edit, QorCodeWidget::LANGUAGE_NONE);
    QCOMPARE(highlighter.document(), edit.document());
    const QColor colours[] = {QColor(0, 0, 0, 255),      QColor(0, 0, 255, 255),   QColor(200, 0, 100, 255),
                              QColor(130, 50, 180, 255), QColor(100, 155, 0, 255), QColor(10, 200, 50, 255),
                              QColor(10, 200, 50, 255)};
    QFont font(QStringLiteral("SansSerif"), 8, 50, false);
    font.setStyleHint(QFont::TypeWriter, QFont::PreferDefault);
    for (int type = 0; type < TypeCount; ++type) {
        QCOMPARE(highlighter.blockColor(blockType(type)), colours[type]);
        QCOMPARE(highlighter.blockFont(blockType(type)), font);
        QCOMPARE(highlighter.blockFont(blockType(type)).styleHint(), QFont::TypeWriter);
        QCOMPARE(highlighter.blockFont(blockType(type)).styleStrategy(), QFont::PreferDefault);
    }
}

void tst_QorSyntaxHighlighter::typeWithoutEntryFallsBack()
{
    QTextEdit edit;
    QorSyntaxHighlighter highlighter(&edit, QorCodeWidget::LANGUAGE_NONE);
    highlighter.setBlockColor(QorSyntaxHighlighter::BLOCK_DEFAULT, Qt::red);
    const QFont font(QStringLiteral("Serif"), 20);
    highlighter.setBlockFont(QorSyntaxHighlighter::BLOCK_DEFAULT, font);
    QCOMPARE(highlighter.blockColor(blockType(7)), QColor(0, 0, 0, 255));
    QCOMPARE(highlighter.blockFont(blockType(7)), font);
    highlighter.setBlockColor(blockType(7), Qt::blue);
    QCOMPARE(highlighter.blockColor(blockType(7)), QColor(Qt::blue));
}

void tst_QorSyntaxHighlighter::setterReplacesTheEntry()
{
    QTextEdit edit;
    QorSyntaxHighlighter highlighter(&edit, QorCodeWidget::LANGUAGE_NONE);
    for (int type = 0; type < TypeCount; ++type) {
        highlighter.setBlockColor(blockType(type), markColour(type));
        highlighter.setBlockFont(blockType(type), QFont(QStringLiteral("Serif"), 10 + type));
    }
    for (int type = 0; type < TypeCount; ++type) {
        QCOMPARE(highlighter.blockColor(blockType(type)), markColour(type));
        QCOMPARE(highlighter.blockFont(blockType(type)).pointSize(), 10 + type);
    }
}

void tst_QorSyntaxHighlighter::setterTakesEffectAtTheNextHighlighting()
{
    Code code(QorCodeWidget::LANGUAGE_ECMA);
    QCOMPARE(code.paint(QStringLiteral("if")), QStringLiteral("11"));
    code.highlighter->setBlockColor(QorSyntaxHighlighter::BLOCK_KEYWORD, markColour(3));
    QCoreApplication::processEvents();
    QCOMPARE(paintOf(*code.edit.document()), QStringLiteral("11"));
    code.highlighter->rehighlight();
    QCOMPARE(paintOf(*code.edit.document()), QStringLiteral("33"));
}

void tst_QorSyntaxHighlighter::languageIsKept()
{
    QTextEdit edit;
    for (const auto language : Languages) {
        QorSyntaxHighlighter highlighter(&edit, language);
        QCOMPARE(highlighter.language(), language);
        for (const auto next : Languages) {
            highlighter.setLanguage(next);
            QCOMPARE(highlighter.language(), next);
        }
    }
    QCOMPARE(int(QorCodeWidget::LANGUAGE_NONE), 0);
    QCOMPARE(int(QorCodeWidget::LANGUAGE_X3D), 6);
}

void tst_QorSyntaxHighlighter::languageOfTheConstructorHasNoExpressions_data()
{
    QTest::addColumn<QorCodeWidget::LanguageE>("language");
    QTest::addColumn<QChar>("base");
    QTest::newRow("ECMAScript") << QorCodeWidget::LANGUAGE_ECMA << QChar(QLatin1Char('0'));
    QTest::newRow("GLSL") << QorCodeWidget::LANGUAGE_GLSL << QChar(QLatin1Char('-'));
    QTest::newRow("Cg") << QorCodeWidget::LANGUAGE_CG << QChar(QLatin1Char('-'));
    QTest::newRow("X3D") << QorCodeWidget::LANGUAGE_X3D << QChar(QLatin1Char('0'));
}

void tst_QorSyntaxHighlighter::languageOfTheConstructorHasNoExpressions()
{
    QFETCH(QorCodeWidget::LanguageE, language);
    QFETCH(QChar, base);
    QTextEdit edit;
    QorSyntaxHighlighter highlighter(&edit, language);
    highlighter.setBlockColor(QorSyntaxHighlighter::BLOCK_DEFAULT, markColour(0));
    const QString text = QStringLiteral("#if gl_Color if /* Scene */ // sin");
    edit.setPlainText(text);
    highlighter.rehighlight();
    QCOMPARE(paintOf(*edit.document()), QString(text.size(), base));
    QCOMPARE(statesOf(*edit.document()), QStringLiteral("0"));
}

void tst_QorSyntaxHighlighter::setLanguageTriggersNothing()
{
    Code code(QorCodeWidget::LANGUAGE_NONE);
    QCOMPARE(code.paint(QStringLiteral("if")), QStringLiteral(".."));
    code.highlighter->setLanguage(QorCodeWidget::LANGUAGE_ECMA);
    QCoreApplication::processEvents();
    QCOMPARE(paintOf(*code.edit.document()), QStringLiteral(".."));
    code.highlighter->setDocument(code.edit.document());
    QCoreApplication::processEvents();
    QCOMPARE(paintOf(*code.edit.document()), QStringLiteral("11"));
}

void tst_QorSyntaxHighlighter::codeIsPainted_data()
{
    QTest::addColumn<QorCodeWidget::LanguageE>("language");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("paint");
    QTest::addColumn<QString>("states");
    const auto row = [](const char* name, QorCodeWidget::LanguageE language, const QString& code,
                        const char* paint, const char* states) {
        QTest::newRow(name) << language << code << QString::fromLatin1(paint) << QString::fromLatin1(states);
    };
    const auto ecma = [&](const char* name, const QString& code, const char* paint, const char* states) {
        row(name, QorCodeWidget::LANGUAGE_ECMA, code, paint, states);
    };
    const auto glsl = [&](const char* name, const QString& code, const char* paint, const char* states) {
        row(name, QorCodeWidget::LANGUAGE_GLSL, code, paint, states);
    };

    ecma("ECMAScript, keywords", QStringLiteral("function f(a) { return a; }"), "111111110000000011111100000",
         "0");
    ecma("ECMAScript, no words inside words", QStringLiteral("iff _if if1 If $if"),
         "0000000000000000"
         "11",
         "0");
    ecma("ECMAScript, no rule for strings and numbers", QStringLiteral("x = \"if\" + 'in' + 12.5"),
         "0000011000001100000000", "0");
    ecma("ECMAScript, line comment over keywords", QStringLiteral("var a // if\nif"), "11100066666\n11",
         "0 0");
    ecma("ECMAScript, several line comment marks", QStringLiteral("a // b // c"), "00666666666", "0");
    ecma("ECMAScript, form feeds behind a line comment", QStringLiteral("//a\f\f"), "66600", "0");
    ecma("ECMAScript, form feed inside a line comment", QStringLiteral("//a\fb"), "66666", "0");
    ecma("ECMAScript, comment inside a line", QStringLiteral("if /* if */ if"), "11055555555011", "0");
    ecma("ECMAScript, several comments", QStringLiteral("/*a*/ if /*b*/"), "55555011055555", "0");
    ecma("ECMAScript, comments without a gap", QStringLiteral("/*a*//*b*/ if"),
         "55555"
         "66666666",
         "0");
    ecma("ECMAScript, a character between comments", QStringLiteral("/*a*/x/*b*/if"), "5555505555511", "0");
    ecma("ECMAScript, star of the start as the end", QStringLiteral("/*/ if"), "555011", "0");
    ecma("ECMAScript, comment over two lines", QStringLiteral("if /* a\nb */ if\nif"), "1105555\n5555000\n11",
         "1 0 0");
    ecma("ECMAScript, inner lines of a comment", QStringLiteral("/*\nif\n\n// if\n*/\nif"),
         "55\n55\n\n55555\n55\n11", "1 1 1 1 0 0");
    ecma("ECMAScript, start mark in a line comment", QStringLiteral("// a /* b\nif */"), "666665555\n55555",
         "1 0");
    ecma("ECMAScript, whole comment in a line comment", QStringLiteral("// /*a*/ b"), "6665555566", "0");
    ecma("ECMAScript, line comment in a comment", QStringLiteral("/* // */ if"), "55555555666", "0");
    ecma("ECMAScript, start mark behind the end of a comment", QStringLiteral("/*\n*/ /* if\nif"),
         "55\n55000000\n11", "1 0 0");
    ecma("ECMAScript, end without a start", QStringLiteral("*/ if"), "00011", "0");
    ecma("ECMAScript, no text", QString(), "", "0");
    ecma("ECMAScript, URL prefix", QStringLiteral("javascript: var a"), "00000000000011100", "0");

    glsl("GLSL, base has no colour", QStringLiteral("x = 1.0;"), "--------", "0");
    glsl("GLSL, keywords and functions", QStringLiteral("void main() { x = sin(y); }"),
         "1111-1111---------444------", "0");
    glsl("GLSL, variable", QStringLiteral("gl_Position = gl_Vertex;"), "222222222222--222222222-", "0");
    glsl("GLSL, name, index, member, swizzle", QStringLiteral("gl_LightSource[0].position.xyz;"),
         "222222222222222222222222222222-", "0");
    glsl("GLSL, index by name", QStringLiteral("gl_LightSource[i].diffuse"), "2222222222222222222222222",
         "0");
    glsl("GLSL, two digits", QStringLiteral("gl_TexCoord[12].st;"), "222222222222222222-", "0");
    glsl("GLSL, digits that are no index", QStringLiteral("gl_TexCoord[012];"), "22222222222------", "0");
    glsl("GLSL, swizzle with a letter that is none", QStringLiteral("gl_Color.xa1;"), "22222222-----", "0");
    glsl("GLSL, swizzle of five", QStringLiteral("gl_Color.xyzwx;"), "22222222-------", "0");
    glsl("GLSL, swizzle at the end of the line", QStringLiteral("gl_Color.rgb"), "22222222----", "0");
    glsl("GLSL, blanks in between", QStringLiteral("gl_Fog . color . r ;"), "222222222222222222--", "0");
    glsl("GLSL, blanks behind are coloured", QStringLiteral("gl_Color  + x"), "2222222222---", "0");
    glsl("GLSL, suffix of another name", QStringLiteral("gl_Color v[2].xy;"), "222222222-222222-", "0");
    glsl("GLSL, keyword inside an index", QStringLiteral("gl_TexCoord[in];"), "222222222222112-", "0");
    glsl("GLSL, unknown and longer names", QStringLiteral("gl_Foo gl_Colors my_gl_Color"),
         "----------------------------", "0");
    glsl("GLSL, preprocessor", QStringLiteral("#define X 1"), "44444444444", "0");
    glsl("GLSL, preprocessor before a line comment", QStringLiteral("#define X // c"), "44444444446666", "0");
    glsl("GLSL, preprocessor before a comment", QStringLiteral("#if /*a*/ 1"), "444455555--", "0");
    glsl("GLSL, preprocessor over keywords and variables", QStringLiteral("#define f float(gl_Color)"),
         "4444444444444444444444444", "0");
    glsl("GLSL, preprocessor behind blanks", QStringLiteral("  # if 1"), "44444444", "0");
    glsl("GLSL, preprocessor behind a word", QStringLiteral("x #if 1"), "---11--", "0");
    glsl("GLSL, unknown preprocessor word", QStringLiteral("#foo if"), "-----11", "0");
    glsl("GLSL, form feed behind a preprocessor line", QStringLiteral("#endif\f"), "444444-", "0");
    glsl("GLSL, line comment", QStringLiteral("float a; // if"), "11111----66666", "0");
    glsl("GLSL, comment over two lines", QStringLiteral("if /* a\nb */ if\nif"), "11-5555\n6666---\n11",
         "1 0 0");
    glsl("GLSL, inner lines of a comment stay uncoloured", QStringLiteral("/* a\nif\n\nb */ if"),
         "5555\n--\n\n6666---", "1 1 1 0");
    glsl("GLSL, start mark in a line comment", QStringLiteral("// a /* b\nif */"), "666665555\n66666", "1 0");
    row("Cg is GLSL", QorCodeWidget::LANGUAGE_CG, QStringLiteral("#if\nfloat sin gl_Color /*\nx\n*/"),
        "444\n11111-444-22222222255\n-\n66", "0 1 1 0");

    row("X3D, node types", QorCodeWidget::LANGUAGE_X3D, QStringLiteral("<Scene DEF='Engine'> Scenes"),
        "011111000000111111000000000", "0");
    row("X3D, no rule for comments", QorCodeWidget::LANGUAGE_X3D,
        QStringLiteral("<!-- Scene /* --> // Scene\nScene"), "00000111110000000000011111\n11111", "0 0");
    for (const auto none :
         {QorCodeWidget::LANGUAGE_NONE, QorCodeWidget::LANGUAGE_PLAIN, QorCodeWidget::LANGUAGE_OTHER})
        row(qPrintable(QStringLiteral("language %1 does nothing").arg(none)), none,
            QStringLiteral("if /* gl_Color\nScene"), "..............\n.....", "-1 -1");
}

void tst_QorSyntaxHighlighter::codeIsPainted()
{
    QFETCH(QorCodeWidget::LanguageE, language);
    QFETCH(QString, code);
    QFETCH(QString, paint);
    QFETCH(QString, states);
    Code shown(language);
    const QString seen = shown.paint(code);
    QVERIFY2(seen == paint, qPrintable(QStringLiteral("\n%1\n%2 seen\n%3 told").arg(code, seen, paint)));
    QCOMPARE(shown.states(), states);
}

void tst_QorSyntaxHighlighter::everyKeywordIsPainted_data()
{
    QTest::addColumn<QorCodeWidget::LanguageE>("language");
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QChar>("mark");
    QTest::newRow("ECMAScript") << QorCodeWidget::LANGUAGE_ECMA << wordsOf(HighlightPatterns::EcmaKeyword)
                                << QChar(QLatin1Char('1'));
    QTest::newRow("GLSL") << QorCodeWidget::LANGUAGE_GLSL << wordsOf(HighlightPatterns::GlslKeyword)
                          << QChar(QLatin1Char('1'));
    QTest::newRow("GLSL, functions") << QorCodeWidget::LANGUAGE_GLSL
                                     << wordsOf(HighlightPatterns::GlslFunction) << QChar(QLatin1Char('4'));
    QTest::newRow("X3D") << QorCodeWidget::LANGUAGE_X3D << typeNames() << QChar(QLatin1Char('1'));
}

void tst_QorSyntaxHighlighter::everyKeywordIsPainted()
{
    QFETCH(QorCodeWidget::LanguageE, language);
    QFETCH(QStringList, words);
    QFETCH(QChar, mark);
    QVERIFY(words.size() >= 3);
    Code code(language);
    for (const QString& word : qAsConst(words))
        QCOMPARE(code.paint(word), QString(word.size(), mark));
}

void tst_QorSyntaxHighlighter::everyVariableHasItsMembers()
{
    const QStringList light = {QStringLiteral("ambient"), QStringLiteral("diffuse"),
                               QStringLiteral("specular")};
    const QStringList material = light + QStringList{QStringLiteral("emission"), QStringLiteral("shininess")};
    const QList<QPair<QString, QStringList>> members = {
        {QStringLiteral("gl_BackLightModelProduct"), {QStringLiteral("sceneColor")}},
        {QStringLiteral("gl_FrontLightModelProduct"), {QStringLiteral("sceneColor")}},
        {QStringLiteral("gl_BackLightProduct[1]"), light},
        {QStringLiteral("gl_FrontLightProduct"), light},
        {QStringLiteral("gl_BackMaterial"), material},
        {QStringLiteral("gl_FrontMaterial"), material},
        {QStringLiteral("gl_DepthRange"),
         {QStringLiteral("near"), QStringLiteral("far"), QStringLiteral("diff")}},
        {QStringLiteral("gl_Fog"),
         {QStringLiteral("color"), QStringLiteral("density"), QStringLiteral("start"), QStringLiteral("end"),
          QStringLiteral("scale")}},
        {QStringLiteral("gl_LightModel"), {QStringLiteral("ambient")}},
        {QStringLiteral("gl_LightSource[ab_1]"),
         light + QStringList{QStringLiteral("position"), QStringLiteral("halfVector"),
                             QStringLiteral("spotDirection"), QStringLiteral("spotExponent"),
                             QStringLiteral("spotCutoff"), QStringLiteral("spotCosCutoff"),
                             QStringLiteral("constantAttenuation"), QStringLiteral("linearAttenuation"),
                             QStringLiteral("quadraticAttenuation")}},
        {QStringLiteral("gl_Point"),
         {QStringLiteral("size"), QStringLiteral("sizeMin"), QStringLiteral("sizeMax"),
          QStringLiteral("fadeThresholdSize"), QStringLiteral("distanceConstantAttenuation"),
          QStringLiteral("distanceLinearAttenuation"), QStringLiteral("distanceQuadraticAttenuation")}},
    };
    Code code(QorCodeWidget::LANGUAGE_GLSL);
    for (const auto& [name, names] : members) {
        for (const QString& member : names) {
            const QString text = name + QLatin1Char('.') + member + QLatin1Char(';');
            QCOMPARE(code.paint(text), QString(text.size() - 1, QLatin1Char('2')) + QLatin1Char('-'));
        }
        const QString unknown = name + QStringLiteral(".other;");
        QVERIFY(code.paint(unknown).endsWith(QStringLiteral("-------")));
    }
}

void tst_QorSyntaxHighlighter::fontsFollowTheRules()
{
    Code code(QorCodeWidget::LANGUAGE_GLSL);
    for (int type = 0; type < TypeCount; ++type)
        code.highlighter->setBlockFont(blockType(type), QFont(QStringLiteral("Serif"), 10 + type));
    code.paint(QStringLiteral("x if gl_Color; sin //\n/* a"));
    const QTextBlock block = code.edit.document()->begin();
    const auto sizeAt = [&](int position) {
        for (const auto& range : block.layout()->formats()) {
            if (position >= range.start && position < range.start + range.length)
                return range.format.font().pointSize();
        }
        return -1;
    };
    QCOMPARE(sizeAt(0), 10);
    QCOMPARE(sizeAt(2), 11);
    QCOMPARE(sizeAt(5), 12);
    QCOMPARE(sizeAt(15), 14);
    QCOMPARE(sizeAt(19), 16);
    QCOMPARE(block.next().layout()->formats().first().format.font().pointSize(), 15);
}

void tst_QorSyntaxHighlighter::textBehindAnOpenCommentIsPaintedAnew()
{
    Code code(QorCodeWidget::LANGUAGE_ECMA);
    QCOMPARE(code.paint(QStringLiteral("a\nif\nif")), QStringLiteral("0\n11\n11"));
    QTextCursor cursor(code.edit.document());
    cursor.insertText(QStringLiteral("/*"));
    QCOMPARE(paintOf(*code.edit.document()), QStringLiteral("555\n55\n55"));
    QCOMPARE(code.states(), QStringLiteral("1 1 1"));
    cursor.insertText(QStringLiteral("*/"));
    QCOMPARE(paintOf(*code.edit.document()), QStringLiteral("55550\n11\n11"));
    QCOMPARE(code.states(), QStringLiteral("0 0 0"));
}

void tst_QorSyntaxHighlighter::randomCodeIsPaintedAsByTheExpressions_data()
{
    QTest::addColumn<QorCodeWidget::LanguageE>("language");
    QTest::newRow("ECMAScript") << QorCodeWidget::LANGUAGE_ECMA;
    QTest::newRow("GLSL") << QorCodeWidget::LANGUAGE_GLSL;
    QTest::newRow("X3D") << QorCodeWidget::LANGUAGE_X3D;
}

void tst_QorSyntaxHighlighter::randomCodeIsPaintedAsByTheExpressions()
{
    QFETCH(QorCodeWidget::LanguageE, language);
    const QStringList pieces =
        wordsOf(HighlightPatterns::EcmaKeyword).mid(0, 8) +
        wordsOf(HighlightPatterns::GlslKeyword).mid(0, 8) +
        wordsOf(HighlightPatterns::GlslFunction).mid(0, 8) + typeNames() +
        QStringLiteral(
            "gl_Color gl_LightSource gl_LightModel gl_Fog gl_FrontLightProduct gl_Foo gl_ gl_Point "
            "ambient position size sizeMin color .xyz .rgba .stp xy [0] [12] [i] [ ] [ 1 ] . . [ ] "
            "# #define #if define if // // /* */ /* */ / * /*/ a b1 _c 0 12 1.5 + - ; ( ) \" \\ $")
            .split(QLatin1Char(' ')) +
        QStringList{QStringLiteral(" "),      QStringLiteral(" "),      QStringLiteral("  "),
                    QStringLiteral("\t"),     QStringLiteral("\f"),     QStringLiteral("\u2028"),
                    QStringLiteral("\u00a0"), QStringLiteral("\u0085"), QStringLiteral("\u00e4"),
                    QStringLiteral("\u0301"), QStringLiteral("\u0663"), QStringLiteral("\u203f"),
                    QStringLiteral("\uff3f"), QStringLiteral("\u4e2d"), QStringLiteral("\U0001F600"),
                    QStringLiteral("\v")};
    QRandomGenerator random(20);
    Code code(language);
    QTextEdit plainEdit;
    PlainHighlighter plain(&plainEdit, *code.highlighter, language, typeNames());
    QString painted;
    for (int document = 0; document < 60; ++document) {
        QString text;
        for (int line = 0; line < 40; ++line) {
            for (int count = random.bounded(14); count > 0; --count)
                text += random.bounded(40) == 0 ? QString(QChar(random.bounded(0x20, 0xfdd0)))
                                                : pieces.at(random.bounded(pieces.size()));
            text += QLatin1Char('\n');
        }
        const QString seen = code.paint(text);
        plainEdit.setPlainText(text);
        plain.rehighlight();
        const QStringList seenLines = seen.split(QLatin1Char('\n'));
        const QStringList plainLines = paintOf(*plainEdit.document()).split(QLatin1Char('\n'));
        QCOMPARE(seenLines.size(), plainLines.size());
        for (int i = 0; i < seenLines.size(); ++i) {
            if (seenLines.at(i) != plainLines.at(i))
                QFAIL(qPrintable(QStringLiteral("\n%1\n%2 seen\n%3 plain")
                                     .arg(code.edit.document()->findBlockByNumber(i).text(), seenLines.at(i),
                                          plainLines.at(i))));
        }
        QCOMPARE(code.states(), statesOf(*plainEdit.document()));
        painted += seen;
    }
    const QString marks = language == QorCodeWidget::LANGUAGE_ECMA   ? QStringLiteral("0156")
                          : language == QorCodeWidget::LANGUAGE_GLSL ? QStringLiteral("-12456")
                                                                     : QStringLiteral("01");
    for (const QChar mark : marks)
        QVERIFY(painted.count(mark) > 500);
}

void tst_QorSyntaxHighlighter::hugeLineIsPainted_data()
{
    QTest::addColumn<QString>("begin");
    QTest::addColumn<QString>("piece");
    QTest::newRow("words") << QString() << QStringLiteral("if x ");
    QTest::newRow("one word") << QStringLiteral("gl_Color.") << QStringLiteral("x");
    QTest::newRow("blanks") << QStringLiteral("#") << QStringLiteral(" ");
    QTest::newRow("form feeds in a comment") << QStringLiteral("//x") << QStringLiteral("\f");
    QTest::newRow("form feeds in a preprocessor line") << QStringLiteral("#define") << QStringLiteral("\f");
    QTest::newRow("comments") << QString() << QStringLiteral("/**/ ");
    QTest::newRow("open brackets") << QString() << QStringLiteral("gl_LightSource[ ");
    QTest::newRow("slashes") << QStringLiteral("#if ") << QStringLiteral("/ ");
}

void tst_QorSyntaxHighlighter::hugeLineIsPainted()
{
    QFETCH(QString, begin);
    QFETCH(QString, piece);
    const QString text = begin + piece.repeated(1000000 / piece.size()) + QStringLiteral("x");
    for (const auto language : {QorCodeWidget::LANGUAGE_ECMA, QorCodeWidget::LANGUAGE_GLSL}) {
        Code code(language);
        QCOMPARE(code.paint(text).size(), text.size());
        QCOMPARE(code.states(), QStringLiteral("0"));
    }
}

void tst_QorSyntaxHighlighter::typeOfLaterIsUncolouredUntilTheLanguageIsSetAgain()
{
    Code code(QorCodeWidget::LANGUAGE_X3D);
    Tiny::makeType("Later");
    QCOMPARE(code.paint(QStringLiteral("Later Scene")), QStringLiteral("00000011111"));
    code.highlighter->setLanguage(QorCodeWidget::LANGUAGE_X3D);
    QCOMPARE(code.paint(QStringLiteral("Later Scene")), QStringLiteral("11111011111"));
}

void tst_QorSyntaxHighlighter::typeNameThatIsNoWordGoesByTheExpression()
{
    Tiny::makeType("Odd.Name");
    Tiny::makeType("Two-Words");
    Code code(QorCodeWidget::LANGUAGE_X3D);
    QCOMPARE(code.paint(QStringLiteral("Odd.Name Odd+Name Two-Words Two Scene Scenes")),
             QStringLiteral("11111111"
                            "0"
                            "11111111"
                            "0"
                            "111111111"
                            "00000"
                            "11111"
                            "0000000"));
}

void tst_QorSyntaxHighlighter::emptyTypeNameEndsTheSearch()
{
    Tiny::makeType("");
    Code code(QorCodeWidget::LANGUAGE_X3D);
    QCOMPARE(code.paint(QStringLiteral("Scene Scene")), QStringLiteral("11111000000"));
    QCOMPARE(code.paint(QStringLiteral("x Scene")), QStringLiteral("0000000"));
}

QTEST_MAIN(tst_QorSyntaxHighlighter)
#include "tst_QorSyntaxHighlighter.moc"
