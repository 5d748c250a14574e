// BIFF8 records: the base class that reads and writes one record with its CONTINUE parts, and
// the records shared by the workbook globals and the sheets (BOF, EOF).
//
// A record is a 4-byte header (u16 code, u16 data size) and at most 8224 data bytes; longer data
// goes on in CONTINUE (0x003C) records. Reading joins the parts and remembers where they met, so
// that writing can cut the data at the same places.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "order_data/visibility.h"
#include "xls/little_endian.h"
#include "xls/record_codes.h"

namespace xls {

constexpr std::size_t kMaxRecordData = 8224;

class ORDERVIEW_API Record {
public:
    Record() = default;
    explicit Record(std::uint16_t recordCode) : code(recordCode) {}
    virtual ~Record();

    // Reads the record at `stream` with its CONTINUE parts; returns the stream bytes consumed,
    // or 0 when the record is cut short by the end of the stream (see ReadFrom). Derived classes
    // then fill their fields from `data`. A part may hold more than 8224 bytes: such records are
    // accepted as other readers accept them, and made legal again when written.
    virtual std::size_t Read(const char* stream);
    // Writes the record; `stream` must hold RecordSize() bytes. Returns the bytes written.
    virtual std::size_t Write(char* stream) final;
    // The data size: what Serialize makes of the fields.
    virtual std::size_t DataSize() final;
    // The stream size, headers of all parts included: exactly what Write writes.
    virtual std::size_t RecordSize() final;

    // Writes the record only when it fits in `capacity` bytes: returns the bytes written, or 0
    // (with nothing written) when it does not fit.
    std::size_t Write(char* stream, std::size_t capacity);

    // Read with the number of stream bytes available from `stream`: lengths stored in the
    // stream are checked against it. Returns 0 when the record does not fit.
    std::size_t ReadFrom(const char* stream, std::size_t available);

    std::uint16_t code = 0;
    std::vector<std::uint8_t> data;
    std::size_t dataSize = 0;
    std::size_t recordSize = 0;
    std::vector<std::size_t> continueIndices;  // data size at each CONTINUE boundary

    // Rebuilds `data` from the record's fields, and `continueIndices` for a record that lays
    // out its own parts. A class whose record may not continue keeps its data within 8224
    // bytes here. The plain record keeps the data it read.
    virtual void Serialize();

private:
    // The one layout of the record in the stream: the data cut at the kept boundaries, and
    // wherever a part would pass 8224 bytes. Writes the parts to `out` unless it is null;
    // returns their size with headers.
    std::size_t Emit(std::uint8_t* out) const;

    std::size_t available_ = static_cast<std::size_t>(-1);
};

// Beginning of a substream (its type: kGlobalsSubstream, kWorksheetSubstream, ...).
class ORDERVIEW_API BOF : public Record {
public:
    BOF();
    std::size_t Read(const char* stream) override;

