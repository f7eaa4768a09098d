#include "OSGNRRDImageFileType.h"

#include "OSGDecodedImage.h"
#include "OSGImageBytes.h"
#include "OSGImagePicture.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <map>
#include <sstream>
#include <utility>
#include <zlib.h>

namespace osg {

namespace {

constexpr char Magic[] = "NRRD000";

/// How a number stands in the file.
enum class Number { INT8, UINT8, INT16, UINT16, INT32, UINT32, INT64, UINT64, FLOAT32, FLOAT64, UNKNOWN };

struct NamedNumber
{
    const char* name;
    Number number;
};

const NamedNumber numberNames[] = {{"signed char", Number::INT8},
                                   {"int8", Number::INT8},
                                   {"int8_t", Number::INT8},
                                   {"uchar", Number::UINT8},
                                   {"unsigned char", Number::UINT8},
                                   {"uint8", Number::UINT8},
                                   {"uint8_t", Number::UINT8},
                                   {"short", Number::INT16},
                                   {"short int", Number::INT16},
                                   {"signed short", Number::INT16},
                                   {"signed short int", Number::INT16},
                                   {"int16", Number::INT16},
                                   {"int16_t", Number::INT16},
                                   {"ushort", Number::UINT16},
                                   {"unsigned short", Number::UINT16},
                                   {"unsigned short int", Number::UINT16},
                                   {"uint16", Number::UINT16},
                                   {"uint16_t", Number::UINT16},
                                   {"int", Number::INT32},
                                   {"signed int", Number::INT32},
                                   {"int32", Number::INT32},
                                   {"int32_t", Number::INT32},
                                   {"uint", Number::UINT32},
                                   {"unsigned int", Number::UINT32},
                                   {"uint32", Number::UINT32},
                                   {"uint32_t", Number::UINT32},
                                   {"longlong", Number::INT64},
                                   {"long long", Number::INT64},
                                   {"int64", Number::INT64},
                                   {"int64_t", Number::INT64},
                                   {"ulonglong", Number::UINT64},
                                   {"unsigned long long", Number::UINT64},
                                   {"uint64", Number::UINT64},
                                   {"uint64_t", Number::UINT64},
                                   {"float", Number::FLOAT32},
                                   {"double", Number::FLOAT64}};

UInt64 sizeOf(Number number)
{
    switch (number) {
    case Number::INT8:
    case Number::UINT8:
        return 1;
    case Number::INT16:
    case Number::UINT16:
        return 2;
    case Number::INT32:
    case Number::UINT32:
    case Number::FLOAT32:
        return 4;
    default:
        return 8;
    }
}

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string trimmed(const std::string& text)
{
    std::size_t first = 0;
    std::size_t end = text.size();
    while (first < end && isBlank(text[first]))
        ++first;
    while (end > first && isBlank(text[end - 1]))
        --end;
    return text.substr(first, end - first);
}

/// The fields in front of the numbers.
class NrrdHeader
{
public:
    /// Reads up to the empty line. False when that is missing.
    bool read(ByteReader& in)
    {
        std::string line;
        for (bool isFirst = true; nextLine(in, line); isFirst = false) {
            if (line.empty())
                return true;
            const std::size_t colon = line.find(": ");
            if (!isFirst && line[0] != '#' && colon != std::string::npos)
                _fields[line.substr(0, colon)] = trimmed(line.substr(colon + 2));
        }
        return false;
    }

    const std::string& field(const char* name, const char* otherName = nullptr) const
    {
        static const std::string Nothing;
        auto found = _fields.find(name);
        if (found == _fields.end() && otherName)
            found = _fields.find(otherName);
        return found == _fields.end() ? Nothing : found->second;
    }

    Number number() const
    {
        const auto* const found =
            std::find_if(std::begin(numberNames), std::end(numberNames),
                         [this](const NamedNumber& each) { return each.name == field("type"); });
        return found == std::end(numberNames) ? Number::UNKNOWN : found->number;
    }

    bool isSwapped() const { return isLittleEndianHost() == (field("endian") == "big"); }

    /// Fills format and edges. False for what is no image of up to four components and three axes.
    bool readForm(ImageForm& form) const
    {
        std::istringstream sizes(field("sizes"));
        std::vector<Int64> edges;
        for (Int64 edge = 0; edges.size() < 5 && sizes >> edge;)
            edges.push_back(edge);
        const bool hasComponents =
            !edges.empty() && (edges.size() > 3 || (edges.size() == 3 && startsWithComponents()));
        Int64 components = 1;
        if (hasComponents) {
            components = edges.front();
            edges.erase(edges.begin());
        }
        constexpr Int64 MostEdge = 1 << 16;
        if (edges.empty() || edges.size() > 3 || components < 1 || components > 4 ||
            std::any_of(edges.begin(), edges.end(), [](Int64 edge) { return edge < 1 || edge > MostEdge; }))
            return false;
        edges.resize(3, 1);
        form.format = formatForComponents(static_cast<UInt32>(components));
        form.width = static_cast<Int32>(edges[0]);
        form.height = static_cast<Int32>(edges[1]);
        form.depth = static_cast<Int32>(edges[2]);
        return true;
    }

