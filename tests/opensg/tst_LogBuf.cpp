#include <OpenSG/OSGLogBuf.h>

#include <QtTest>

#include <ostream>
#include <string>
#include <vector>

using namespace osg;

typedef std::vector<std::string> Chunks;

namespace {

void collect(const Char8* data, Int32 size, void* clientData)
{
    static_cast<Chunks*>(clientData)->emplace_back(data, static_cast<std::size_t>(size));
}

/// A buffer with a stream and what its callback was given.
struct Collector
{
    explicit Collector(UInt32 size = 1024)
        : buffer(size)
        , stream(&buffer)
    {
        buffer.setCallback(collect, &chunks);
    }

    LogBuf buffer;
    std::ostream stream;
    Chunks chunks;
};

Chunks keptChunks(LogBuf& buffer)
{
    Chunks result;
    buffer.setCallback(collect, &result, true);
    buffer.removeCallback();
    return result;
}

} // namespace

class tst_LogBuf : public QObject
{
    Q_OBJECT

private slots:
    void fittingStringsWait();
    void flushGivesOneChunk();
    void flushOfNothingGivesNone();
    void stringThatJustFits();
    void stringThatDoesNotFitGoesAlone();
    void characterIntoFullAreaUsesTheSpareByte();
    void bufferOfOneByteGivesCharactersSingly();
    void noBufferFailsEveryWrite();
    void chunksAreKeptByDefault();
    void keptChunksReplayOldestFirstAndStay();
    void replayOnlyWhenAsked();
    void disabledKeepsNothingButCalls();
    void clearChunkBagForgets();
    void keepsAlongWithCallback();
    void nullCallbackIsIgnored();
    void removedCallbackIsNotCalled();
    void zeroBytesPassThrough();
    void callbackMayWriteIntoTheBuffer();
    void callbackMayClearTheBagDuringReplay();
};

void tst_LogBuf::fittingStringsWait()
{
    Collector c;
    c.stream << "one" << 2 << '3';
    QVERIFY(c.chunks.empty());
}

void tst_LogBuf::flushGivesOneChunk()
{
    Collector c;
    c.stream << "one" << 2 << '3' << std::flush;
    QCOMPARE(c.chunks, Chunks({"one23"}));
    c.stream << std::endl;
    QCOMPARE(c.chunks, Chunks({"one23", "\n"}));
}

void tst_LogBuf::flushOfNothingGivesNone()
{
    Collector c;
    c.stream << std::flush << "" << std::flush;
    QVERIFY(c.chunks.empty());
}

void tst_LogBuf::stringThatJustFits()
{
    Collector c;
    const std::string text(1023, 'x');
    c.stream << text;
    QVERIFY(c.chunks.empty());
    c.stream.flush();
    QCOMPARE(c.chunks, Chunks({text}));

    c.chunks.clear();
    c.stream << "head" << std::string(1019, 'y') << std::flush;
    QCOMPARE(c.chunks.size(), std::size_t(1));
}

void tst_LogBuf::stringThatDoesNotFitGoesAlone()
{
    Collector c;
    const std::string text(1024, 'x');
    c.stream << text;
    QCOMPARE(c.chunks, Chunks({text}));

    c.chunks.clear();
    c.stream << "head" << std::string(1020, 'y');
    QCOMPARE(c.chunks, Chunks({"head", std::string(1020, 'y')}));
    c.stream << "tail" << std::flush;
    QCOMPARE(c.chunks.back(), std::string("tail"));
}

void tst_LogBuf::characterIntoFullAreaUsesTheSpareByte()
{
    Collector c;
    c.stream << std::string(1023, 'x');
    QVERIFY(c.chunks.empty());
    c.stream.put('!');
    QCOMPARE(c.chunks, Chunks({std::string(1023, 'x') + '!'}));
    c.stream << std::flush;
    QCOMPARE(c.chunks.size(), std::size_t(1));
}

void tst_LogBuf::bufferOfOneByteGivesCharactersSingly()
{
    Collector c(1);
    c.stream.put('a');
    c.stream.put('b');
    c.stream << "cd";
    QCOMPARE(c.chunks, Chunks({"a", "b", "cd"}));
}

void tst_LogBuf::noBufferFailsEveryWrite()
{
    Collector c(0);
    c.stream << "text";
    QVERIFY(c.stream.bad());
    c.stream.clear();
    c.stream.put('x');
    QVERIFY(c.stream.bad());
    c.stream.clear();
    c.stream.flush();
    QVERIFY(c.chunks.empty());
}

