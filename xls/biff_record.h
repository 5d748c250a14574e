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
#include <vector>

#include "order_data/export.h"
#include "xls/little_endian.h"

namespace xls {

constexpr std::uint16_t kContinue = 0x003C;
constexpr std::size_t kMaxRecordData = 8224;

class ORDERVIEW_API Record {
public:
    Record() = default;
    explicit Record(std::uint16_t recordCode) : code(recordCode) {}
    virtual ~Record();

    // Reads the record at `stream` with its CONTINUE parts; returns the stream bytes consumed,
    // or 0 when the record is cut short by the end of the stream (see ReadFrom). Derived classes
    // then fill their fields from `data`.
    virtual std::size_t Read(const char* stream);
    // Writes the record (split into CONTINUE parts as needed); returns the bytes written.
    virtual std::size_t Write(char* stream);
    // The data size (derived classes compute it from their fields).
    virtual std::size_t DataSize();
    // The stream size, headers of all parts included.
    virtual std::size_t RecordSize();

    // Read with the number of stream bytes available from `stream`: lengths stored in the
    // stream are checked against it. Returns 0 when the record does not fit.
    std::size_t ReadFrom(const char* stream, std::size_t available);

    std::uint16_t code = 0;
    std::vector<std::uint8_t> data;
    std::size_t dataSize = 0;
    std::size_t recordSize = 0;
    std::vector<std::size_t> continueIndices;  // data size at each CONTINUE boundary

protected:
    // Header and parts: the size of `size` data bytes written with the continuation list.
    std::size_t PartsSize(std::size_t size) const;
    // Writes `data` (already serialised) under `code` with the continuation list.
    std::size_t WriteData(char* stream) const;

private:
    std::size_t available_ = static_cast<std::size_t>(-1);
};

// Beginning of a substream (workbook globals: type 0x0005; worksheet: 0x0010).
class ORDERVIEW_API BOF : public Record {
public:
    BOF();
    std::size_t Read(const char* stream) override;
    std::size_t Write(char* stream) override;
    std::size_t DataSize() override;
    std::size_t RecordSize() override;

    std::uint16_t version = 0x0600;
    std::uint16_t type = 0x0005;
    std::uint16_t buildIdentifier = 0x0DBB;
    std::uint16_t buildYear = 0x07CC;
    std::uint32_t fileHistoryFlags = 0;
    std::uint32_t lowestExcelVersion = 0x06;
};

// End of a substream.
class ORDERVIEW_API Eof : public Record {
public:
    Eof();
    std::size_t Read(const char* stream) override;
    std::size_t Write(char* stream) override;
    std::size_t DataSize() override;
    std::size_t RecordSize() override;
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

// True when every code unit fits in 8 bits, so the text can be stored compressed.
bool FitsCompressed(const std::u16string& text);

// Serialises a record whose fields `fill` writes into its data, then writes it with its parts.
template <class Fill>
std::size_t WriteFields(Record& record, char* stream, Fill fill)
{
    record.data.clear();
    record.continueIndices.clear();
    Builder b(record.data);
    fill(b);
    return record.Record::Write(stream);
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

}  // namespace biff
}  // namespace xls