    /// How many lines, or bytes, stand before the numbers; below 0 for none that one can count.
    Int64 skipped(const char* name, const char* otherName) const
    {
        const std::string& text = field(name, otherName);
        Int64 count = 0;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), count);
        return text.empty() ? 0 : result.ec == std::errc() ? count : -1;
    }

    static bool nextLine(ByteReader& in, std::string& line)
    {
        const char* const start = reinterpret_cast<const char*>(in.data) + in.position;
        const void* const end = in.rest() ? std::memchr(start, '\n', in.rest()) : nullptr;
        if (!end)
            return false;
        const auto length = static_cast<std::size_t>(static_cast<const char*>(end) - start);
        in.position += length + 1;
        line.assign(start, length > 0 && start[length - 1] == '\r' ? length - 1 : length);
        return true;
    }

private:
    /// True when the first axis is named as one of colours.
    bool startsWithComponents() const
    {
        std::istringstream kinds(field("kinds"));
        std::string kind;
        kinds >> kind;
        static const char* const names[] = {"RGB-color", "RGBA-color", "3-color",  "4-color",
                                            "2-vector",  "3-vector",   "4-vector", "vector"};
        return std::find(std::begin(names), std::end(names), kind) != std::end(names);
    }

    std::map<std::string, std::string> _fields;
};

/// Unpacks what gzip has packed into as many bytes as are expected.
bool unpack(ByteReader in, std::vector<UInt8>& bytes)
{
    z_stream stream{};
    if (inflateInit2(&stream, 16 + MAX_WBITS) != Z_OK)
        return false;
    // Both are below the largest size of an image.
    stream.next_in = const_cast<UInt8*>(in.data + in.position);
    stream.avail_in = static_cast<uInt>(in.rest());
    stream.next_out = bytes.data();
    stream.avail_out = static_cast<uInt>(bytes.size());
    int result = Z_OK;
    while (result == Z_OK && stream.avail_out > 0)
        result = inflate(&stream, Z_NO_FLUSH);
    const bool isWhole = stream.avail_out == 0;
    inflateEnd(&stream);
    return isWhole;
}

template <class T>
double numberAt(const UInt8* p, bool swapped)
{
    std::array<UInt8, sizeof(T)> bytes;
    std::copy_n(p, bytes.size(), bytes.begin());
    if (swapped)
        std::reverse(bytes.begin(), bytes.end());
    T value;
    std::memcpy(&value, bytes.data(), bytes.size());
    return static_cast<double>(value);
}

double numberAt(const UInt8* p, Number number, bool swapped)
{
    switch (number) {
    case Number::INT8:
        return numberAt<Int8>(p, swapped);
    case Number::UINT8:
        return *p;
    case Number::INT16:
        return numberAt<Int16>(p, swapped);
    case Number::UINT16:
        return numberAt<UInt16>(p, swapped);
    case Number::INT32:
        return numberAt<Int32>(p, swapped);
    case Number::UINT32:
        return numberAt<UInt32>(p, swapped);
    case Number::INT64:
        return numberAt<Int64>(p, swapped);
    case Number::UINT64:
        return numberAt<UInt64>(p, swapped);
    case Number::FLOAT32:
        return numberAt<float>(p, swapped);
    default:
        return numberAt<double>(p, swapped);
    }
}

/// Reads `count` numbers of a text, with blanks or commas between them.
bool readText(const ByteReader& in, UInt64 count, std::vector<double>& numbers)
{
    const char* p = reinterpret_cast<const char*>(in.data) + in.position;
    const char* const end = p + in.rest();
    // Each takes a character and what parts it from the next.
    if (count > in.rest() / 2 + 1)
        return false;
    numbers.resize(count);
    for (double& number : numbers) {
        while (p < end && (isBlank(*p) || *p == ','))
            ++p;
        if (p < end && *p == '+')
            ++p;
        const auto result = std::from_chars(p, end, number);
        if (result.ec != std::errc() && result.ec != std::errc::result_out_of_range)
            return false;
        p = result.ptr;
    }
    return true;
}

/// The numbers of a file one by one, whatever their form.
class Numbers
{
public:
    /// \a text and \a bytes: one of them is empty.
    Numbers(const std::vector<double>& text, const std::vector<UInt8>& bytes, Number number, bool swapped)
        : _text(text)
        , _bytes(bytes)
        , _number(number)
        , _swapped(swapped)
    {
    }

