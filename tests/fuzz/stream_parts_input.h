// A workbook stream read from its file in small parts must read as the same stream held whole in
// memory: the same sink calls, kept records, dimensions and bytes consumed for every sheet, and a
// workbook loaded from its file must load as its bytes do. Shared by the fuzz target, the
// regression test of its findings and the stream window's tests; a non-empty result describes the
// first difference.
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "xls/book.h"
#include "xls/compound_file.h"
#include "xls/detail/stream_window.h"
#include "xls/workbook_records.h"
#include "xls/worksheet_records.h"

namespace stream_parts {

using Bytes = std::vector<std::uint8_t>;

// Every call, as text.
class RecordingSink : public xls::CellSink {
public:
    std::ostringstream calls;
    void Integer(std::uint16_t r, std::uint16_t c, std::uint16_t xf, std::int32_t v) override
    {
        calls << "I" << r << ',' << c << ',' << xf << ',' << v << '\n';
    }
    void Double(std::uint16_t r, std::uint16_t c, std::uint16_t xf, double v) override
    {
        calls << "D" << r << ',' << c << ',' << xf << ',' << v << '\n';
    }
    void Text(std::uint16_t r, std::uint16_t c, std::uint16_t xf, const std::u16string& t, bool wide) override
    {
        calls << "T" << r << ',' << c << ',' << xf << ',' << t.size() << ',' << wide << '\n';
    }
    void MissingText(std::uint16_t r, std::uint16_t c, std::uint16_t xf, std::uint32_t index) override
    {
        calls << "M" << r << ',' << c << ',' << xf << ',' << index << '\n';
    }
    void Logical(std::uint16_t r, std::uint16_t c, std::uint16_t xf, std::uint8_t v, bool error) override
    {
        calls << "L" << r << ',' << c << ',' << xf << ',' << int(v) << error << '\n';
    }
    void Blank(std::uint16_t r, std::uint16_t c, std::uint16_t xf) override
    {
        calls << "B" << r << ',' << c << ',' << xf << '\n';
    }
};

inline std::string Records(const std::vector<xls::Record>& records)
{
    std::string out;
    for (const xls::Record& r : records) out += std::to_string(r.code) + ":" + std::string(r.data.begin(), r.data.end()) + "|";
    return out;
}

inline void WriteFile(const std::string& path, const std::uint8_t* data, std::size_t size)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
}
inline void WriteFile(const std::string& path, const Bytes& bytes) { WriteFile(path, bytes.data(), bytes.size()); }

// The workbook stream of a compound file; any other input is taken as a stream itself.
inline Bytes StreamOf(const std::uint8_t* data, std::size_t size, bool& container)
{
    xls::CompoundFile file;
    std::wstring name;
    Bytes stream;
    container = file.OpenMemory(data, size);
    if (container && (file.FindStreamNoCase(L"Workbook", name) || file.FindStreamNoCase(L"Book", name)) &&
        file.ReadStream(L"\\" + name, stream))
        return stream;
    return Bytes(data, data + size);
}

// Every sheet of `stream` read from memory and through a window on `path` (which holds the stream)
// in parts of `part` bytes.
inline std::string CompareSheets(const Bytes& stream, const std::string& path, std::size_t part)
{
    xls::Workbook globals;
    if (globals.Read(reinterpret_cast<const char*>(stream.data()), stream.size()) == 0) return "";
    for (const auto& sheet : globals.boundSheets) {
        const std::size_t position = sheet.streamPosition;
        if (position >= stream.size()) continue;
        xls::Worksheet expected, actual;
        RecordingSink expectedCalls, actualCalls;
        const std::size_t consumed = expected.Read(reinterpret_cast<const char*>(stream.data()) + position,
                                                   stream.size() - position, &expectedCalls, &globals.sst.strings,
                                                   &globals.sst.wide);
        orderview::FileReader reader{orderview::FilePath(path)};
        xls::StreamWindow window(reader, 0, stream.size(), part);
        const std::string at = "sheet at " + std::to_string(position) + ", parts of " + std::to_string(part) + ": ";
        if (actual.Read(window, position, &actualCalls, &globals.sst.strings, &globals.sst.wide) != consumed)
            return at + "consumed differs";
        if (actualCalls.calls.str() != expectedCalls.calls.str()) return at + "cells differ";
        if (Records(actual.head) != Records(expected.head) || Records(actual.tail) != Records(expected.tail))
            return at + "kept records differ";
        if (actual.dimensions.lastRowPlus1 != expected.dimensions.lastRowPlus1 ||
            actual.dimensions.lastColPlus1 != expected.dimensions.lastColPlus1)
            return at + "dimensions differ";
    }
    return "";
}

// A compound file loaded from `path` (which holds it) and from its bytes.
inline std::string CompareBooks(const std::uint8_t* data, std::size_t size, const std::string& path)
{
    xls::Book fromFile, fromMemory;
    const bool loaded = fromMemory.LoadFromMemory(data, size);
    if (fromFile.Load(path.c_str()) != loaded) return "the file and the bytes load differently";
    if (!loaded) return "";
    if (fromFile.GetMissingStringCount() != fromMemory.GetMissingStringCount()) return "missing strings differ";
    Bytes saved, expected;
    if (fromFile.SaveToMemory(saved) != fromMemory.SaveToMemory(expected) || saved != expected)
        return "the resaved images differ";
    return "";
}

// Compares the two ways for one input, using files in `folder`. The part size follows the input's
// size, so that the fuzzer tries many.
inline std::string Compare(const std::uint8_t* data, std::size_t size, const std::string& folder)
{
    bool container = false;
    const Bytes stream = StreamOf(data, size, container);
    const std::string streamPath = folder + "/stream.bin";
    WriteFile(streamPath, stream.data(), stream.size());
    std::string difference = CompareSheets(stream, streamPath, 1 + size % 257);
    if (difference.empty() && container) {
        const std::string bookPath = folder + "/book.xls";
        WriteFile(bookPath, data, size);
        difference = CompareBooks(data, size, bookPath);
    }
    return difference;
}

}  // namespace stream_parts