    std::uint16_t version = 0x0600;
    std::uint16_t type = kGlobalsSubstream;
    std::uint16_t buildIdentifier = 0x0DBB;
    std::uint16_t buildYear = 0x07CC;
    std::uint32_t fileHistoryFlags = 0;
    std::uint32_t lowestExcelVersion = 0x06;
    void Serialize() override;
};

// End of a substream.
class ORDERVIEW_API Eof : public Record {
public:
    Eof();
    std::size_t Read(const char* stream) override;
    void Serialize() override;
};

namespace biff {

using le::F64;
using le::Put16;
using le::Put32;
using le::PutF64;
using le::U16;
using le::U32;

// Little-endian reads from a byte range that never go past its end (missing bytes read as 0
// and set `ok` to false).
class Cursor {
public:
    Cursor(const std::uint8_t* data, std::size_t size, std::size_t at = 0) : data_(data), size_(size), at_(at) {}
    std::uint8_t U8() { return Has(1) ? data_[at_++] : 0; }
    std::uint16_t U16()
    {
        if (!Has(2)) return 0;
        at_ += 2;
        return biff::U16(data_ + at_ - 2);
    }
    std::uint32_t U32()
    {
        if (!Has(4)) return 0;
        at_ += 4;
        return biff::U32(data_ + at_ - 4);
    }
    double F64()
    {
        if (!Has(8)) return 0;
        at_ += 8;
        return biff::F64(data_ + at_ - 8);
    }
    bool Skip(std::size_t n);
    // A string of `count` characters, 8-bit (each byte a code unit) or 16-bit.
    std::u16string Chars(std::size_t count, bool wide);
    // The same characters appended to `text`.
    void AppendChars(std::u16string& text, std::size_t count, bool wide);
    std::size_t at() const { return at_; }
    std::size_t left() const { return at_ < size_ ? size_ - at_ : 0; }
    bool ok() const { return ok_; }

private:
    // True when `n` more bytes are there; otherwise the cursor goes to the end and fails.
    bool Has(std::size_t n)
    {
        if (n <= size_ - at_ && at_ <= size_) return true;
        ok_ = false;
        at_ = size_;
        return false;
    }

    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t at_;
    bool ok_ = true;
};

// Appends little-endian values to a byte vector.
class Builder {
public:
    explicit Builder(std::vector<std::uint8_t>& out) : out_(out) {}
    void U8(std::uint8_t v) { out_.push_back(v); }
    void U16(std::uint16_t v)
    {
        const std::size_t at = out_.size();
        out_.resize(at + 2);
        Put16(out_.data() + at, v);
    }
    void U32(std::uint32_t v)
    {
        const std::size_t at = out_.size();
        out_.resize(at + 4);
        Put32(out_.data() + at, v);
    }
    void F64(double v)
    {
        const std::size_t at = out_.size();
        out_.resize(at + 8);
        PutF64(out_.data() + at, v);
    }
    // Characters as 8-bit code units (compressed) or 16-bit.
    void Chars(const std::u16string& text, bool wide);
    void Bytes(const std::uint8_t* p, std::size_t n) { out_.insert(out_.end(), p, p + n); }

private:
    std::vector<std::uint8_t>& out_;
};

// Writes records one after another into a buffer of known capacity. The first that does not
// fit stops it: nothing of it or after it is written, and ok() turns false.
class Output {
public:
    Output(char* stream, std::size_t capacity) : stream_(stream), capacity_(capacity) {}
    bool Put(Record& record)
    {
        if (!ok_) return false;
        const std::size_t n = record.Write(stream_ + at_, capacity_ - at_);
        if (n == 0) return ok_ = false;
        at_ += n;
        return true;
    }
    bool Put(const std::uint8_t* bytes, std::size_t n)
    {
        if (!ok_ || n > capacity_ - at_) return ok_ = false;
        if (n) std::memcpy(stream_ + at_, bytes, n);
        at_ += n;
        return true;
    }
    // For writers of their own: where the next bytes go, the room left, and what they wrote
    // there (0: they did not fit).
    char* next() const { return stream_ + at_; }
    std::size_t room() const { return ok_ ? capacity_ - at_ : 0; }
    bool Took(std::size_t n)
    {
        if (!ok_ || n == 0 || n > capacity_ - at_) return ok_ = false;
        at_ += n;
        return true;
    }
    bool ok() const { return ok_; }
    std::size_t written() const { return at_; }
    // What the caller returns: the bytes written, or 0 when something did not fit.
    std::size_t result() const { return ok_ ? at_ : 0; }

private:
    char* stream_;
    std::size_t capacity_;
    std::size_t at_ = 0;
    bool ok_ = true;
};

// True when every code unit fits in 8 bits, so the text can be stored compressed.
bool FitsCompressed(std::u16string_view text);

// Starts the data of a record from its fields: clears it and the kept boundaries.
inline Builder Fields(std::vector<std::uint8_t>& data, std::vector<std::size_t>& continueIndices)
{
    data.clear();
    continueIndices.clear();
    return Builder(data);
}

// Reads a record with its parts, then lets `parse` read the fields from the joined data.
template <class Parse>
std::size_t ReadFields(Record& record, const char* stream, Parse parse)
{
    const std::size_t consumed = record.Record::Read(stream);
    Cursor c(record.data.data(), record.data.size());
    parse(c);
    return consumed;
}

// Reads `count` characters of a string whose characters may run on into later parts: each part
// that continues them starts with a flag byte giving the width of the characters that follow
// (bit 0: 16-bit). `wide` is the width the string started with; `cuts` are the part boundaries
// in the joined data. Whenever characters remain and the cursor sits on a boundary, the flag
// byte comes first (again for each following part that holds nothing else). A single byte left
// before a boundary where 16-bit characters run is skipped. Sets `anyWide` when some characters
// were read 16-bit; fails the cursor when characters are missing. The characters are appended to
// `text`.
void ContinuedChars(Cursor& c, std::size_t count, bool wide, const std::vector<std::size_t>& cuts, bool& anyWide,
                    std::u16string& text);

// Appends a string's characters to `data` in parts of at most 8224 bytes: when the part that
// began at `partStart` is full, the data size is noted in `cuts` as a boundary and the next
// part starts with the flag byte. Returns nothing; `partStart` follows the parts.
void AppendContinuedChars(std::vector<std::uint8_t>& data, std::vector<std::size_t>& cuts, std::size_t& partStart,
                          std::u16string_view text, bool wide);

}  // namespace biff
}  // namespace xls