    double operator[](std::size_t i) const
    {
        return _text.empty() ? numberAt(_bytes.data() + i * sizeOf(_number), _number, _swapped) : _text[i];
    }

private:
    const std::vector<double>& _text;
    const std::vector<UInt8>& _bytes;
    Number _number;
    bool _swapped;
};

/// Stretches numbers to 16 bits; those that are none become 0.
void stretch(const Numbers& from, std::size_t count, UInt8* to)
{
    double least = HUGE_VAL;
    double most = -HUGE_VAL;
    for (std::size_t i = 0; i < count; ++i) {
        const double number = from[i];
        if (std::isfinite(number)) {
            least = std::min(least, number);
            most = std::max(most, number);
        }
    }
    constexpr double Whole = 65535.0;
    // Halves, as the difference of two large numbers is none.
    const double range = most / 2 - least / 2;
    for (std::size_t i = 0; i < count; ++i) {
        const double number = from[i];
        UInt16 value = 0;
        if (std::isfinite(number) && range > 0)
            value = static_cast<UInt16>(std::lround((number / 2 - least / 2) / range * Whole));
        std::memcpy(to + i * sizeof value, &value, sizeof value);
    }
}

} // namespace

NRRDImageFileType::NRRDImageFileType()
    : ImageFileType("image/x-nrrd", {"nrrd"}, OSG_READ_SUPPORTED)
{
}

bool NRRDImageFileType::checkHeader(const UInt8* data, UInt64 size) const
{
    constexpr std::size_t Length = sizeof Magic - 1;
    return size > Length && std::memcmp(data, Magic, Length) == 0;
}

bool NRRDImageFileType::decode(const ImagePtr& image, const UInt8* data, UInt64 size) const
{
    if (!checkHeader(data, size))
        return fail("this is no NRRD file");
    ByteReader in{data, size};
    NrrdHeader header;
    if (!header.read(in))
        return fail("the header has no end");
    if (!header.field("data file", "datafile").empty())
        return fail("the numbers stand in another file");
    const Number number = header.number();
    DecodedImage decoded;
    ImageForm& form = decoded.form;
    if (number == Number::UNKNOWN || !header.readForm(form))
        return fail("the header is damaged or of an unknown kind");
    const bool areBytes = number == Number::UINT8;
    form.dataType = areBytes ? Image::OSG_UINT8_IMAGEDATA : Image::OSG_UINT16_IMAGEDATA;
    const UInt64 imageSize = form.size();
    const UInt64 count = areBytes ? imageSize : imageSize / 2;
    const UInt64 numbersSize = saturatedProduct(count, sizeOf(number));
    if (!isPlausibleSize(numbersSize, size))
        return fail("the header claims more than the file can hold");

    std::string line;
    for (Int64 lines = header.skipped("line skip", "lineskip"); lines != 0; --lines) {
        if (lines < 0 || !NrrdHeader::nextLine(in, line))
            return fail("the header skips more than there is");
    }
    const std::string& encoding = header.field("encoding");
    const bool isText = encoding == "ascii" || encoding == "text" || encoding == "txt";
    std::vector<double> text;
    std::vector<UInt8> bytes;
    if (isText) {
        if (!readText(in, count, text))
            return fail("the file ends early");
    } else if (encoding == "gzip" || encoding == "gz") {
        if (!allocate(bytes, numbersSize))
            return false;
        if (!unpack(in, bytes))
            return fail("the file ends early");
    } else if (encoding == "raw") {
        const Int64 skipped = header.skipped("byte skip", "byteskip");
        // -1: the numbers stand at the end.
        if (skipped < -1 ||
            (skipped == -1 && numbersSize <= in.rest() && !in.take(in.rest() - numbersSize)) ||
            (skipped > 0 && !in.take(static_cast<UInt64>(skipped))))
            return fail("the header skips more than there is");
        const UInt8* const from = in.take(numbersSize);
        if (!from)
            return fail("the file ends early");
        bytes.assign(from, from + numbersSize);
    } else {
        return fail("the numbers are packed in an unknown way");
    }
    const Numbers numbers(text, bytes, number, header.isSwapped());
    if (areBytes && !isText) {
        decoded.pixels = std::move(bytes);
    } else if (!allocate(decoded.pixels, imageSize)) {
        return false;
    } else if (areBytes) {
        for (std::size_t i = 0; i < count; ++i)
            decoded.pixels[i] =
                static_cast<UInt8>(std::clamp(std::isnan(text[i]) ? 0.0 : text[i], 0.0, 255.0));
    } else {
        stretch(numbers, count, decoded.pixels.data());
    }
    return give(image, std::move(decoded));
}

} // namespace osg
