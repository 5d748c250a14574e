// One cell of a sheet: undefined, an integer, a double, a narrow string or a wide string.
//
// Narrow strings are 8-bit code units as a workbook stores them (no encoding conversion);
// wide strings are wchar_t text. Each cell keeps its format (the index of an XF record of the
// workbook) through any change of value; a loaded boolean or error value reads as an integer
// and stays a boolean or error until it is set. A cell takes 16 bytes; its text lives on the heap,
// one block shared by the cell and its copies (copying a string cell copies no text).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "order_data/visibility.h"

namespace xls {

class TextHolds;

class ORDERVIEW_API Cell {
public:
    enum Kind { kUndefined = 0, kInteger = 1, kDouble = 2, kString = 3, kWString = 4 };
    enum : std::uint16_t { kDefaultFormat = 15 };  // the default cell XF of a workbook

    Cell() { value_.i = 0; }
    ~Cell()
    {
        if (type_ >= kString && logical_ != kLent) Release();
    }
    Cell(const Cell& other);
    Cell(Cell&& other) noexcept;
    Cell& operator=(const Cell& other);
    Cell& operator=(Cell&& other) noexcept;

    int Type() const { return type_; }
    // Integers, and doubles cut toward zero (saturating; NaN fails).
    bool Get(int& value) const;
    // Doubles, and integers widened.
    bool Get(double& value) const;
    // The text of a narrow (wide) string cell copied with its terminator; the buffer must hold
    // GetStringLength() + 1 characters.
    bool Get(char* text) const;
    bool Get(wchar_t* text) const;
    std::size_t GetStringLength() const { return (type_ == kString || type_ == kWString) ? length_ : 0; }
    int GetInteger() const;
    double GetDouble() const
    {
        return type_ == kDouble ? value_.d : type_ == kInteger ? static_cast<double>(value_.i) : 0.0;
    }
    const char* GetString() const;      // "" unless a narrow string
    const wchar_t* GetWString() const;  // L"" unless a wide string

    void Set(int value) { SetInteger(value); }
    void Set(double value) { SetDouble(value); }
    void Set(const char* text) { SetString(text); }
    void Set(const wchar_t* text) { SetWString(text); }
    void SetInteger(int value)
    {
        if (type_ >= kString) Release();
        logical_ = kNotLogical;
        type_ = kInteger;
        value_.i = value;
    }
    void SetDouble(double value)
    {
        if (type_ >= kString) Release();
        logical_ = kNotLogical;
        type_ = kDouble;
        value_.d = value;
    }
    void SetString(const char* text);
    void SetString(const char* text, std::size_t length);
    void SetWString(const wchar_t* text);
    void SetWString(const wchar_t* text, std::size_t length);
    // Makes the cell undefined; its format stays.
    void EraseContents();

    // The format index (XF) the cell is written with.
    std::uint16_t GetFormat() const { return xf_; }
    void SetFormat(std::uint16_t xf) { xf_ = xf; }
    // A boolean (0 or 1) or error code as a workbook stores it: reads as that integer, and is
    // written back as a boolean or error.
    void SetLogical(int value, bool isError);
    bool IsBoolean() const { return logical_ == kBoolean; }
    bool IsError() const { return logical_ == kError; }

private:
    friend class TextHolds;  // lends one text to many cells while a sheet is loaded
    friend class Sheet;      // moves its cells as its rows widen
    void Release();
    void CopyFrom(const Cell& other);
    // Makes a lent string cell a holder of its text itself.
    void Own();
    // Takes `other`'s value, format and hold as they are; `other` is left undefined.
    void Take(Cell& other);
    // Moves `count` cells of one sheet to the uninitialised `to`, their texts' holds as they are:
    // the cells stay in the sheet that lent them their texts.
    static void Relocate(Cell* from, std::size_t count, Cell* to);

    union {
        std::int32_t i;
        double d;
        char* s;
        wchar_t* w;
    } value_;
    std::uint32_t length_ = 0;
    std::uint8_t type_ = kUndefined;
    // kLent: a string cell whose text its sheet holds for it (a loaded shared string, lent to
    // many cells at once), so that the cell counts no hold of its own.
    enum : std::uint8_t { kNotLogical, kBoolean, kError, kLent };
    std::uint8_t logical_ = kNotLogical;
    std::uint16_t xf_ = kDefaultFormat;
};

}  // namespace xls
