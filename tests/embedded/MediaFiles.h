#pragma once

#include <QByteArray>

/// Small files of sound and moving pictures, made for tests.
namespace mediafiles {

inline QByteArray little(quint32 value, int bytes)
{
    QByteArray text;
    for (int i = 0; i < bytes; ++i)
        text.append(static_cast<char>(value >> (8 * i) & 0xFF));
    return text;
}

/// A recording of silence: \a samples bytes at 1000 samples a second.
inline QByteArray wav(int samples)
{
    const auto size = static_cast<quint32>(samples);
    return "RIFF" + little(36 + size, 4) + "WAVEfmt " + little(16, 4) + little(1, 2) + little(1, 2) +
           little(1000, 4) + little(1000, 4) + little(1, 2) + little(8, 2) + "data" + little(size, 4) +
           QByteArray(samples, char(128));
}

/// A film of pictures of one pixel: red, green, blue and white in turn, each for \a delay hundredths of a
/// second.
inline QByteArray gif(int frames, int delay)
{
    QByteArray file = "GIF89a" + little(1, 2) + little(1, 2) + QByteArray("\x81\x00\x00", 3) +
                      QByteArray("\xFF\x00\x00\x00\xFF\x00\x00\x00\xFF\xFF\xFF\xFF", 12);
    for (quint32 i = 0; i < static_cast<quint32>(frames); ++i) {
        file += QByteArray("\x21\xF9\x04\x00", 4) + little(static_cast<quint32>(delay), 2) +
                QByteArray("\x00\x00", 2);
        file += "\x2C" + little(0, 4) + little(1, 2) + little(1, 2) + QByteArray(1, '\0');
        // Codes of three bits: clear, the colour, end.
        file += "\x02\x02" + little(4U | (i % 4) << 3 | 5U << 6, 2) + QByteArray(1, '\0');
    }
    return file + ";";
}

inline QByteArray dataAddress(const QByteArray& file)
{
    return "data:application/octet-stream;base64," + file.toBase64();
}

} // namespace mediafiles
