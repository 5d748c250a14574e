// The workbook globals substream: the records the library understands, read into fields and
// written back, with the shared string table's CONTINUE layout and a rebuilt ExtSST; the
// records it does not understand are kept in their places.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "xls/biff_record.h"
#include "xls/string_list.h"

namespace xls {

class ORDERVIEW_API Workbook {
public:
    // Window settings of the workbook (18 bytes).
    class ORDERVIEW_API Window1 : public Record {
    public:
        Window1();
        std::size_t Read(const char* stream) override;
        void Serialize() override;
        std::uint16_t left = 0x0168, top = 0x001E, width = 0x3A5C, height = 0x2328;
        std::uint16_t options = 0x0038, activeSheet = 0, firstVisibleTab = 0, selectedTabs = 1, tabRatio = 0x0258;
    };

    // A font: size, style, colour and face name.
    class ORDERVIEW_API Font : public Record {
    public:
        Font();
        std::size_t Read(const char* stream) override;
        void Serialize() override;
        std::uint16_t height = 200;  // twips
        std::uint16_t options = 0;
        std::uint16_t colorIndex = 0x7FFF;
        std::uint16_t weight = 400;
        std::uint16_t escapement = 0;
        std::uint8_t underline = 0, family = 0, charset = 0, reserved = 0;
        std::u16string name = u"Arial";
    };

    // A cell or style format: font and number format indexes and 16 bytes of alignment,
    // borders and pattern.
    class ORDERVIEW_API XF : public Record {
    public:
        XF();
        std::size_t Read(const char* stream) override;
        void Serialize() override;
        std::uint16_t fontIndex = 0, formatIndex = 0;
        std::uint8_t attributes[16] = {};
    };

    // A cell style: built-in (with its style id and outline level) or user-defined (named).
    class ORDERVIEW_API Style : public Record {
    public:
        Style();
        std::size_t Read(const char* stream) override;
        void Serialize() override;
        std::uint16_t xfIndex = 0x8000;  // bit 15: built-in
        std::uint8_t builtinId = 0, level = 0xFF;
        std::u16string name;
        bool wideName = false;
    };

    // A sheet: the stream position of its BOF, visibility, type and name.
    class ORDERVIEW_API BoundSheet : public Record {
    public:
        BoundSheet();
        std::size_t Read(const char* stream) override;
        void Serialize() override;
        std::uint32_t streamPosition = 0;
        std::uint8_t visibility = 0, sheetType = 0;
        std::u16string name = u"Sheet1";
    };

    // The shared strings. Each keeps whether it was stored 8-bit (compressed) or 16-bit.
    class ORDERVIEW_API SharedStringTable : public Record {
    public:
        SharedStringTable();
        std::size_t Read(const char* stream) override;
        void Serialize() override;
        // Lays the strings out in parts of at most 8224 bytes (a string's characters continue
        // after a one-byte flag in the next part) and notes where each string starts.
        void Layout();

        std::uint32_t totalStrings = 0;
        StringList strings;
        std::vector<bool> wide;
        std::vector<std::size_t> stringOffsets;  // data offset of each string, after Layout
        bool complete = true;                    // false when the stored count ran past the data

    private:
        bool laidOut_ = false;
    };

    // Where every few strings of the table start, for fast lookup by readers; rebuilt on write.
    class ORDERVIEW_API ExtSST : public Record {
    public:
        ExtSST();
        void Serialize() override;
        struct Bucket {
            std::uint32_t streamPosition;
            std::uint16_t recordOffset;
        };
        std::uint16_t stringsPerBucket = 8;
        std::vector<Bucket> buckets;
    };

    Workbook();
    // Sets the globals of a new workbook: 4 fonts, 21 formats, 6 styles and one sheet "Sheet1".
    void Reset();
    // Parses the globals from `stream` until EOF; returns the bytes consumed, 0 when the
    // stream is no workbook globals or is damaged.
    std::size_t Read(const char* stream, std::size_t size);
    // Writes the globals into `stream` of `capacity` bytes; returns the bytes written, or 0 with
    // the stream incomplete when they do not fit.
    std::size_t Write(char* stream, std::size_t capacity);
    std::size_t RecordSize();
    // Recomputes the ExtSST from the string layout, given the stream position of the SST record.
    void AdjustExtSSTPositions(std::size_t sstStreamPosition);
    // Stream position of the SST record within the globals.
    std::size_t SharedStringTableOffset();

    // The globals' records in the order they were read: each group of understood records where
    // its first record stood, and the records not understood (kept in `others`) between them.
    // Groups missing from it are written in their usual order: Window1, fonts, formats, styles,
    // sheets, strings, ExtSST.
    enum class Group : std::uint8_t { Window1, Fonts, XFs, Styles, BoundSheets, SST, ExtSST, Other };
    struct Slot {
        Group group;
        std::size_t other;  // index in `others` for Group::Other
    };
    std::vector<Slot> layout;
    std::vector<Record> others;

    BOF bof;
    Window1 window1;
    std::vector<Font> fonts;
    std::vector<XF> xfs;
    std::vector<Style> styles;
    std::vector<BoundSheet> boundSheets;
    SharedStringTable sst;
    ExtSST extSST;
    Eof eof;

private:
    static constexpr int kGroups = 7;
    // Visits every record in the order it is written: the one order behind the sizes, offsets
    // and bytes of the globals.
    template <class Visit>
    void ForEachRecord(Visit visit);
};

}  // namespace xls