void tst_LogBuf::chunksAreKeptByDefault()
{
    LogBuf buffer;
    QVERIFY(buffer.getEnabled());
    std::ostream stream(&buffer);
    stream << "kept" << std::flush;
    QCOMPARE(keptChunks(buffer), Chunks({"kept"}));
}

void tst_LogBuf::keptChunksReplayOldestFirstAndStay()
{
    LogBuf buffer;
    std::ostream stream(&buffer);
    stream << "a" << std::flush << "b" << std::flush << "pending";
    QCOMPARE(keptChunks(buffer), Chunks({"a", "b"}));
    QCOMPARE(keptChunks(buffer), Chunks({"a", "b"}));
}

void tst_LogBuf::replayOnlyWhenAsked()
{
    LogBuf buffer;
    std::ostream stream(&buffer);
    stream << "a" << std::flush;
    Chunks chunks;
    buffer.setCallback(collect, &chunks);
    QVERIFY(chunks.empty());
    stream << "b" << std::flush;
    QCOMPARE(chunks, Chunks({"b"}));
}

void tst_LogBuf::disabledKeepsNothingButCalls()
{
    Collector c;
    c.buffer.setEnabled(false);
    QVERIFY(!c.buffer.getEnabled());
    c.stream << "a" << std::flush;
    QCOMPARE(c.chunks, Chunks({"a"}));
    QVERIFY(keptChunks(c.buffer).empty());
    c.buffer.setEnabled();
    c.stream << "b" << std::flush;
    QCOMPARE(keptChunks(c.buffer), Chunks({"b"}));
}

void tst_LogBuf::clearChunkBagForgets()
{
    LogBuf buffer;
    std::ostream stream(&buffer);
    stream << "a" << std::flush;
    buffer.clearChunkBag();
    QVERIFY(keptChunks(buffer).empty());
}

void tst_LogBuf::keepsAlongWithCallback()
{
    Collector c;
    c.stream << "a" << std::flush;
    QCOMPARE(c.chunks, Chunks({"a"}));
    QCOMPARE(keptChunks(c.buffer), Chunks({"a"}));
}

void tst_LogBuf::nullCallbackIsIgnored()
{
    Collector c;
    Chunks others;
    c.buffer.setCallback(nullptr, &others, true);
    c.stream << "a" << std::flush;
    QCOMPARE(c.chunks, Chunks({"a"}));
    QVERIFY(others.empty());
}

void tst_LogBuf::removedCallbackIsNotCalled()
{
    Collector c;
    c.buffer.removeCallback();
    c.stream << "a" << std::flush;
    QVERIFY(c.chunks.empty());
}

void tst_LogBuf::zeroBytesPassThrough()
{
    Collector c;
    const std::string text("a\0b", 3);
    c.stream << text << std::flush;
    QCOMPARE(c.chunks, Chunks({text}));
}

void tst_LogBuf::callbackMayWriteIntoTheBuffer()
{
    struct Echo
    {
        LogBuf buffer;
        std::ostream stream{&buffer};
        Chunks chunks;

        static void call(const Char8* data, Int32 size, void* clientData)
        {
            Echo& echo = *static_cast<Echo*>(clientData);
            if (*data != '<')
                echo.stream << "<echo>" << std::flush;
            // The first chunk is still whole after the second one went through.
            echo.chunks.emplace_back(data, static_cast<std::size_t>(size));
        }
    };
    Echo echo;
    echo.buffer.setCallback(Echo::call, &echo);
    echo.stream << "one" << std::flush << "two" << std::flush;
    QCOMPARE(echo.chunks, Chunks({"<echo>", "one", "<echo>", "two"}));
}

void tst_LogBuf::callbackMayClearTheBagDuringReplay()
{
    struct Clearing
    {
        LogBuf buffer;
        Chunks chunks;

        static void call(const Char8* data, Int32 size, void* clientData)
        {
            Clearing& self = *static_cast<Clearing*>(clientData);
            self.buffer.clearChunkBag();
            self.chunks.emplace_back(data, static_cast<std::size_t>(size));
        }
    };
    Clearing clearing;
    std::ostream stream(&clearing.buffer);
    stream << "a" << std::flush << "b" << std::flush;
    clearing.buffer.setCallback(Clearing::call, &clearing, true);
    QCOMPARE(clearing.chunks, Chunks({"a"}));
}

QTEST_APPLESS_MAIN(tst_LogBuf)
#include "tst_LogBuf.moc"
